// SPDX-License-Identifier: MIT
#include "SceneUnits.h"

#include "Core/Rotator.h"
#include "SceneIO/SceneSpace.h"

namespace
{
/// The rotator's angle about an axis of the file, and whether it turns the same way.
struct FAngle
{
	double FRotator::*Member;
	double Sign;
};

double SignAbout(const FRotator& Positive, std::size_t Axis)
{
	return SceneSpace::RotationToFile(Positive.Quaternion())[Axis] < 0.0 ? -1.0 : 1.0;
}

const std::array<FAngle, 3>& Angles()
{
	static const std::array<FAngle, 3> Table = {{
		{&FRotator::Pitch, SignAbout(FRotator(45.0, 0.0, 0.0), 0)},
		{&FRotator::Yaw, SignAbout(FRotator(0.0, 45.0, 0.0), 1)},
		{&FRotator::Roll, SignAbout(FRotator(0.0, 0.0, 45.0), 2)},
	}};
	return Table;
}
} // namespace

FSceneTransform ToSceneTransform(const FTransform& Transform)
{
	FSceneTransform Result;
	Result.Location = SceneSpace::PointToFile(Transform.GetTranslation());
	Result.Scale = SceneSpace::ScaleToFile(Transform.GetScale3D());
	const FRotator Rotator = Transform.GetRotation().Rotator();
	for (std::size_t Axis = 0; Axis < 3; ++Axis)
	{
		const double Angle = Angles()[Axis].Sign * (Rotator.*Angles()[Axis].Member);
		Result.Rotation[Axis] = Angle == 0.0 ? 0.0 : Angle;
	}
	return Result;
}

FTransform WithSceneNumber(const FTransform& Transform, int Group, int Axis, double Number)
{
	FTransform Result = Transform;
	const std::size_t At = std::size_t(Axis);
	if (Group == 0)
	{
		std::array<double, 3> Location = SceneSpace::PointToFile(Transform.GetTranslation());
		Location[At] = Number;
		Result.SetTranslation(SceneSpace::PointToHost(Location));
	}
	else if (Group == 1)
	{
		FRotator Rotator = Transform.GetRotation().Rotator();
		Rotator.*Angles()[At].Member = Angles()[At].Sign * Number;
		Result.SetRotation(Rotator.Quaternion());
	}
	else
	{
		std::array<double, 3> Scale = SceneSpace::ScaleToFile(Transform.GetScale3D());
		Scale[At] = Number;
		Result.SetScale3D(SceneSpace::ScaleToHost(Scale));
	}
	return Result;
}

// SPDX-License-Identifier: MIT
#include "Support/WorldState.h"

#include "Engine/SceneComponent.h"
#include "Engine/StaticMesh.h"
#include "Engine/World.h"

#include <iomanip>
#include <sstream>

namespace
{
void Describe(std::ostream& Out, const FTransform& Transform)
{
	const FQuat Q = Transform.GetRotation();
	const FVector T = Transform.GetTranslation();
	const FVector S = Transform.GetScale3D();
	// Hexadecimal, so that the text tells every bit.
	Out << std::hexfloat << "q(" << Q.X << ' ' << Q.Y << ' ' << Q.Z << ' ' << Q.W << ") t(" << T.X << ' ' << T.Y << ' '
		<< T.Z << ") s(" << S.X << ' ' << S.Y << ' ' << S.Z << ")" << std::defaultfloat;
}

std::string Describe(const UObject& Object)
{
	std::ostringstream Out;
	Out << (Object.IsGarbage() ? "destroyed " : "");
	if (const USceneComponent* const Component = Cast<USceneComponent>(&Object))
	{
		Out << "relative ";
		Describe(Out, Component->GetRelativeTransform());
		Out << " world ";
		Describe(Out, Component->GetComponentTransform());
		const USceneComponent* const Parent = Component->GetAttachParent();
		Out << " on " << (Parent ? Parent->GetPathName().ToUtf8() : "nothing");
	}
	if (const UStaticMesh* const Mesh = Cast<UStaticMesh>(&Object))
	{
		for (int32 Lod = 0; Lod < Mesh->GetNumSourceModels(); ++Lod)
		{
			Out << " source " << Mesh->GetSourceModel(Lod).GetBulkData().Get();
		}
	}
	return Out.str();
}
} // namespace

FWorldState::FWorldState(UWorld* World, std::initializer_list<UObject*> Others)
{
	const auto Visit = [this](FObjectHandle Handle)
	{
		UObject* const Object = ResolveObject(Handle);
		if (Object && !Objects.contains(Handle))
		{
			Order.push_back(Handle);
			Objects.emplace(
				Handle, FObjectState{Object->GetPathName().ToUtf8(), Describe(*Object), FObjectSnapshot(*Object)});
		}
	};
	Visit(MakeObjectHandle(World));
	for (UObject* Object : Others)
	{
		Visit(MakeObjectHandle(Object));
	}
	for (std::size_t Index = 0; Index < Order.size(); ++Index)
	{
		const std::vector<FObjectHandle> References = Objects.at(Order[Index]).Snapshot.GetReferences();
		for (const FObjectHandle& Reference : References)
		{
			Visit(Reference);
		}
	}
}

bool FWorldState::operator==(const FWorldState& Other) const
{
	return Objects == Other.Objects;
}

std::string FWorldState::Difference(const FWorldState& Other) const
{
	std::ostringstream Out;
	for (const FObjectHandle& Handle : Order)
	{
		const FObjectState& Mine = Objects.at(Handle);
		const auto Found = Other.Objects.find(Handle);
		if (Found == Other.Objects.end())
		{
			Out << Mine.Name << " is no longer reached\n";
		}
		else if (!(Found->second == Mine))
		{
			Out << Mine.Name << " differs\n  was " << Mine.Description << "\n  is  " << Found->second.Description
				<< "\n";
		}
	}
	for (const FObjectHandle& Handle : Other.Order)
	{
		if (!Objects.contains(Handle))
		{
			Out << Other.Objects.at(Handle).Name << " is new\n";
		}
	}
	return Out.str();
}

testing::AssertionResult IsSameState(const FWorldState& Before, const FWorldState& After)
{
	return Before == After ? testing::AssertionSuccess() : testing::AssertionFailure() << Before.Difference(After);
}

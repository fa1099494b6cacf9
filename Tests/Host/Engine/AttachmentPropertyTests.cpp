// SPDX-License-Identifier: MIT
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/WorldGenerators.h"

namespace
{
class FAttachmentProperty : public FEditorFixture
{
protected:
	/// A chain of random length below nothing; null when it is empty. With `bEven`, scales are of one size along all
	/// axes, mirrored or not.
	static USceneComponent* DrawChain(bool bEven)
	{
		USceneComponent* Last = nullptr;
		const int32 Length = *WorldGenerators::Index(6);
		for (int32 Depth = 0; Depth < Length; ++Depth)
		{
			FTransform Relative = *WorldGenerators::AnyTransform();
			if (bEven)
			{
				const FVector Scale = Relative.GetScale3D();
				Relative.SetScale3D(FVector(Scale.X, std::copysign(Scale.X, Scale.Y), std::copysign(Scale.X, Scale.Z)));
			}
			Last = MakeActor(World(), nullptr, Relative, Last);
		}
		return Last;
	}

	/// Gives a new child of `Parent` that world transform; fails unless it then has it, within rounding.
	static const USceneComponent* ExpectReached(USceneComponent* Parent, const FTransform& Target)
	{
		USceneComponent* const Child = MakeActor(World(), nullptr, *WorldGenerators::AnyTransform(), Parent);
		Child->SetWorldTransform(Target);
		RC_ASSERT(IsWorldTransformDerived(Child));

		const FTransform Base = Parent ? Parent->GetComponentTransform() : FTransform();
		const double Unevenness = Base.GetScale3D().GetAbsMax() / Base.GetScale3D().GetAbsMin();
		const double Reach = 1.0 + Target.GetTranslation().GetAbsMax() + Base.GetTranslation().GetAbsMax();
		const FTransform& Now = Child->GetComponentTransform();
		RC_ASSERT(Now.GetTranslation().Equals(Target.GetTranslation(), 1.e-14 * Unevenness * Reach));
		RC_ASSERT(Now.GetRotation().Equals(Target.GetRotation(), 1.e-13));
		RC_ASSERT(Now.GetScale3D().Equals(Target.GetScale3D(), 1.e-13 * Target.GetScale3D().GetAbsMax()));
		return Child;
	}
};
} // namespace

RC_GTEST_FIXTURE_PROP(FAttachmentProperty, AnyWorldTransformIsReachedUnderParentsOfEvenScale, ())
{
	USceneComponent* const Parent = DrawChain(true);
	ExpectReached(Parent, *MathGenerators::Transform(MathGenerators::NonZeroScale()));
}

RC_GTEST_FIXTURE_PROP(FAttachmentProperty, WorldTransformAlongTheAxesOfAnyParentIsReached, ())
{
	USceneComponent* const Parent = DrawChain(false);
	// What is turned by quarters in its parent has no shear, however uneven the parents are.
	const FTransform Place = *WorldGenerators::AnyTransform();
	const FTransform Relative(*MathGenerators::AxisTurn(), Place.GetTranslation(), Place.GetScale3D());
	const FTransform Base = Parent ? Parent->GetComponentTransform() : FTransform();
	const FMatrix Now = ExpectReached(Parent, Relative * Base)->GetComponentTransform().ToMatrixWithScale();

	const FMatrix Product = Relative.ToMatrixWithScale() * Base.ToMatrixWithScale();
	const double Reach = 1.0 + Product.GetRow(3).GetAbsMax() + Base.GetTranslation().GetAbsMax() +
						 Relative.GetScale3D().GetAbsMax() * Base.GetScale3D().GetAbsMax();
	RC_ASSERT(Now.Equals(Product, 1.e-12 * Reach));
}

// SPDX-License-Identifier: MIT
#include "CoreUObject/Package.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"

#include <gmock/gmock.h>

#include <vector>

namespace
{
using testing::ElementsAre;

/// Turned by 90 degrees about Z, and uneven in place and scale.
FTransform Uneven()
{
	return FTransform(FQuat(FVector(0, 0, 1), FMath::DegreesToRadians(90.0)), FVector(7, -11, 13), FVector(2, 3, -5));
}

/// A parent that allows any child: scaled evenly.
FTransform Even()
{
	return FTransform(FQuat(FVector(1, 2, 3).GetSafeNormal(), 0.7), FVector(-3, 5, 2), FVector(2, 2, 2));
}

bool IsSame(const FTransform& A, const FTransform& B)
{
	return A.GetRotation() == B.GetRotation() && A.GetTranslation() == B.GetTranslation() &&
		   A.GetScale3D() == B.GetScale3D();
}

/// A named child component of one actor.
class FAttachment : public FEditorFixture
{
protected:
	static USceneComponent* Make(const FTransform& Relative = FTransform(), USceneComponent* Parent = nullptr)
	{
		return MakeActor(World(), nullptr, Relative, Parent);
	}
	static std::vector<USceneComponent*> ChildrenOf(const USceneComponent* Component)
	{
		std::vector<USceneComponent*> Children;
		for (const TObjectPtr<USceneComponent>& Child : Component->GetAttachChildren())
		{
			Children.push_back(Child.Get());
		}
		return Children;
	}
};

TEST_F(FAttachment, OfNothingLeavesTheRelativeTransformAsTheWorldTransform)
{
	const USceneComponent* const Component = Make(Uneven());
	EXPECT_TRUE(IsSame(Component->GetComponentTransform(), Uneven()));
	EXPECT_EQ(Component->GetComponentLocation(), FVector(7, -11, 13));
	EXPECT_EQ(Component->GetAttachDepth(), 0);
	EXPECT_EQ(Component->GetAttachParent(), nullptr);
}

TEST_F(FAttachment, MakesTheWorldTransformTheRelativeOneTimesTheParents)
{
	USceneComponent* const Parent = Make(Uneven());
	USceneComponent* const Child = Make(Even(), Parent);
	const USceneComponent* const Grandchild = Make(Uneven(), Child);
	EXPECT_TRUE(IsSame(Child->GetComponentTransform(), Even() * Uneven()));
	EXPECT_TRUE(IsSame(Grandchild->GetComponentTransform(), Uneven() * (Even() * Uneven())));
	EXPECT_EQ(Grandchild->GetAttachDepth(), 2);
}

TEST_F(FAttachment, MovesAllThatIsBelowWithAComponent)
{
	USceneComponent* const Parent = Make();
	USceneComponent* const Child = Make(Even(), Parent);
	const USceneComponent* const Grandchild = Make(Uneven(), Child);
	Parent->SetRelativeTransform(Uneven());
	EXPECT_TRUE(IsWorldTransformDerived(Grandchild));
	EXPECT_TRUE(IsSame(Child->GetComponentTransform(), Even() * Uneven()));
	EXPECT_TRUE(IsSame(Child->GetRelativeTransform(), Even()));
}

TEST_F(FAttachment, LeavesSiblingsAndParentsWhereTheyAre)
{
	USceneComponent* const Parent = Make(Uneven());
	USceneComponent* const Child = Make(Even(), Parent);
	const USceneComponent* const Sibling = Make(Even(), Parent);
	const FTransform Before = Sibling->GetComponentTransform();
	Child->SetRelativeTransform(FTransform(FVector(1, 2, 3)));
	EXPECT_TRUE(IsSame(Sibling->GetComponentTransform(), Before));
	EXPECT_TRUE(IsSame(Parent->GetComponentTransform(), Uneven()));
}

TEST_F(FAttachment, SettingAWorldTransformStoresTheRelativeOneAndDerivesTheWorldAgain)
{
	USceneComponent* const Parent = Make(Even());
	USceneComponent* const Child = Make(FTransform(), Parent);
	const USceneComponent* const Grandchild = Make(Even(), Child);
	Child->SetWorldTransform(Uneven());
	EXPECT_TRUE(IsSame(Child->GetRelativeTransform(), Uneven().GetRelativeTransform(Even())));
	EXPECT_TRUE(Child->GetComponentTransform().Equals(Uneven(), 1.e-12));
	EXPECT_TRUE(IsWorldTransformDerived(Grandchild));
}

TEST_F(FAttachment, SettingAWorldTransformThatTheParentCannotGiveKeepsWhatTheRelativeOneGives)
{
	// A turn by 45 degrees under uneven scale would be sheared.
	USceneComponent* const Parent = Make(FTransform(FQuat::Identity, FVector(), FVector(1, 4, 1)));
	USceneComponent* const Child = Make(FTransform(), Parent);
	Child->SetWorldTransform(FTransform(FQuat(FVector(0, 0, 1), FMath::DegreesToRadians(45.0)), FVector(8, 12, 16)));
	EXPECT_TRUE(IsWorldTransformDerived(Child));
	EXPECT_TRUE(Child->GetComponentLocation().Equals(FVector(8, 12, 16), 1.e-12));
}

TEST_F(FAttachment, IsKnownAtBothEndsInTheOrderOfAttaching)
{
	USceneComponent* const Parent = Make();
	USceneComponent* const First = Make(FTransform(), Parent);
	USceneComponent* const Second = Make(FTransform(), Parent);
	EXPECT_THAT(ChildrenOf(Parent), ElementsAre(First, Second));
	EXPECT_EQ(First->GetAttachParent(), Parent);
	EXPECT_TRUE(First->IsAttachedTo(Parent));
	EXPECT_FALSE(Parent->IsAttachedTo(First));
	EXPECT_FALSE(First->IsAttachedTo(Second));
}

TEST_F(FAttachment, ToAnotherParentEndsTheOldOne)
{
	USceneComponent* const Old = Make(Even());
	USceneComponent* const New = Make(Uneven());
	USceneComponent* const Child = Make(Even(), Old);
	EXPECT_TRUE(Child->AttachToComponent(New));
	EXPECT_THAT(ChildrenOf(Old), ElementsAre());
	EXPECT_THAT(ChildrenOf(New), ElementsAre(Child));
	EXPECT_TRUE(IsSame(Child->GetRelativeTransform(), Even()));
	EXPECT_TRUE(IsSame(Child->GetComponentTransform(), Even() * Uneven()));
}

TEST_F(FAttachment, ToTheSameParentAgainKeepsOneEntry)
{
	USceneComponent* const Parent = Make();
	USceneComponent* const Child = Make(FTransform(), Parent);
	EXPECT_TRUE(Child->AttachToComponent(Parent));
	EXPECT_THAT(ChildrenOf(Parent), ElementsAre(Child));
}

TEST_F(FAttachment, MayKeepTheWorldTransform)
{
	USceneComponent* const Parent = Make(Even());
	USceneComponent* const Child = Make(Uneven());
	EXPECT_TRUE(Child->AttachToComponent(Parent, EAttachmentRule::KeepWorld));
	EXPECT_TRUE(Child->GetComponentTransform().Equals(Uneven(), 1.e-12));
	EXPECT_TRUE(IsWorldTransformDerived(Child));
}

TEST_F(FAttachment, EndsWithTheWorldTransformOrTheRelativeOneAsAsked)
{
	USceneComponent* const Parent = Make(Uneven());
	USceneComponent* const First = Make(Even(), Parent);
	USceneComponent* const Second = Make(Even(), Parent);
	First->DetachFromComponent();
	EXPECT_TRUE(IsSame(First->GetComponentTransform(), Even() * Uneven()));
	EXPECT_TRUE(IsSame(First->GetRelativeTransform(), Even() * Uneven()));
	Second->DetachFromComponent(EAttachmentRule::KeepRelative);
	EXPECT_TRUE(IsSame(Second->GetComponentTransform(), Even()));
	EXPECT_EQ(First->GetAttachParent(), nullptr);
	EXPECT_THAT(ChildrenOf(Parent), ElementsAre());
	First->DetachFromComponent();
	EXPECT_TRUE(IsSame(First->GetRelativeTransform(), Even() * Uneven()));
}

TEST_F(FAttachment, IsRefusedWhereItWouldMakeACycle)
{
	USceneComponent* const Top = Make(Uneven());
	USceneComponent* const Middle = Make(Even(), Top);
	USceneComponent* const Bottom = Make(Even(), Middle);
	const FTransform Before = Top->GetComponentTransform();
	EXPECT_FALSE(Top->AttachToComponent(Bottom));
	EXPECT_FALSE(Top->AttachToComponent(Middle));
	EXPECT_FALSE(Top->AttachToComponent(Top));
	EXPECT_FALSE(Bottom->AttachToComponent(Bottom));
	EXPECT_EQ(Top->GetAttachParent(), nullptr);
	EXPECT_THAT(ChildrenOf(Bottom), ElementsAre());
	EXPECT_TRUE(IsSame(Top->GetComponentTransform(), Before));
}

TEST_F(FAttachment, ToNothingOrToSomethingDestroyedIsRefused)
{
	USceneComponent* const Child = Make();
	USceneComponent* const Destroyed = Make();
	World()->DestroyActor(Destroyed->GetOwner());
	EXPECT_FALSE(Child->AttachToComponent(nullptr));
	EXPECT_FALSE(Child->AttachToComponent(Destroyed));
	EXPECT_EQ(Child->GetAttachParent(), nullptr);
}

TEST_F(FAttachment, MayBeAHundredThousandDeep)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	USceneComponent* const Top = Actor->AddComponent<USceneComponent>();
	USceneComponent* Last = Top;
	for (int32 Depth = 0; Depth < 100000; ++Depth)
	{
		USceneComponent* const Next = NewObject<USceneComponent>(Actor);
		ASSERT_TRUE(Next->AttachToComponent(Last));
		Next->SetRelativeTransform(FTransform(FVector(0, 0, 1)));
		Last = Next;
	}
	Top->SetRelativeTransform(FTransform(FVector(5, 0, 0)));
	EXPECT_EQ(Last->GetAttachDepth(), 100000);
	EXPECT_EQ(Last->GetComponentLocation(), FVector(5, 0, 100000));
	EXPECT_FALSE(Top->AttachToComponent(Last));
	CollectGarbage();
	EXPECT_TRUE(IsValid(Last));
}
} // namespace

// SPDX-License-Identifier: MIT
// What the module expects of its host's actors and components.
#include "ContractHost.h"

#include "Platform/CoreUObject.h"
#include "Platform/Editor.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

const FTransform Uneven(FQuat(FVector(0, 0, 1), FMath::DegreesToRadians(90.0)), FVector(7, -11, 13), FVector(2, 3, -5));

class EngineContract : public FContractTest
{
};

TEST_F(EngineContract, ActorGivesItsComponentsOfAClassInItsOwnOrderSubclassesIncluded)
{
	UStaticMeshComponent* const First = MakeComponent(nullptr);
	AActor* const Actor = First->GetOwner();
	Actor->AddComponent<USceneComponent>();
	UStaticMeshComponent* const Second = Actor->AddComponent<UHierarchicalInstancedStaticMeshComponent>();
	EXPECT_THAT(Actor->GetComponentsOf<UStaticMeshComponent>(), ElementsAre(First, Second));
	EXPECT_FALSE(First->IsA<UInstancedStaticMeshComponent>());
	EXPECT_TRUE(Second->IsA<UInstancedStaticMeshComponent>());
}

TEST_F(EngineContract, ComponentSaysHowItWasMadeAndWhereItBelongs)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Component = MakeComponent(Rock);
	EXPECT_EQ(Component->CreationMethod, EComponentCreationMethod::Native);
	EXPECT_EQ(Component->GetStaticMesh(), Rock);
	EXPECT_EQ(Component->GetWorld(), GEditor->GetEditorWorldContext().World());
	EXPECT_EQ(NewObject<UStaticMeshComponent>()->GetWorld(), nullptr);
	EXPECT_TRUE(Component->SetStaticMesh(nullptr));
	EXPECT_EQ(Component->GetStaticMesh(), nullptr);
}

TEST_F(EngineContract, WorldTransformIsKeptUnderAParentThatAllowsItAndChildrenFollow)
{
	UStaticMeshComponent* const Parent = MakeComponent(nullptr);
	Parent->SetWorldTransform(FTransform(FQuat(FVector(1, 0, 0), 0.5), FVector(3, 4, 5), FVector(-2, 2, 2)));
	UStaticMeshComponent* const Child = MakeComponent(nullptr, Parent);
	UStaticMeshComponent* const Grandchild = MakeComponent(nullptr, Child);
	Child->SetWorldTransform(Uneven, false, nullptr, ETeleportType::None);
	EXPECT_TRUE(Child->GetComponentTransform().Equals(Uneven, 1.e-12));
	EXPECT_TRUE(Grandchild->GetComponentTransform().Equals(Uneven, 1.e-12));
	EXPECT_EQ(Child->GetAttachParent(), Parent);
	EXPECT_EQ(Grandchild->GetAttachDepth(), 2);
	ASSERT_EQ(Parent->GetAttachChildren().Num(), 1);
	EXPECT_EQ(Parent->GetAttachChildren()[0].Get(), Child);
}

TEST_F(EngineContract, ReadingAWorldTransformBackChangesNothing)
{
	UStaticMeshComponent* const Parent = MakeComponent(nullptr);
	Parent->SetWorldTransform(Uneven);
	UStaticMeshComponent* const Child = MakeComponent(nullptr, Parent);
	Child->SetRelativeTransform(FTransform(FRotator(10, 20, 30), FVector(1, 2, 3), FVector(1, 2, 0.5)));
	const FTransform Before = Child->GetComponentTransform();
	Child->SetWorldTransform(Before);
	EXPECT_TRUE(Child->GetComponentTransform().Equals(Before, 1.e-12)) << "under uneven scale, too";
}

TEST_F(EngineContract, ActorsAreToldOfFinishedMovesAndComponentsOfStaleDrawings)
{
	UStaticMeshComponent* const Component = MakeComponent(nullptr);
	const uint32 Before = Component->GetRenderStateRevision();
	Component->MarkRenderStateDirty();
	EXPECT_NE(Component->GetRenderStateRevision(), Before);
	Component->GetOwner()->PostEditMove(true);
	EXPECT_EQ(Component->GetOwner()->GetNumFinishedMoves(), 1);
}
}

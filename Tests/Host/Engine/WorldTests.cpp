// SPDX-License-Identifier: MIT
#include "CoreUObject/ObjectIterator.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldState.h"

#include <gmock/gmock.h>

namespace
{
using testing::ElementsAre;

const FTransform Place(FQuat(FVector(1, 2, 3).GetSafeNormal(), 0.7), FVector(-3, 5, 2), FVector(2, 3, -5));

class FWorld : public FEditorFixture
{
};

TEST_F(FWorld, ListsItsActorsInTheOrderInWhichTheyWereSpawned)
{
	AActor* const First = World()->SpawnActor<AActor>();
	AActor* const Second = World()->SpawnActor<AActor>(TEXT("Rock"));
	EXPECT_THAT(World()->GetActors(), ElementsAre(First, Second));
	EXPECT_EQ(Second->GetName(), TEXT("Rock"));
	EXPECT_EQ(First->GetWorld(), World());
	EXPECT_EQ(First->GetOuter(), World());
	World()->DestroyActor(First);
	EXPECT_THAT(World()->GetActors(), ElementsAre(Second));
}

TEST_F(FWorld, TellsOfActorsThatComeAndGo)
{
	int32 NumTold = 0;
	const FDelegateHandle Handle =
		UWorld::OnActorListChanged().AddLambda([&](UWorld* Told) { NumTold += Told == World(); });
	AActor* const Actor = World()->SpawnActor<AActor>();
	EXPECT_EQ(NumTold, 1);
	World()->DuplicateActor(Actor);
	EXPECT_EQ(NumTold, 2);
	World()->DestroyActor(Actor);
	EXPECT_EQ(NumTold, 3);
	World()->DestroyActor(Actor);
	World()->DestroyActor(nullptr);
	EXPECT_EQ(NumTold, 3);
	UWorld::OnActorListChanged().Remove(Handle);
}

TEST_F(FWorld, KeepsItsActorsTheirComponentsAndTheirAssets)
{
	const TObjectPtr<UStaticMeshComponent> Component = MakeActor(World(), MakeUnevenMesh());
	CollectGarbage();
	ASSERT_TRUE(IsValid(Component));
	EXPECT_TRUE(IsValid(Component->GetStaticMesh()));
}

TEST_F(FWorld, IsGoneWithAllThatIsInItOnceItIsDestroyed)
{
	UWorld* const Other = UWorld::Create(EWorldType::Play);
	const TObjectPtr<UStaticMeshComponent> Component = MakeActor(Other, nullptr);
	Other->Destroy();
	EXPECT_FALSE(IsValid(Component));
	EXPECT_THAT(GetObjectsOf<AActor>(), ElementsAre());
	const FWeakObjectPtr Weak(Other);
	CollectGarbage();
	EXPECT_EQ(Component.Get(), nullptr);
	EXPECT_TRUE(Weak.IsStale());
}

TEST_F(FWorld, DestroyingAnActorKeepsWhatIsAttachedToItInPlaceAndLetsItGo)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, Place);
	UStaticMeshComponent* const Inner = AddMeshComponent(Parent, nullptr, Place);
	const UStaticMeshComponent* const OnRoot = MakeActor(World(), nullptr, Place, Parent);
	const UStaticMeshComponent* const OnInner = MakeActor(World(), nullptr, Place, Inner);
	const UStaticMeshComponent* const Below =
		MakeActor(World(), nullptr, Place, const_cast<UStaticMeshComponent*>(OnInner));
	const FTransform OnRootPlace = OnRoot->GetComponentTransform();
	const FTransform OnInnerPlace = OnInner->GetComponentTransform();
	const FTransform BelowPlace = Below->GetComponentTransform();
	World()->DestroyActor(Parent->GetOwner());
	EXPECT_FALSE(IsValid(Parent));
	EXPECT_FALSE(IsValid(Inner));
	EXPECT_EQ(OnRoot->GetAttachParent(), nullptr);
	EXPECT_EQ(OnInner->GetAttachParent(), nullptr);
	EXPECT_TRUE(OnRoot->GetComponentTransform().Equals(OnRootPlace, 0.0));
	EXPECT_TRUE(OnInner->GetComponentTransform().Equals(OnInnerPlace, 0.0));
	EXPECT_EQ(Below->GetAttachParent(), OnInner);
	EXPECT_TRUE(Below->GetComponentTransform().Equals(BelowPlace, 1.e-12));
}

TEST_F(FWorld, DestroyingAnAttachedActorTakesItOffItsParent)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, Place);
	World()->DestroyActor(MakeActor(World(), nullptr, Place, Parent)->GetOwner());
	EXPECT_TRUE(Parent->GetAttachChildren().IsEmpty());
}

TEST_F(FWorld, DuplicatingAnActorCopiesItsComponentsAndSharesItsAssets)
{
	UStaticMeshComponent* const Root = MakeActor(World(), MakeUnevenMesh(), Place);
	UStaticMeshComponent* const Inner = AddMeshComponent(Root, MakeUnevenMesh(), Place);
	Root->GetOwner()->SetActorLabel(TEXT("Rock"));
	AActor* const Copy = World()->DuplicateActor(Root->GetOwner());
	EXPECT_THAT(World()->GetActors(), ElementsAre(Root->GetOwner(), Copy));
	EXPECT_EQ(Copy->GetActorLabel(), TEXT("Rock"));
	EXPECT_FALSE(Copy->GetFName() == Root->GetOwner()->GetFName());
	const TArray<UStaticMeshComponent*> Copies = Copy->GetComponentsOf<UStaticMeshComponent>();
	ASSERT_EQ(Copies.Num(), 2);
	EXPECT_EQ(Copy->GetRootComponent(), Copies[0]);
	EXPECT_EQ(Copies[0]->GetStaticMesh(), Root->GetStaticMesh());
	EXPECT_EQ(Copies[1]->GetStaticMesh(), Inner->GetStaticMesh());
	EXPECT_EQ(Copies[1]->GetAttachParent(), Copies[0]);
	EXPECT_EQ(Copies[1]->GetOwner(), Copy);
	EXPECT_TRUE(IsWorldTransformDerived(Copies[1]));
	EXPECT_TRUE(Copies[1]->GetComponentTransform().Equals(Inner->GetComponentTransform(), 0.0));
}

TEST_F(FWorld, DuplicatingAnActorAttachesTheCopyToTheSameParentAndLeavesItsChildrenBehind)
{
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, Place);
	UStaticMeshComponent* const Root = MakeActor(World(), nullptr, Place, Parent);
	UStaticMeshComponent* const Child = MakeActor(World(), nullptr, Place, Root);
	USceneComponent* const Copy = World()->DuplicateActor(Root->GetOwner())->GetRootComponent();
	EXPECT_EQ(Copy->GetAttachParent(), Parent);
	EXPECT_THAT(Parent->GetAttachChildren(), ElementsAre(Root, Copy));
	EXPECT_TRUE(Copy->GetAttachChildren().IsEmpty());
	EXPECT_EQ(Child->GetAttachParent(), Root);
	EXPECT_TRUE(Copy->GetComponentTransform().Equals(Root->GetComponentTransform(), 0.0));
}

TEST_F(FWorld, DuplicateForPlayHasCopiesOfAllActorsAttachedAsTheOriginalsAre)
{
	UStaticMeshComponent* const Child = MakeActor(World(), MakeUnevenMesh(), Place);
	UStaticMeshComponent* const Parent = MakeActor(World(), nullptr, Place);
	Child->AttachToComponent(Parent);
	const FWorldState Before(World());
	UWorld* const Play = World()->DuplicateForPlay();
	EXPECT_EQ(Play->GetWorldType(), EWorldType::Play);
	EXPECT_EQ(World()->GetWorldType(), EWorldType::Editor);
	ASSERT_EQ(Play->GetActors().Num(), 2);
	const UStaticMeshComponent* const PlayChild = Cast<UStaticMeshComponent>(Play->GetActors()[0]->GetRootComponent());
	EXPECT_EQ(PlayChild->GetWorld(), Play);
	EXPECT_EQ(PlayChild->GetOwner()->GetName(), Child->GetOwner()->GetName());
	EXPECT_EQ(PlayChild->GetStaticMesh(), Child->GetStaticMesh());
	EXPECT_EQ(PlayChild->GetAttachParent(), Play->GetActors()[1]->GetRootComponent());
	EXPECT_TRUE(PlayChild->GetComponentTransform().Equals(Child->GetComponentTransform(), 0.0));
	EXPECT_TRUE(IsSameState(Before, FWorldState(World())));
	CollectGarbage();
	EXPECT_TRUE(IsValid(PlayChild));
	Play->Destroy();
	EXPECT_TRUE(IsSameState(Before, FWorldState(World())));
}

TEST_F(FWorld, DuplicateForPlayOfADeepChainHasItsWorldTransforms)
{
	USceneComponent* Last = nullptr;
	for (int32 Depth = 0; Depth < 2000; ++Depth)
	{
		Last = MakeActor(World(), nullptr, FTransform(FVector(0, 0, 1)), Last);
	}
	UWorld* const Play = World()->DuplicateForPlay();
	const USceneComponent* const Copy = Play->GetActors()[1999]->GetRootComponent();
	EXPECT_EQ(Copy->GetComponentLocation(), FVector(0, 0, 2000));
	Play->Destroy();
}

class FActor : public FEditorFixture
{
};

TEST_F(FActor, WithoutARootStandsAtTheOrigin)
{
	const AActor* const Actor = World()->SpawnActor<AActor>();
	EXPECT_EQ(Actor->GetRootComponent(), nullptr);
	EXPECT_TRUE(Actor->GetActorTransform().Equals(FTransform(), 0.0));
}

TEST_F(FActor, HasItsFirstSceneComponentAsRootAndLaterOnesAttachedToIt)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	UActorComponent* const Placeless = Actor->AddComponent<UActorComponent>();
	USceneComponent* const Root = Actor->AddComponent<USceneComponent>(TEXT("Base"));
	USceneComponent* const Mesh =
		Actor->AddComponent<UStaticMeshComponent>(NAME_None, EComponentCreationMethod::UserConstructionScript);
	EXPECT_EQ(Actor->GetRootComponent(), Root);
	EXPECT_EQ(Mesh->GetAttachParent(), Root);
	EXPECT_EQ(Root->GetName(), TEXT("Base"));
	EXPECT_EQ(Root->CreationMethod, EComponentCreationMethod::Native);
	EXPECT_EQ(Mesh->CreationMethod, EComponentCreationMethod::UserConstructionScript);
	EXPECT_EQ(Placeless->GetOwner(), Actor);
	EXPECT_EQ(Mesh->GetWorld(), World());
	EXPECT_THAT(Actor->GetComponents(), ElementsAre(Placeless, Root, Mesh));
	Root->SetRelativeTransform(Place);
	EXPECT_TRUE(Actor->GetActorTransform().Equals(Place, 0.0));
}

TEST_F(FActor, GivesItsComponentsOfAClassInTheOrderInWhichTheyWereAdded)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	UStaticMeshComponent* const First = Actor->AddComponent<UStaticMeshComponent>();
	Actor->AddComponent<USceneComponent>();
	UStaticMeshComponent* const Instanced = Actor->AddComponent<UHierarchicalInstancedStaticMeshComponent>();
	UStaticMeshComponent* const Last = Actor->AddComponent<UStaticMeshComponent>();
	EXPECT_THAT(Actor->GetComponentsOf<UStaticMeshComponent>(), ElementsAre(First, Instanced, Last));
	EXPECT_TRUE(Instanced->IsA<UInstancedStaticMeshComponent>());
	Instanced->MarkAsGarbage();
	EXPECT_THAT(Actor->GetComponentsOf<UStaticMeshComponent>(), ElementsAre(First, Last));
}

TEST_F(FActor, IsLabelledByItsNameUntilItGetsALabel)
{
	AActor* const Actor = World()->SpawnActor<AActor>(TEXT("Actor_of_stone"));
	EXPECT_EQ(Actor->GetActorLabel(), TEXT("Actor_of_stone"));
	Actor->SetActorLabel(TEXT("Stone"));
	EXPECT_EQ(Actor->GetActorLabel(), TEXT("Stone"));
	EXPECT_EQ(Actor->GetName(), TEXT("Actor_of_stone"));
}

TEST_F(FActor, CountsFinishedEditorMovesOnly)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	Actor->PostEditMove(false);
	Actor->PostEditMove(true);
	Actor->PostEditMove(true);
	EXPECT_EQ(Actor->GetNumFinishedMoves(), 2);
}

TEST_F(FActor, ComponentsSayWhetherTheirMeshChanged)
{
	UStaticMeshComponent* const Component = MakeActor(World(), nullptr);
	UStaticMesh* const Mesh = MakeUnevenMesh();
	const uint32 Revision = Component->GetRenderStateRevision();
	EXPECT_TRUE(Component->SetStaticMesh(Mesh));
	EXPECT_NE(Component->GetRenderStateRevision(), Revision);
	EXPECT_FALSE(Component->SetStaticMesh(Mesh));
	EXPECT_TRUE(Component->SetStaticMesh(nullptr));
	EXPECT_EQ(Component->GetStaticMesh(), nullptr);
}
} // namespace

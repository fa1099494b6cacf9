// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "Engine/InstancedStaticMeshComponent.h"
#include "TarvinSelectionAction.h"

#include <gmock/gmock.h>

#include <cmath>

namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

const FQuat Turned45 = Turn(FVector(0, 0, 1), 45);

class Gathering : public FModuleTest
{
protected:
	TArray<FTarvinItem> Gather(const FTarvinOperation& Operation = FTarvinOperation::RotationScaleBake())
	{
		return FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
	}

	std::vector<UStaticMeshComponent*> GatheredComponents()
	{
		std::vector<UStaticMeshComponent*> Result;
		for (const FTarvinItem& Item : Gather())
		{
			Result.push_back(Item.Component);
		}
		return Result;
	}

	/// How many were skipped: instanced, blueprint, without a mesh, under an unrepresentable parent.
	std::vector<int32> Skipped() const
	{
		return {Skips.SkippedInstanced, Skips.SkippedBlueprint, Skips.SkippedNoMesh, Skips.SkippedUnrepresentable};
	}

	/// A selected component below a frame at that place.
	UStaticMeshComponent* PlaceSelectedUnder(const FTransform& Frame)
	{
		UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")));
		Component->AttachToComponent(PlaceFrame(Frame));
		return Component;
	}

	FTarvinRunResult Skips;
};

TEST_F(Gathering, WithoutAnEditorThereIsNothingToGather)
{
	PlaceSelected(MakeMesh(TEXT("Rock")));
	UEditorEngine::Destroy();
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 0));
	EXPECT_THAT(ActionLines(), IsEmpty());
}

TEST_F(Gathering, EmptySelectionGivesNothing)
{
	Place(MakeMesh(TEXT("Rock")));
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 0));
}

TEST_F(Gathering, ItemHoldsComponentMeshAndWorldTransform)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	const FTransform Where(Turned45, FVector(1, 2, 3), FVector(2, 3, -5));
	UStaticMeshComponent* const Component = PlaceSelected(Rock, Where);
	const TArray<FTarvinItem> Items = Gather();
	ASSERT_EQ(Items.Num(), 1);
	EXPECT_EQ(Items[0].Component.Get(), Component);
	EXPECT_EQ(Items[0].Mesh.Get(), Rock);
	EXPECT_EQ(Items[0].WorldTransform, Component->GetComponentTransform());
	EXPECT_EQ(Items[0].WorldTransform, Where);
}

TEST_F(Gathering, ItemsComeInTheOrderOfSelectionThenOfTheActorsOwnComponents)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const First = Place(Rock);
	UStaticMeshComponent* const FirstsSecond = First->GetOwner()->AddComponent<UStaticMeshComponent>();
	FirstsSecond->SetStaticMesh(Rock);
	UStaticMeshComponent* const Second = Place(Rock);
	Select(Second);
	Select(First);
	EXPECT_THAT(GatheredComponents(), ElementsAre(Second, First, FirstsSecond));
}

TEST_F(Gathering, NullEntriesAndNonActorsInTheSelectionArePassedOver)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Gone = PlaceSelected(Rock);
	GEditor->GetSelectedActors()->Select(Rock);
	GEditor->GetSelectedActors()->Select(Place(Rock));
	UStaticMeshComponent* const Live = PlaceSelected(Rock);
	World()->DestroyActor(Gone->GetOwner());
	ASSERT_EQ(GEditor->GetSelectedActors()->Num(), 4);
	ASSERT_EQ(GEditor->GetSelectedActors()->GetSelectedObject(0), nullptr);
	EXPECT_THAT(GatheredComponents(), ElementsAre(Live));
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 0));
	EXPECT_THAT(ActionLines(), IsEmpty());
}

TEST_F(Gathering, ComponentsThatShareAMeshAreItemsOfTheirOwn)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	PlaceSelected(Rock);
	PlaceSelected(Rock);
	EXPECT_EQ(Gather().Num(), 2);
}

TEST_F(Gathering, ComponentOfAConstructionScriptIsCountedAndTheNativeOneIsAnItem)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	UStaticMeshComponent* const Native = PlaceSelected(Rock);
	Native->GetOwner()
		->AddComponent<UStaticMeshComponent>(NAME_None, EComponentCreationMethod::UserConstructionScript)
		->SetStaticMesh(Rock);
	EXPECT_THAT(GatheredComponents(), ElementsAre(Native));
	EXPECT_THAT(Skipped(), ElementsAre(0, 1, 0, 0));
}

TEST_F(Gathering, EveryCreationMethodButTheNativeOneIsSkipped)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	GEditor->SelectActor(Actor, true);
	for (const EComponentCreationMethod Method : {EComponentCreationMethod::SimpleConstructionScript,
			 EComponentCreationMethod::UserConstructionScript, EComponentCreationMethod::Instance})
	{
		Actor->AddComponent<UStaticMeshComponent>(NAME_None, Method)->SetStaticMesh(MakeMesh(TEXT("Rock")));
	}
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 3, 0, 0));
	EXPECT_THAT(ActionLines(), IsEmpty());
}

TEST_F(Gathering, InstancedComponentIsCountedAsInstancedEvenWithoutAMesh)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	GEditor->SelectActor(Actor, true);
	Actor->AddComponent<UInstancedStaticMeshComponent>()->SetStaticMesh(MakeMesh(TEXT("Rock")));
	Actor->AddComponent<UInstancedStaticMeshComponent>(NAME_None, EComponentCreationMethod::Instance);
	Actor->AddComponent<UHierarchicalInstancedStaticMeshComponent>();
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(3, 0, 0, 0));
}

TEST_F(Gathering, ComponentWithoutAMeshIsCountedAsMeshlessUnlessItIsNotNative)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	GEditor->SelectActor(Actor, true);
	Actor->AddComponent<UStaticMeshComponent>();
	Actor->AddComponent<UStaticMeshComponent>(NAME_None, EComponentCreationMethod::Instance);
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 1, 1, 0));
}

TEST_F(Gathering, OtherKindsOfComponentsAreNotCounted)
{
	GEditor->SelectActor(PlaceFrame(FTransform())->GetOwner(), true);
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 0));
}

TEST_F(Gathering, CountersAreAddedToAndNeverReset)
{
	PlaceSelected(nullptr);
	Gather();
	Gather();
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 2, 0));
	EXPECT_EQ(Skips.Baked + Skips.ComponentsUpdated + Skips.Duplicated + Skips.NotBaked, 0);
}

TEST_F(Gathering, UnrepresentableParentIsSkippedAndLoggedWithTheComponentsPath)
{
	UStaticMeshComponent* const Component =
		PlaceSelectedUnder(FTransform(Turned45, FVector(1, 2, 3), FVector(1, 2, 3)));
	EXPECT_EQ(Gather().Num(), 0);
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 1));
	EXPECT_THAT(ActionLines(),
		ElementsAre(
			"Warning: " + Utf8(Component->GetPathName()) +
			": parent combines non-uniform scale with rotation -- the residual cannot be represented as an FTransform, "
			"skipped"));
}

TEST_F(Gathering, MeshlessComponentUnderSuchAParentIsCountedAsMeshlessOnly)
{
	PlaceSelectedUnder(FTransform(Turned45, FVector(), FVector(1, 2, 3)))->SetStaticMesh(nullptr);
	Gather();
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 1, 0));
	EXPECT_THAT(ActionLines(), IsEmpty());
}

TEST_F(Gathering, SetPivotTakesComponentsUnderSuchAParentAndLogsNothing)
{
	PlaceSelectedUnder(FTransform(Turned45, FVector(), FVector(1, 2, 3)));
	EXPECT_EQ(Gather(FTarvinOperation::SetPivot(ETarvinPivotPosition::Center)).Num(), 1);
	EXPECT_THAT(Skipped(), ElementsAre(0, 0, 0, 0));
	EXPECT_THAT(ActionLines(), IsEmpty());
}

class ParentTest : public FModuleTest
{
protected:
	static bool IsUnrepresentableUnder(const FQuat& Rotation, const FVector& Scale)
	{
		UStaticMeshComponent* const Component = Place(nullptr);
		Component->AttachToComponent(PlaceFrame(FTransform(Rotation, FVector(7, 8, 9), Scale)));
		return FTarvinSelectionAction::HasUnrepresentableParent(Component);
	}
};

TEST_F(ParentTest, NoComponentAndNoParentAreRepresentable)
{
	EXPECT_FALSE(FTarvinSelectionAction::HasUnrepresentableParent(nullptr));
	UStaticMeshComponent* const Alone = Place(nullptr, FTransform(Turned45, FVector(), FVector(1, 2, 3)));
	EXPECT_FALSE(FTarvinSelectionAction::HasUnrepresentableParent(Alone));
}

TEST_F(ParentTest, OnlyRotationTogetherWithUnevenScaleIsUnrepresentable)
{
	EXPECT_FALSE(IsUnrepresentableUnder(FQuat::Identity, FVector(1, 2, 3)));
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(2, 2, 2)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(1, 2, 3)));
}

TEST_F(ParentTest, MirroredUniformScaleIsUniform)
{
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(-2, 2, 2)));
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(2, -2, -2)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(-2, 2, 3)));
}

TEST_F(ParentTest, ScaleIsUniformWhileYAndZDifferFromXByAThousandthAtMost)
{
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(2, 2.0009, 2)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(2, 2.0011, 2)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(2, 2, 1.9989)));
	// 0.001 itself: 1.001 - 1 is a little less in binary; from zero no bit is lost.
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(1, 1.001, 1)));
	const double Above = std::nextafter(0.001, 1.0);
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(0, 0.001, -0.001)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(0, Above, 0)));
	EXPECT_TRUE(IsUnrepresentableUnder(Turned45, FVector(0, 0, Above)));
	// Each is compared with X: Y and Z may be twice as far apart.
	EXPECT_FALSE(IsUnrepresentableUnder(Turned45, FVector(2, 2.0009, 1.9991)));
}

TEST_F(ParentTest, RotationWithinTheToleranceOfTheIdentityOrItsNegationIsNone)
{
	const FVector Uneven(1, 2, 3);
	EXPECT_FALSE(IsUnrepresentableUnder(FQuat(0, 0, 0, -1), Uneven));
	EXPECT_FALSE(IsUnrepresentableUnder(FQuat(9.9e-5, 0, 0, 1), Uneven));
	EXPECT_FALSE(IsUnrepresentableUnder(FQuat(0, -9.9e-5, 0, -1), Uneven));
	EXPECT_TRUE(IsUnrepresentableUnder(FQuat(0, 0, 1.1e-4, 1), Uneven));
	// The tolerance is a single-precision number, a little less than a ten-thousandth.
	EXPECT_FALSE(IsUnrepresentableUnder(FQuat(9.999999747378752e-05, 0, 0, 1), Uneven));
	EXPECT_TRUE(IsUnrepresentableUnder(FQuat(1.e-4, 0, 0, 1), Uneven));
}

TEST_F(ParentTest, WhatTheParentInheritsCountsAndWhatLiesBeyondItDoesNot)
{
	// The scale comes from the grandparent, the rotation from the parent.
	USceneComponent* const Stretched = PlaceFrame(FTransform(FQuat::Identity, FVector(), FVector(1, 2, 3)));
	USceneComponent* const TurnedInIt = PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 90)));
	TurnedInIt->AttachToComponent(Stretched);
	UStaticMeshComponent* const Component = Place(nullptr);
	Component->AttachToComponent(TurnedInIt);
	EXPECT_TRUE(FTarvinSelectionAction::HasUnrepresentableParent(Component));

	// A parent that takes both back again is no trouble.
	TurnedInIt->SetWorldTransform(FTransform(FVector(4, 5, 6)));
	EXPECT_FALSE(FTarvinSelectionAction::HasUnrepresentableParent(Component));
}
}

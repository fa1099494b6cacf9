// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "Engine/BodySetup.h"
#include "TarvinGrouping.h"
#include "TarvinSelectionAction.h"

#include <algorithm>
#include <cmath>

namespace
{
FTransform EvenScaled(const FTransform& Transform, bool bMirrored)
{
	const double Scale = std::abs(Transform.GetScale3D().X);
	return FTransform(
		Transform.GetRotation(), Transform.GetTranslation(), FVector(bMirrored ? -Scale : Scale, Scale, Scale));
}
} // namespace

FCommandScene FCommandScene::Draw(UWorld* World, bool bEvenScales)
{
	FCommandScene Scene;
	Scene.World = World;
	const int32 NumMeshes = 1 + *WorldGenerators::Index(3);
	for (int32 Mesh = 0; Mesh < NumMeshes; ++Mesh)
	{
		const FString Package = FString::Printf(TEXT("/Property/Mesh%d"), Mesh);
		UStaticMesh* const Made = MakeBoxMesh(FVector(-1.0 - Mesh, -2.0, -3.0), FVector(2.0, 5.0, 7.0 + Mesh), Package);
		if (*rc::gen::arbitrary<bool>())
		{
			Made->SetMeshDescription(1, MakeBoxDescription(FVector(-0.5, -1.0, -2.0), FVector(1.0, 3.0, 4.0)));
		}
		Scene.AllMeshes.push_back(Made);
	}
	FTreePlan Plan = *WorldGenerators::Tree(9);
	for (FTreePlan::FNode& Node : Plan.Nodes)
	{
		Node.Relative = bEvenScales ? EvenScaled(Node.Relative, *rc::gen::arbitrary<bool>()) : Node.Relative;
	}
	Scene.AllComponents = BuildTree(World, Plan, Scene.AllMeshes);
	for (UStaticMeshComponent* Component : Scene.AllComponents)
	{
		if (*rc::gen::arbitrary<bool>())
		{
			GEditor->SelectActor(Component->GetOwner(), true);
		}
		Scene.Positions.emplace(Component, WorldPositions(Component));
		Scene.Worlds.emplace(Component, Component->GetComponentTransform());
	}
	for (int32 Answer = 0; Answer < 16; ++Answer)
	{
		Scene.Answers.push_back(static_cast<ETarvinSharedAssetChoice>(*WorldGenerators::Index(3)));
	}
	return Scene;
}

FTarvinRunResult FCommandScene::Run(const FTarvinOperation& Operation)
{
	FTarvinRunResult Skips;
	Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
	MeasureMerging(Operation);
	std::size_t NumAsked = 0;
	FTarvinOnSharedAsset OnSharedAsset;
	OnSharedAsset.BindLambda(
		[this, &NumAsked](UStaticMesh* Mesh, int32, bool bInPlaceAllowed)
		{
			const ETarvinSharedAssetChoice Answer =
				FTarvinSelectionAction::ResolveRememberedChoice(Answers[NumAsked++ % Answers.size()], bInPlaceAllowed);
			if (Answer == ETarvinSharedAssetChoice::ApplyToAll)
			{
				AppliedToAll.push_back(Mesh);
			}
			return Answer;
		});
	return FTarvinSelectionAction::Run(Items, World, OnSharedAsset, Operation);
}

void FCommandScene::MeasureMerging(const FTarvinOperation& Operation)
{
	for (const FTarvinGroup& Group : FTarvinGrouping::Build(Items, Operation.ComputeBake))
	{
		for (const int32 Index : Group.ItemIndices)
		{
			FTransform Own;
			Operation.ComputeBake(Items[Index], Own);
			double& Slack = MergingSlack[Items[Index].Component];
			for (const FVector& Point : LocalPositions(Items[Index].Mesh))
			{
				Slack = std::max(Slack, (Own.TransformVector(Point) - Group.Bake.TransformVector(Point)).Size());
			}
		}
	}
}

double FCommandScene::Size() const
{
	double Largest = 1.0;
	for (const auto& [Component, Points] : Positions)
	{
		for (const FVector& Point : Points)
		{
			Largest = std::max({Largest, std::abs(Point.X), std::abs(Point.Y), std::abs(Point.Z)});
		}
	}
	for (const UStaticMeshComponent* Component : AllComponents)
	{
		const FVector Origin = Component->GetComponentTransform().GetTranslation();
		for (const FVector& Point : WorldPositions(Component))
		{
			Largest = std::max(Largest, (Point - Origin).Size());
		}
	}
	return Largest;
}

bool FCommandScene::WasItem(const UStaticMeshComponent* Component) const
{
	return std::any_of(
		Items.begin(), Items.end(), [=](const FTarvinItem& Item) { return Item.Component == Component; });
}

bool FCommandScene::MayMove(const UStaticMeshComponent* Component) const
{
	return !WasItem(Component) && std::ranges::find(AppliedToAll, Component->GetStaticMesh()) != AppliedToAll.end();
}

double FCommandScene::LargestMove() const
{
	double Largest = 0.0;
	for (UStaticMeshComponent* Component : AllComponents)
	{
		if (MayMove(Component))
		{
			continue;
		}
		const TArray<FVector> Now = WorldPositions(Component);
		const TArray<FVector>& Before = Positions.at(Component);
		if (Now.Num() != Before.Num())
		{
			return HUGE_VAL;
		}
		const auto Slack = MergingSlack.find(Component);
		for (int32 Vertex = 0; Vertex < Now.Num(); ++Vertex)
		{
			const double Move = (Now[Vertex] - Before[Vertex]).Size();
			Largest = std::max(Largest, Slack == MergingSlack.end() ? Move : Move - Slack->second);
		}
	}
	return Largest;
}

FWorldState FCommandScene::State() const
{
	return FWorldState(World,
		{AllMeshes[0], AllMeshes.size() > 1 ? AllMeshes[1] : nullptr, AllMeshes.size() > 2 ? AllMeshes[2] : nullptr});
}

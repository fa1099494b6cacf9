// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "Host/MeshDescription/MeshShapes.h"
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

FMeshDescription DrawShape(const FVector& Min, const FVector& Max)
{
	return *rc::gen::arbitrary<bool>() ? MeshShapes::Wedge() : MakeBoxDescription(Min, Max);
}

UStaticMesh* DrawMesh(int32 Number)
{
	const FVector Min(-1.0 - Number, -2.0, -3.0);
	const FVector Max(2.0, 5.0, 7.0 + Number);
	UStaticMesh* const Mesh = MakeBoxMesh(Min, Max, FString::Printf(TEXT("/Property/Mesh%d"), Number));
	Mesh->SetMeshDescription(0, DrawShape(Min, Max));
	if (*rc::gen::arbitrary<bool>())
	{
		Mesh->SetMeshDescription(1, DrawShape(FVector(-0.5, -1.0, -2.0), FVector(1.0, 3.0, 4.0)));
	}
	if (*WorldGenerators::Index(4) == 0)
	{
		Mesh->SetHiResMeshDescription(DrawShape(Min, Max));
	}
	return Mesh;
}

/// Makes some nodes want a bake that another wants as well, up to differences about as large as the key's tolerance.
void DrawLikeness(FTreePlan& Plan)
{
	const auto Offset = [] { return *rc::gen::element(0.0, 9.e-5, -9.e-5, 1.1e-4); };
	for (std::size_t Index = 1; Index < Plan.Nodes.size(); ++Index)
	{
		const FTreePlan::FNode& Model = Plan.Nodes[std::size_t(*WorldGenerators::Index(int32(Index)))];
		if (*WorldGenerators::Index(3) != 0 || Model.Parent != INDEX_NONE)
		{
			continue;
		}
		FTreePlan::FNode& Node = Plan.Nodes[Index];
		const FQuat Rotation = Model.Relative.GetRotation();
		Node.Parent = INDEX_NONE;
		Node.Mesh = Model.Mesh;
		Node.Relative.SetRotation(*rc::gen::arbitrary<bool>() ? Rotation : -Rotation);
		Node.Relative.SetScale3D(Model.Relative.GetScale3D() + FVector(Offset(), Offset(), Offset()));
	}
}

/// All vertices of all sources, in the mesh's own space.
TArray<FVector> LocalPoints(const UStaticMesh* Mesh)
{
	TArray<FVector> Points;
	for (const FMeshDescription* Source : SourcesOf(Mesh))
	{
		for (const FVertexID Vertex : Source->Vertices().GetElementIDs())
		{
			Points.Add(FVector(Source->GetVertexPosition(Vertex)));
		}
	}
	return Points;
}

/// The same in the world.
TArray<FVector> WorldPoints(const UStaticMeshComponent* Component)
{
	TArray<FVector> Points = LocalPoints(Component->GetStaticMesh());
	for (FVector& Point : Points)
	{
		Point = Component->GetComponentTransform().TransformPosition(Point);
	}
	return Points;
}
} // namespace

std::vector<const FMeshDescription*> SourcesOf(const UStaticMesh* Mesh)
{
	std::vector<const FMeshDescription*> Sources;
	for (int32 Lod = 0; Lod < Mesh->GetNumSourceModels(); ++Lod)
	{
		Sources.push_back(Mesh->GetMeshDescription(Lod));
	}
	Sources.push_back(Mesh->GetHiResMeshDescription());
	std::erase(Sources, nullptr);
	return Sources;
}

FCommandScene FCommandScene::Draw(UWorld* World, bool bEvenScales)
{
	FCommandScene Scene;
	Scene.World = World;
	const int32 NumMeshes = 1 + *WorldGenerators::Index(3);
	for (int32 Mesh = 0; Mesh < NumMeshes; ++Mesh)
	{
		Scene.AllMeshes.push_back(DrawMesh(Mesh));
	}
	FTreePlan Plan = *WorldGenerators::Tree(9);
	for (FTreePlan::FNode& Node : Plan.Nodes)
	{
		Node.Relative = bEvenScales ? EvenScaled(Node.Relative, *rc::gen::arbitrary<bool>()) : Node.Relative;
	}
	if (!bEvenScales)
	{
		DrawLikeness(Plan);
	}
	Scene.AllComponents = BuildTree(World, Plan, Scene.AllMeshes);
	for (UStaticMeshComponent* Component : Scene.AllComponents)
	{
		if (*rc::gen::arbitrary<bool>())
		{
			GEditor->SelectActor(Component->GetOwner(), true);
		}
		Scene.Positions.emplace(Component, WorldPoints(Component));
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
			for (const FVector& Point : LocalPoints(Items[Index].Mesh))
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
		for (const FVector& Point : WorldPoints(Component))
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
		const TArray<FVector> Now = WorldPoints(Component);
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

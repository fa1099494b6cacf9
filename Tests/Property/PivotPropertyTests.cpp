// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "TarvinGrouping.h"
#include "TarvinSelectionAction.h"

#include <algorithm>

namespace
{
class SetPivotProperty : public FEditorFixture
{
};

ETarvinPivotPosition DrawPosition()
{
	return static_cast<ETarvinPivotPosition>(*WorldGenerators::Index(8));
}
} // namespace

RC_GTEST_FIXTURE_PROP(SetPivotProperty, KeepsEveryVertexAtItsWorldPlace, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	Scene.Run(FTarvinOperation::SetPivot(DrawPosition()));
	RC_ASSERT(Scene.LargestMove() <= 1e-6 * Scene.Size());
}

RC_GTEST_FIXTURE_PROP(SetPivotProperty, KeepsRotationAndScaleOfEveryComponent, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	Scene.Run(FTarvinOperation::SetPivot(DrawPosition()));
	for (UStaticMeshComponent* Component : Scene.Components())
	{
		const FTransform& Before = Scene.OldWorld(Component);
		const FTransform& Now = Component->GetComponentTransform();
		RC_ASSERT(Now.GetRotation().Equals(Before.GetRotation(), 1e-9));
		RC_ASSERT(Now.GetScale3D().Equals(Before.GetScale3D(), 1e-9 * (1.0 + Before.GetScale3D().Size())));
	}
}

RC_GTEST_FIXTURE_PROP(SetPivotProperty, PutsTheFirstOfEachGroupWhereItSays, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	const ETarvinPivotPosition Position = DrawPosition();
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(Position);
	FTarvinRunResult Skips;
	const TArray<FTarvinItem> Items = FTarvinSelectionAction::GatherFromSelection(Skips, Operation);
	std::map<UStaticMeshComponent*, FVector> Expected;
	for (const FTarvinGroup& Group : FTarvinGrouping::Build(Items, Operation.ComputeBake))
	{
		const FTarvinItem& First = Items[Group.ItemIndices[0]];
		FVector Point = FVector::ZeroVector;
		RC_ASSERT(TarvinPivot::ComputePivotPoint(First.Mesh, Position, First.WorldTransform, Point));
		Expected.emplace(First.Component, First.WorldTransform.TransformPosition(Point));
	}
	std::map<UStaticMeshComponent*, FTransform> Before;
	for (const auto& [Component, Point] : Expected)
	{
		Before.emplace(Component, Component->GetComponentTransform());
	}
	const FTarvinRunResult Result = Scene.Run(Operation);
	int32 NumThere = 0;
	for (const auto& [Component, Point] : Expected)
	{
		const FVector Now = Component->GetComponentTransform().GetTranslation();
		const bool bThere = (Now - Point).Size() <= 1e-6 * Scene.Size();
		NumThere += bThere ? 1 : 0;
		RC_ASSERT(bThere || Component->GetComponentTransform().Equals(Before.at(Component), 1e-9 * Scene.Size()));
	}
	RC_ASSERT(NumThere >= Result.Baked);
}

RC_GTEST_FIXTURE_PROP(SetPivotProperty, IsTakenBackByOneUndoToTheBit, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	const FWorldState Before = Scene.State();
	const FTarvinRunResult Result = Scene.Run(FTarvinOperation::SetPivot(DrawPosition()));
	const FWorldState After = Scene.State();
	if (Result.Baked == 0)
	{
		RC_ASSERT(!Undo());
		return;
	}
	RC_ASSERT(Undo());
	RC_ASSERT(Before.Difference(Scene.State()) == "");
	RC_ASSERT(Redo());
	RC_ASSERT(After.Difference(Scene.State()) == "");
}

RC_GTEST_FIXTURE_PROP(SetPivotProperty, DoesNotWanderWhenRepeated, ())
{
	FCommandScene Scene = FCommandScene::Draw(World());
	const FTarvinOperation Operation = FTarvinOperation::SetPivot(DrawPosition());
	std::map<UStaticMeshComponent*, int32> NumMoves;
	for (int32 Round = 0; Round < 6; ++Round)
	{
		std::map<UStaticMeshComponent*, FVector> Before;
		for (UStaticMeshComponent* Component : Scene.Components())
		{
			Before.emplace(Component, Component->GetComponentLocation());
		}
		Scene.Run(Operation);
		for (const auto& [Component, Place] : Before)
		{
			NumMoves[Component] += (Component->GetComponentLocation() - Place).Size() > 1e-6 * Scene.Size() ? 1 : 0;
		}
	}
	// Once its origin is where it belongs, it stays there: later rounds find nothing to shift.
	RC_ASSERT(std::ranges::all_of(NumMoves, [](const auto& Moves) { return Moves.second <= 1; }));
	RC_ASSERT(Scene.LargestMove() <= 4e-6 * Scene.Size());
}

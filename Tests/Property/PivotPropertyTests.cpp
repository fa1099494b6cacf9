// SPDX-License-Identifier: MIT
#include "Property/CommandScene.h"

#include "TarvinGrouping.h"
#include "TarvinSelectionAction.h"

#include <set>

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
	const std::map<UStaticMeshComponent*, FTransform> Before = [&]()
	{
		std::map<UStaticMeshComponent*, FTransform> Transforms;
		for (UStaticMeshComponent* Component : Scene.Components())
		{
			Transforms.emplace(Component, Component->GetComponentTransform());
		}
		return Transforms;
	}();
	Scene.Run(Operation);
	for (const auto& [Component, Point] : Expected)
	{
		const FVector Now = Component->GetComponentTransform().GetTranslation();
		const bool bLeftAlone = Component->GetComponentTransform().Equals(Before.at(Component), 1e-9 * Scene.Size());
		RC_ASSERT(bLeftAlone || (Now - Point).Size() <= 1e-6 * Scene.Size());
	}
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
	for (int32 Round = 0; Round < 6; ++Round)
	{
		Scene.Run(Operation);
	}
	RC_ASSERT(Scene.LargestMove() <= 4e-6 * Scene.Size());
}

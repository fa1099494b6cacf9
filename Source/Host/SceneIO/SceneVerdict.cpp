// SPDX-License-Identifier: MIT
#include "SceneIO/SceneVerdict.h"

#include "Engine/StaticMeshComponent.h"
#include "SceneIO/SceneParts.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Rotation and scale closer to none than this are none: a second bake changes nothing.
constexpr double NothingTolerance = 1e-9;

/// What may be off, as a share of the size of things.
constexpr double ExactTolerance = 1e-7;

/// The same for what a node carries: it is not drawn, and is read by programs that compare more finely.
constexpr double PartTolerance = 1e-9;

/// A scale below this is zero to the bake.
constexpr double ZeroScale = 1e-8;

/// A place or scale beyond this would take what is baked out of the range of single precision.
constexpr double LargestPlacement = 1e15;
} // namespace

std::vector<FMatrix> FSceneJudge::WorldMatrices() const
{
	std::vector<FMatrix> Worlds = WorldMatrices(FSceneTree(Scene));
	Worlds.resize(std::size_t(Scene.NumNodes()));
	return Worlds;
}

std::vector<FMatrix> FSceneJudge::WorldMatrices(const FSceneTree& Tree) const
{
	std::vector<FMatrix> Worlds(std::size_t(Tree.Num()));
	std::vector<FGltfIndex> Pending;
	for (FGltfIndex Node = 0; Node < Tree.Num(); ++Node)
	{
		if (Tree.Node(Node).Parent == NoIndex && Tree.Node(Node).Root)
		{
			Pending.push_back(Node);
		}
	}
	while (!Pending.empty())
	{
		const FGltfIndex Node = Pending.back();
		Pending.pop_back();
		const FGltfIndex Parent = Tree.Node(Node).Parent;
		const FGltfIndex Source = Tree.Node(Node).Source;
		const FTransform& Relative = Tree.Node(Node).Root->GetRelativeTransform();
		// What was not touched is what the file says, shear included.
		const bool bAsInFile = Source != NoIndex && Relative == Scene.Node(Source).LoadedRelative;
		const FMatrix Local = bAsInFile ? Scene.Node(Source).TrueLocal : Relative.ToMatrixWithScale();
		Worlds[std::size_t(Node)] = Parent == NoIndex ? Local : Local * Worlds[std::size_t(Parent)];
		for (const FGltfIndex Child : Tree.Node(Node).Children)
		{
			Pending.push_back(Child);
		}
	}
	return Worlds;
}

namespace
{
bool IsFinite(const FMatrix& Matrix)
{
	bool bFinite = true;
	for (const auto& Row : Matrix.M)
	{
		bFinite = bFinite && std::isfinite(Row[0]) && std::isfinite(Row[1]) && std::isfinite(Row[2]);
	}
	return bFinite;
}

bool IsTooLarge(const FMatrix& Matrix)
{
	double Largest = 0.0;
	for (const auto& Row : Matrix.M)
	{
		Largest = std::max({Largest, std::abs(Row[0]), std::abs(Row[1]), std::abs(Row[2])});
	}
	return Largest > LargestPlacement;
}

bool HasNothingToBake(const FMatrix& World)
{
	FMatrix Still;
	for (int Axis = 0; Axis < 3; ++Axis)
	{
		Still.M[3][Axis] = World.M[3][Axis];
	}
	return RelativeDifference(World, Still) <= NothingTolerance;
}

/// True when the map cannot be written as rotation, translation and scale.
bool HasShear(const FMatrix& Matrix)
{
	return DecomposeMatrix(Matrix).Shear > ExactTolerance;
}

/// Rotation and uneven scale together: what is to stand still below it must be written with shear.
bool CanHoldStill(const FMatrix& Parent)
{
	FMatrix Inverse;
	return Parent.TryInverse(Inverse) && !HasShear(Inverse);
}
} // namespace

std::string FSceneJudge::ReasonOfPlace(
	ESceneCommand Command, FGltfIndex Index, const FSceneTree& Tree, const std::vector<FMatrix>& Worlds) const
{
	const FMatrix& World = Worlds[std::size_t(Index)];
	if (!IsFinite(World))
	{
		return "its transform is not finite";
	}
	if (IsTooLarge(World))
	{
		return "its place or scale is too large";
	}
	const FGltfIndex Source = Tree.Node(Index).Source;
	if (Source != NoIndex && !Scene.Node(Source).bUnitRotation)
	{
		return "its rotation is not a unit quaternion";
	}
	const FMatrixParts Parts = DecomposeMatrix(World);
	const FVector Scale = Parts.Transform.GetScale3D().GetAbs();
	if (Scale.X <= ZeroScale || Scale.Y <= ZeroScale || Scale.Z <= ZeroScale)
	{
		return "its scale in the world is zero";
	}
	if (Parts.Shear > ExactTolerance)
	{
		return "its world transform has shear";
	}
	const FTransform& Held = Tree.Node(Index).Root->GetComponentTransform();
	if (RelativeDifference(Held.ToMatrixWithScale(), World) > ExactTolerance)
	{
		return "its world transform cannot be held exactly";
	}
	const bool bMovesParts =
		Command == ESceneCommand::BakeTransform && Source != NoIndex && SceneParts::HasParts(*Scene.Document(), Source);
	if (bMovesParts &&
		(Parts.Shear > PartTolerance || RelativeDifference(Held.ToMatrixWithScale(), World) > PartTolerance))
	{
		return std::string("its ") + SceneParts::NameOfPart(*Scene.Document(), Source) +
			   " cannot be held in its place exactly";
	}
	const FGltfIndex Parent = Tree.Node(Index).Parent;
	if (Parent == NoIndex)
	{
		return {};
	}
	FMatrix Inverse;
	if (!Worlds[std::size_t(Parent)].TryInverse(Inverse))
	{
		return "its parent's scale is zero";
	}
	if (Command == ESceneCommand::BakeTransform && !CanHoldStill(Worlds[std::size_t(Parent)]))
	{
		return UnevenParentReason;
	}
	return {};
}

std::string FSceneJudge::ReasonOfChild(
	ESceneCommand Command, FGltfIndex Child, const FSceneTree& Tree, const std::vector<FMatrix>& Worlds) const
{
	const std::string Name = "its child '" + Tree.Node(Child).Actor->GetActorLabel().ToUtf8() + "'";
	if (!Tree.IsNew(Child) && bAnimated[std::size_t(Child)])
	{
		return Name + " is animated";
	}
	if (!Tree.IsNew(Child) && bJoint[std::size_t(Child)])
	{
		return Name + " is a joint of a skin";
	}
	const FGltfIndex Source = Tree.Node(Child).Source;
	if (Source != NoIndex && !Scene.Node(Source).bUnitRotation)
	{
		return Name + " has a rotation that is not a unit quaternion";
	}
	if ((Source != NoIndex && Scene.Node(Source).LocalShear > ExactTolerance) || !IsFinite(Worlds[std::size_t(Child)]))
	{
		return Name + " has a matrix that rotation and scale cannot say";
	}
	if (Command == ESceneCommand::SetPivot)
	{
		return {};
	}
	if (HasShear(Worlds[std::size_t(Child)]))
	{
		return Name + " would be sheared";
	}
	const FTransform& Held = Tree.Node(Child).Root->GetComponentTransform();
	return RelativeDifference(Held.ToMatrixWithScale(), Worlds[std::size_t(Child)]) > ExactTolerance
			   ? Name + " cannot be held in its place exactly"
			   : std::string();
}

bool FSceneJudge::HasMesh(const FSceneTree& Tree, FGltfIndex Index) const
{
	if (!Tree.Node(Index).Actor)
	{
		return false;
	}
	// A level shows nothing of its own in the world, and is named as what it is all the same.
	const UStaticMeshComponent* const Shown = Cast<UStaticMeshComponent>(Tree.Node(Index).Root);
	return Tree.IsNew(Index) ? Shown && Shown->GetStaticMesh() : Scene.Document()->Node(Index).Mesh != NoIndex;
}

/// Of a copy: what keeps its source, and an animated node that it was put under.
std::string FSceneJudge::ReasonForGood(const FSceneTree& Tree, FGltfIndex Index) const
{
	if (!Tree.IsNew(Index))
	{
		return StaticReason(Index);
	}
	for (FGltfIndex Up = Tree.Node(Index).Parent; Up != NoIndex; Up = Tree.Node(Up).Parent)
	{
		if (!Tree.IsNew(Up) && bAnimated[std::size_t(Up)])
		{
			return "it is under the animated node '" + Scene.NodeName(Up).ToUtf8() + "'";
		}
	}
	const FGltfIndex Source = Tree.Node(Index).Source;
	return Source == NoIndex ? std::string() : StaticReason(Source);
}

std::vector<FSceneVerdict> FSceneJudge::Judge(ESceneCommand Command, const std::vector<bool>& bWanted) const
{
	const FSceneTree Tree(Scene);
	std::vector<bool> bWantedOfTree = bWanted;
	bWantedOfTree.resize(std::size_t(Tree.Num()), false);
	std::vector<FSceneVerdict> Verdicts = Judge(Command, Tree, bWantedOfTree);
	Verdicts.resize(std::size_t(Scene.NumNodes()));
	return Verdicts;
}

std::vector<FSceneVerdict> FSceneJudge::Judge(
	ESceneCommand Command, const FSceneTree& Tree, const std::vector<bool>& bWanted) const
{
	const std::vector<FMatrix> Worlds = WorldMatrices(Tree);
	std::vector<FSceneVerdict> Verdicts(std::size_t(Tree.Num()));
	for (FGltfIndex Node = 0; Node < Tree.Num(); ++Node)
	{
		FSceneVerdict& Verdict = Verdicts[std::size_t(Node)];
		if (!HasMesh(Tree, Node))
		{
			continue;
		}
		Verdict.Kind = FSceneVerdict::EKind::LeftOut;
		Verdict.Reason = ReasonForGood(Tree, Node);
		if (Verdict.Reason.empty() && Command == ESceneCommand::BakeTransform &&
			HasNothingToBake(Worlds[std::size_t(Node)]))
		{
			Verdict.Kind = FSceneVerdict::EKind::NothingToBake;
			continue;
		}
		Verdict.Reason = Verdict.Reason.empty() ? ReasonOfPlace(Command, Node, Tree, Worlds) : Verdict.Reason;
		Verdict.Kind = Verdict.Reason.empty() ? FSceneVerdict::EKind::Candidate : Verdict.Kind;
	}
	// A node that is left out is a child to be held in its place, which may leave out its parent in turn.
	for (bool bChanged = true; bChanged;)
	{
		bChanged = false;
		for (FGltfIndex Node = 0; Node < Tree.Num(); ++Node)
		{
			FSceneVerdict& Verdict = Verdicts[std::size_t(Node)];
			if (Verdict.Kind != FSceneVerdict::EKind::Candidate || !bWanted[std::size_t(Node)])
			{
				continue;
			}
			for (const FGltfIndex Child : Tree.Node(Node).Children)
			{
				const bool bMovesItself =
					bWanted[std::size_t(Child)] && Verdicts[std::size_t(Child)].Kind == FSceneVerdict::EKind::Candidate;
				std::string Reason = bMovesItself ? std::string() : ReasonOfChild(Command, Child, Tree, Worlds);
				if (!Reason.empty())
				{
					Verdict = {FSceneVerdict::EKind::LeftOut, std::move(Reason)};
					bChanged = true;
					break;
				}
			}
		}
	}
	return Verdicts;
}

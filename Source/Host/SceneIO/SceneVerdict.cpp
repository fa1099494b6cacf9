// SPDX-License-Identifier: MIT
#include "SceneIO/SceneVerdict.h"

#include "SceneIO/SceneParts.h"
#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <array>
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

/// Node extensions that neither have a direction nor a size, or that are understood.
constexpr std::array<std::string_view, 9> HarmlessOnNodes = {"EXT_mesh_gpu_instancing", "KHR_lights_punctual",
	"KHR_node_hoverability", "KHR_node_selectability", "KHR_node_visibility", "KHR_physics_rigid_bodies",
	"KHR_xmp_json_ld", "MSFT_lod", "TARVIN_component"};

/// Extensions of meshes and primitives that do not say where or how large anything is, or that are understood.
constexpr std::array<std::string_view, 10> HarmlessOnMeshes = {"CESIUM_primitive_outline", "EXT_mesh_features",
	"EXT_structural_metadata", "KHR_draco_mesh_compression", "KHR_materials_variants", "KHR_mesh_quantization",
	"KHR_xmp_json_ld", "MSFT_lod", "TARVIN_static_mesh", "EXT_mesh_primitive_edge_visibility"};

template <std::size_t N>
std::string FirstUnknown(const std::vector<std::string>& Names, const std::array<std::string_view, N>& Known)
{
	for (const std::string& Name : Names)
	{
		if (std::find(Known.begin(), Known.end(), Name) == Known.end())
		{
			return Name;
		}
	}
	return {};
}
} // namespace

FSceneJudge::FSceneJudge(const FScene& InScene)
	: Scene(InScene)
{
	FindAnimated();
	FindJoints();
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		StaticReasons.push_back(FindStaticReason(Node));
	}
}

void FSceneJudge::FindAnimated()
{
	const FGltfModel& Model = Scene.Document()->Model();
	bAnimated.assign(Model.Nodes.size(), false);
	for (const FGltfAnimation& Animation : Model.Animations)
	{
		for (const FGltfChannel& Channel : Animation.Channels)
		{
			const FGltfIndex Node = Channel.Pointer.empty() ? Channel.Node : NodeOfPointer(Channel.Pointer);
			if (Node >= 0 && Node < Scene.NumNodes())
			{
				bAnimated[std::size_t(Node)] = true;
			}
		}
	}
	AnimatedAncestor.assign(Model.Nodes.size(), NoIndex);
	const FSceneTree Tree(Scene);
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		FGltfIndex& Found = AnimatedAncestor[std::size_t(Node)];
		for (FGltfIndex Up = Tree.Node(Node).Parent; Up != NoIndex && Found == NoIndex; Up = Tree.Node(Up).Parent)
		{
			Found = !Tree.IsNew(Up) && bAnimated[std::size_t(Up)] ? Up : NoIndex;
		}
	}
}

void FSceneJudge::FindJoints()
{
	const FGltfModel& Model = Scene.Document()->Model();
	bJoint.assign(Model.Nodes.size(), false);
	bJointOfBodies.assign(Model.Nodes.size(), false);
	for (const FGltfSkin& Skin : Model.Skins)
	{
		for (const FGltfIndex Joint : Skin.Joints)
		{
			bJoint[std::size_t(Joint)] = true;
		}
	}
	for (const FNodeReference& Reference : FindNodeReferences(*Scene.Document()))
	{
		const bool bShape = Reference.Kind == ENodeReference::Collider || Reference.Kind == ENodeReference::Trigger;
		// What is in the shape of its own node changes with it.
		if (bShape && Reference.Owner != Reference.Node)
		{
			ShapeOf.emplace(Reference.Node, Reference);
		}
	}
	for (std::size_t Node = 0; Node < Model.Nodes.size(); ++Node)
	{
		const auto& Extensions = Model.Nodes[Node].Extensions;
		if (Extensions && Extensions->RigidBody && Extensions->RigidBody->Joint)
		{
			bJointOfBodies[Node] = true;
			const FGltfIndex Other = Extensions->RigidBody->Joint->ConnectedNode;
			if (Other != NoIndex)
			{
				bJointOfBodies[std::size_t(Other)] = true;
			}
		}
	}
}

std::string FSceneJudge::FindStaticReason(FGltfIndex Index) const
{
	const FGltfNode& Node = Scene.Document()->Node(Index);
	if (Node.Mesh == NoIndex)
	{
		return {};
	}
	std::string Reason = ReasonOfNode(Node, Index);
	if (Reason.empty())
	{
		Reason = ReasonOfMesh(Scene.Document()->Mesh(Node.Mesh));
	}
	return Reason;
}

std::string FSceneJudge::ReasonOfNode(const FGltfNode& Node, FGltfIndex Index) const
{
	if (Node.Skin != NoIndex)
	{
		return "it is skinned";
	}
	if (Node.bHasWeights || Scene.Document()->Mesh(Node.Mesh).IsMorphed())
	{
		return "its mesh is morphed";
	}
	if (bAnimated[std::size_t(Index)])
	{
		return "it is animated";
	}
	if (const FGltfIndex Ancestor = AnimatedAncestor[std::size_t(Index)]; Ancestor != NoIndex)
	{
		return "it is under the animated node '" + Scene.NodeName(Ancestor).ToUtf8() + "'";
	}
	if (bJoint[std::size_t(Index)])
	{
		return "it is a joint of a skin";
	}
	if (bJointOfBodies[std::size_t(Index)])
	{
		return "it is joined to another body";
	}
	if (const auto Shape = ShapeOf.find(Index); Shape != ShapeOf.end())
	{
		const bool bCollider = Shape->second.Kind == ENodeReference::Collider;
		return "it is named by the " + std::string(bCollider ? "collider" : "trigger") + " of '" +
			   Scene.NodeName(Shape->second.Owner).ToUtf8() + "'";
	}
	if (Scene.Node(Index).LevelOf != NoIndex)
	{
		return "it is a level of detail, which follows '" + Scene.NodeName(Scene.Node(Index).LevelOf).ToUtf8() + "'";
	}
	if (!Node.Extensions)
	{
		return {};
	}
	if (Node.Extensions->bInstanced)
	{
		return "it is instanced";
	}
	if (Node.Extensions->RigidBody && Node.Extensions->RigidBody->Motion != NoJson)
	{
		return "it is a moving body, whose motion is said in its own space";
	}
	if (!Node.Extensions->LodNodes.empty() && Scene.Node(Index).LodNodes.IsEmpty())
	{
		return "its levels of detail cannot follow: they are shared, placed on their own, or placed otherwise";
	}
	const std::string Unknown = FirstUnknown(Node.Extensions->Names, HarmlessOnNodes);
	return Unknown.empty() ? std::string() : "it carries " + Unknown;
}

std::string FSceneJudge::ReasonOfMesh(const FGltfMesh& Mesh) const
{
	std::string Unknown = FirstUnknown(Mesh.ExtensionNames, HarmlessOnMeshes);
	bool bHasPositions = false;
	for (const FGltfPrimitive& Primitive : Mesh.Primitives)
	{
		Unknown = Unknown.empty() ? FirstUnknown(Primitive.ExtensionNames, HarmlessOnMeshes) : Unknown;
		bHasPositions = bHasPositions || Primitive.FindAttribute("POSITION");
	}
	if (!Unknown.empty())
	{
		return "its mesh carries " + Unknown;
	}
	return bHasPositions ? std::string() : "its mesh has no positions";
}

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
	if (!Scene.Node(Index).bUnitRotation)
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
	const bool bMovesParts = Command == ESceneCommand::BakeTransform && SceneParts::HasParts(*Scene.Document(), Index);
	if (bMovesParts &&
		(Parts.Shear > PartTolerance || RelativeDifference(Held.ToMatrixWithScale(), World) > PartTolerance))
	{
		return std::string("its ") + SceneParts::NameOfPart(*Scene.Document(), Index) +
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
		return "its parent combines rotation with uneven scale";
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

std::vector<FSceneVerdict> FSceneJudge::Judge(ESceneCommand Command, const std::vector<bool>& bWanted) const
{
	const FSceneTree Tree(Scene);
	const std::vector<FMatrix> Worlds = WorldMatrices(Tree);
	std::vector<FSceneVerdict> Verdicts(std::size_t(Scene.NumNodes()));
	const auto Document = Scene.Document();
	for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
	{
		FSceneVerdict& Verdict = Verdicts[std::size_t(Node)];
		if (Document->Node(Node).Mesh == NoIndex || !Tree.Node(Node).Actor)
		{
			continue;
		}
		Verdict.Kind = FSceneVerdict::EKind::LeftOut;
		Verdict.Reason = StaticReason(Node);
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
		for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
		{
			FSceneVerdict& Verdict = Verdicts[std::size_t(Node)];
			if (Verdict.Kind != FSceneVerdict::EKind::Candidate || !bWanted[std::size_t(Node)])
			{
				continue;
			}
			for (const FGltfIndex Child : Tree.Node(Node).Children)
			{
				const bool bMovesItself = !Tree.IsNew(Child) && bWanted[std::size_t(Child)] &&
										  Verdicts[std::size_t(Child)].Kind == FSceneVerdict::EKind::Candidate;
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

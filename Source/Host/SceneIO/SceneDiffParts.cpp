// SPDX-License-Identifier: MIT
#include "SceneIO/SceneDiffParts.h"

#include "SceneIO/SceneSpace.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{
enum class EPart
{
	Camera,
	Light,
	Collider,
	Trigger,
	Num,
};

constexpr std::array<const char*, std::size_t(EPart::Num)> PartNames = {"camera", "light", "collider", "trigger"};

/// The shape of a collider or trigger of the node; null where it has none of its own.
const FGltfGeometry* GeometryOf(const FGltfNode& Node, EPart Part)
{
	if (!Node.Extensions || !Node.Extensions->RigidBody)
	{
		return nullptr;
	}
	const FGltfRigidBody& Body = *Node.Extensions->RigidBody;
	if (Part == EPart::Collider)
	{
		return Body.Collider ? &Body.Collider->Geometry : nullptr;
	}
	return Body.Trigger && Body.Trigger->Nodes.empty() ? &Body.Trigger->Geometry : nullptr;
}

bool Carries(const FScenePicture& Scene, FGltfIndex Index, EPart Part)
{
	if (Index >= Scene.NumNodes())
	{
		return false;
	}
	const FGltfNode& Node = Scene.Scene().Node(Index);
	switch (Part)
	{
	case EPart::Camera:
		return Node.Camera != NoIndex;
	case EPart::Light:
		return Node.Extensions && Node.Extensions->Light != NoIndex;
	default:
		return GeometryOf(Node, Part) != nullptr;
	}
}

/// The mesh that is the shape of a collider or trigger; NoIndex for any other shape.
FGltfIndex ShapeMesh(const FScenePicture& Scene, FGltfIndex Index, EPart Part)
{
	const bool bMayHave = Part == EPart::Collider || Part == EPart::Trigger;
	const FGltfGeometry* const Geometry = bMayHave ? GeometryOf(Scene.Scene().Node(Index), Part) : nullptr;
	return Geometry && Geometry->Node != NoIndex ? Scene.Scene().Node(Geometry->Node).Mesh : NoIndex;
}

/// A part in both scenes, by the nodes that carry it; NoIndex where one has none.
struct FPair
{
	FGltfIndex A = NoIndex;
	FGltfIndex B = NoIndex;
};

/// Where the part that `From` has on `Node` is in `To`: on the same node, or on a child of it that does not have one in
/// `From`.
FGltfIndex Counterpart(const FScenePicture& From, const FScenePicture& To, FGltfIndex Node, EPart Part)
{
	if (Node >= To.NumNodes() || Carries(To, Node, Part))
	{
		return Node < To.NumNodes() ? Node : NoIndex;
	}
	for (const FGltfIndex Child : To.Scene().Node(Node).Children)
	{
		if (Carries(To, Child, Part) && !Carries(From, Child, Part))
		{
			return Child;
		}
	}
	return NoIndex;
}

std::vector<FPair> PairParts(const FScenePicture& A, const FScenePicture& B, EPart Part)
{
	std::vector<FPair> Pairs;
	std::vector<bool> bTakenOfA(std::size_t(A.NumNodes()), false);
	std::vector<bool> bTakenOfB(std::size_t(B.NumNodes()), false);
	const auto Add = [&](FGltfIndex InA, FGltfIndex InB)
	{
		Pairs.push_back({InA, InB});
		bTakenOfA[std::size_t(InA)] = true;
		bTakenOfB[std::size_t(InB)] = true;
	};
	for (FGltfIndex Node = 0; Node < A.NumNodes(); ++Node)
	{
		const FGltfIndex Found = Carries(A, Node, Part) ? Counterpart(A, B, Node, Part) : NoIndex;
		if (Found != NoIndex)
		{
			Add(Node, Found);
		}
	}
	for (FGltfIndex Node = 0; Node < B.NumNodes(); ++Node)
	{
		if (!Carries(B, Node, Part) || bTakenOfB[std::size_t(Node)])
		{
			continue;
		}
		const FGltfIndex Found = Counterpart(B, A, Node, Part);
		if (Found != NoIndex && !bTakenOfA[std::size_t(Found)])
		{
			Add(Found, Node);
		}
		else
		{
			Pairs.push_back({NoIndex, Node});
		}
	}
	for (FGltfIndex Node = 0; Node < A.NumNodes(); ++Node)
	{
		if (Carries(A, Node, Part) && !bTakenOfA[std::size_t(Node)])
		{
			Pairs.push_back({Node, NoIndex});
		}
	}
	return Pairs;
}

/// The distance of two points; what is no number in one scene only is as far away as can be.
double Distance(const FVector& A, const FVector& B)
{
	const double Found = DistanceOf(A, B);
	if (std::isnan(Found))
	{
		return A.ContainsNaN() == B.ContainsNaN() ? 0.0 : HUGE_VAL;
	}
	return Found;
}

/// Where a part's origin and its axes are: enough to tell any two places apart.
void ComparePlaces(const FMatrix& A, const FMatrix& B, FPartDeviation& Part)
{
	constexpr double Unit = SceneSpace::UnitsPerMetre;
	const FVector Points[] = {{0, 0, 0}, {Unit, 0, 0}, {0, Unit, 0}, {0, 0, Unit}};
	for (const FVector& Point : Points)
	{
		Part.Position = std::max(Part.Position, Distance(A.TransformPosition(Point), B.TransformPosition(Point)));
	}
}

class FPartComparison
{
public:
	FPartComparison(FScenePicture& InA, FScenePicture& InB, EPart InPart)
		: A(InA)
		, B(InB)
		, Part(InPart)
	{
	}

	FSceneStatus Compare(const FPair& Pair, FPartDeviation& Out)
	{
		Out.Part = PartNames[std::size_t(Part)];
		Out.Node = Pair.A != NoIndex ? Pair.A : Pair.B;
		Out.Name = (Pair.A != NoIndex ? A : B).Scene().Node(Out.Node).Name;
		if (Pair.A == NoIndex || Pair.B == NoIndex)
		{
			Out.Difference = Pair.A == NoIndex ? "is in the second scene only" : "is in the first scene only";
			return {};
		}
		const FGltfIndex MeshA = ShapeMesh(A, Pair.A, Part);
		const FGltfIndex MeshB = ShapeMesh(B, Pair.B, Part);
		if (MeshA != NoIndex && MeshB != NoIndex)
		{
			Out.bOfMesh = true;
			return CompareShapes(Pair, MeshA, MeshB, Out);
		}
		ComparePlaces(A.World(Pair.A), B.World(Pair.B), Out);
		return {};
	}

private:
	FSceneStatus CompareShapes(const FPair& Pair, FGltfIndex MeshA, FGltfIndex MeshB, FPartDeviation& Out)
	{
		TSceneResult<TSharedPtr<FMeshDescription>> ShapeA = A.Geometry(MeshA);
		TSceneResult<TSharedPtr<FMeshDescription>> ShapeB = B.Geometry(MeshB);
		if (!ShapeA || !ShapeB)
		{
			// What neither scene can show has no place.
			return !ShapeA && !ShapeB ? FSceneStatus() : FSceneStatus(ShapeA ? ShapeB.Error() : ShapeA.Error());
		}
		const auto PointsA = (*ShapeA)->GetVertexPositions();
		const auto PointsB = (*ShapeB)->GetVertexPositions();
		if (PointsA.size() != PointsB.size())
		{
			Out.Difference = "has another shape in the second scene";
			return {};
		}
		for (const FVertexID Vertex : (*ShapeA)->Vertices().GetElementIDs())
		{
			const std::size_t Slot = std::size_t(Vertex.GetValue());
			Out.Position = std::max(Out.Position, Distance(A.World(Pair.A).TransformPosition(FVector(PointsA[Slot])),
													  B.World(Pair.B).TransformPosition(FVector(PointsB[Slot]))));
		}
		return {};
	}

	FScenePicture& A;
	FScenePicture& B;
	EPart Part;
};
} // namespace

FSceneStatus ComparePartPlaces(FScenePicture& A, FScenePicture& B, FSceneDeviation& Result)
{
	for (const EPart Part : {EPart::Camera, EPart::Light, EPart::Collider, EPart::Trigger})
	{
		for (const FPair& Pair : PairParts(A, B, Part))
		{
			FPartDeviation& Found = Result.Parts.emplace_back();
			if (FSceneStatus Status = FPartComparison(A, B, Part).Compare(Pair, Found); !Status)
			{
				return Status;
			}
			Found.Position /= SceneSpace::UnitsPerMetre;
			const FVector Place = Pair.A != NoIndex ? A.World(Pair.A).TransformPosition(FVector::ZeroVector).GetAbs()
													: FVector::ZeroVector;
			const double Furthest = std::max({Place.X, Place.Y, Place.Z});
			Result.Size = std::isfinite(Furthest) ? std::max(Result.Size, Furthest) : Result.Size;
		}
	}
	std::ranges::stable_sort(Result.Parts, {}, &FPartDeviation::Node);
	return {};
}

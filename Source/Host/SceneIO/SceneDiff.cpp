// SPDX-License-Identifier: MIT
#include "SceneIO/SceneDiff.h"

#include "SceneIO/SceneDiffParts.h"
#include "SceneIO/ScenePicture.h"
#include "SceneIO/SceneSpace.h"
#include "SceneIO/TrianglePairs.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace
{
/// Unit length, however long or short the vector is; zero for one that points nowhere: of no length, or no number.
FVector Direction(const FVector& Vector)
{
	if (Vector.ContainsNaN() || Vector == FVector::ZeroVector)
	{
		return FVector::ZeroVector;
	}
	const FVector Scaled = Vector / Vector.GetAbsMax();
	return Scaled / Scaled.Size();
}

/// A normal as it stands in the world: by the inverse transpose, on the side on which the mirrored triangle shows its
/// face.
FVector WorldNormal(const FVector3f& Normal, const FMatrix& InverseTransposed)
{
	return Direction(InverseTransposed.TransformVector(Direction(FVector(Normal))));
}

/// One that points nowhere is as far from all others as can be.
double AngleBetween(const FVector& A, const FVector& B)
{
	const bool bBoth = A != FVector::ZeroVector && B != FVector::ZeroVector;
	const bool bNone = A == FVector::ZeroVector && B == FVector::ZeroVector;
	return bBoth ? std::atan2((A ^ B).Size(), A | B) : bNone ? 0.0 : std::numbers::pi;
}

/// A triangle in the world: a normal on the side that viewers show, of twice the area's length, and the longest edge.
struct FFace
{
	FVector Normal;
	double LongestEdge = 0.0;

	double Height() const { return LongestEdge > 0.0 ? Normal.Size() / LongestEdge : 0.0; }
};

FFace MakeFace(const FMeshDescription& Mesh, const FTriangleCorners& Corners, const FMatrix& World)
{
	FVector P[3];
	for (std::size_t Corner = 0; Corner < 3; ++Corner)
	{
		P[Corner] =
			World.TransformPosition(FVector(Mesh.GetVertexPositions()[std::size_t(Corners[Corner].GetValue())]));
	}
	const FVector Cross = (P[1] - P[0]) ^ (P[2] - P[0]);
	// A mirroring matrix turns triangles over.
	return {World.LinearDeterminant() < 0.0 ? -Cross : Cross,
		std::max({(P[1] - P[0]).Size(), (P[2] - P[1]).Size(), (P[0] - P[2]).Size()})};
}

/// How far single precision may move a vertex, as a share of the largest coordinate: a few units in the last place.
constexpr double RoundingOfPositions = 4.e-7;

double LargestMeasure(const FBox& Box)
{
	const FVector Extent = Box.GetSize();
	const FVector Min = Box.Min.GetAbs();
	const FVector Max = Box.Max.GetAbs();
	return std::max({Extent.X, Extent.Y, Extent.Z, Min.X, Min.Y, Min.Z, Max.X, Max.Y, Max.Z});
}

/// One node's deviation under one pair of world matrices.
class FCopyComparison
{
public:
	FCopyComparison(
		const FMeshDescription& InA, const FMeshDescription& InB, const FMatrix& InWorldA, const FMatrix& InWorldB)
		: A(InA)
		, B(InB)
		, WorldA(InWorldA)
		, WorldB(InWorldB)
	{
	}

	void AddTo(FNodeDeviation& Node, double& Size) const
	{
		FBox Box;
		for (const FVertexID Vertex : A.Vertices().GetElementIDs())
		{
			const std::size_t Slot = std::size_t(Vertex.GetValue());
			const FVector PointA = WorldA.TransformPosition(FVector(A.GetVertexPositions()[Slot]));
			const FVector PointB = WorldB.TransformPosition(FVector(B.GetVertexPositions()[Slot]));
			const double Distance = DistanceOf(PointA, PointB);
			// A coordinate that is no number in both is no difference; in one only, it is the largest.
			if (!std::isnan(Distance))
			{
				Node.Position = std::max(Node.Position, Distance);
				Box += PointA;
			}
			else if (PointA.ContainsNaN() != PointB.ContainsNaN())
			{
				Node.Position = HUGE_VAL;
			}
		}
		const double NodeSize = Box.IsValid ? LargestMeasure(Box) : 0.0;
		Size = std::max(Size, NodeSize);
		AddNormals(Node);
		AddWinding(Node, NodeSize);
	}

private:
	void AddNormals(FNodeDeviation& Node) const
	{
		FMatrix InverseA;
		FMatrix InverseB;
		if (!A.HasAttributes(EVertexInstanceAttributes::Normals) || !WorldA.TryInverse(InverseA) ||
			!WorldB.TryInverse(InverseB))
		{
			return;
		}
		InverseA = InverseA.GetTransposed();
		InverseB = InverseB.GetTransposed();
		for (const FVertexInstanceID Instance : A.VertexInstances().GetElementIDs())
		{
			const std::size_t Slot = std::size_t(Instance.GetValue());
			const FVector NormalA = WorldNormal(A.GetNormals()[Slot], InverseA);
			const FVector NormalB = WorldNormal(B.GetNormals()[Slot], InverseB);
			Node.Normal = std::max(Node.Normal, AngleBetween(NormalA, NormalB));
		}
	}

	void AddWinding(FNodeDeviation& Node, double NodeSize) const
	{
		const std::span<const FTriangleCorners> CornersA = A.GetTriangleCorners();
		const std::span<const FTriangleCorners> CornersB = B.GetTriangleCorners();
		const std::vector<std::size_t> Pairs = PairTriangles(CornersA, CornersB);
		for (std::size_t Triangle = 0; Triangle < CornersA.size(); ++Triangle)
		{
			const FFace FaceA = MakeFace(A, CornersA[Triangle], WorldA);
			const FFace FaceB = MakeFace(B, CornersB[Pairs.empty() ? Triangle : Pairs[Triangle]], WorldB);
			// Slivers no higher than what rounding moves vertices have no side.
			const double Noise = RoundingOfPositions * NodeSize;
			const bool bHasSides = FaceA.Height() > Noise && FaceB.Height() > Noise;
			Node.NumFlipped += bHasSides && (FaceA.Normal | FaceB.Normal) < 0.0 ? 1u : 0u;
		}
	}

	const FMeshDescription& A;
	const FMeshDescription& B;
	const FMatrix& WorldA;
	const FMatrix& WorldB;
};

std::string CountsDiffer(std::size_t InA, std::size_t InB, const char* What)
{
	return "has " + std::to_string(InA) + " " + What + " in the one scene and " + std::to_string(InB) + " in the other";
}

std::string FindDifference(const FMeshDescription& A, const FMeshDescription& B)
{
	if (A.Vertices().Num() != B.Vertices().Num() || A.GetVertexPositions().size() != B.GetVertexPositions().size())
	{
		return CountsDiffer(std::size_t(A.Vertices().Num()), std::size_t(B.Vertices().Num()), "vertices");
	}
	if (A.GetTriangleCorners().size() != B.GetTriangleCorners().size())
	{
		return CountsDiffer(A.GetTriangleCorners().size(), B.GetTriangleCorners().size(), "triangles");
	}
	const bool bNormalsInA = A.HasAttributes(EVertexInstanceAttributes::Normals);
	if (bNormalsInA != B.HasAttributes(EVertexInstanceAttributes::Normals))
	{
		return bNormalsInA ? "has normals in the first scene only" : "has normals in the second scene only";
	}
	return {};
}

FSceneStatus CompareNode(FScenePicture& A, FScenePicture& B, FNodeDeviation& Node, double& Size)
{
	const FGltfIndex MeshA = A.Scene().Node(Node.Node).Mesh;
	const FGltfIndex MeshB = B.Scene().Node(Node.Node).Mesh;
	if (MeshA == NoIndex || MeshB == NoIndex)
	{
		Node.Difference =
			MeshA == NoIndex ? "has a mesh in the second scene only" : "has a mesh in the first scene only";
		return {};
	}
	TSceneResult<TSharedPtr<FMeshDescription>> GeometryA = A.Geometry(MeshA);
	TSceneResult<TSharedPtr<FMeshDescription>> GeometryB = B.Geometry(MeshB);
	if (!GeometryA && !GeometryB)
	{
		Node.bUnreadable = true;
		return {};
	}
	if (!GeometryA || !GeometryB)
	{
		return GeometryA ? GeometryB.Error() : GeometryA.Error();
	}
	Node.Difference = FindDifference(**GeometryA, **GeometryB);
	TSceneResult<std::vector<FMatrix>> CopiesA = A.Copies(Node.Node);
	TSceneResult<std::vector<FMatrix>> CopiesB = B.Copies(Node.Node);
	if (!CopiesA || !CopiesB)
	{
		return CopiesA ? CopiesB.Error() : CopiesA.Error();
	}
	if (Node.Difference.empty() && CopiesA->size() != CopiesB->size())
	{
		Node.Difference = CountsDiffer(CopiesA->size(), CopiesB->size(), "instances");
	}
	for (std::size_t Copy = 0; Node.Difference.empty() && Copy < CopiesA->size(); ++Copy)
	{
		FCopyComparison(**GeometryA, **GeometryB, (*CopiesA)[Copy], (*CopiesB)[Copy]).AddTo(Node, Size);
	}
	return {};
}
} // namespace

TSceneResult<FSceneDeviation> CompareScenes(
	const std::shared_ptr<const FGltfDocument>& A, const std::shared_ptr<const FGltfDocument>& B)
{
	FScenePicture PictureA(A);
	FScenePicture PictureB(B);
	FSceneDeviation Result;
	const FGltfIndex NumNodes = std::max(PictureA.NumNodes(), PictureB.NumNodes());
	for (FGltfIndex Index = 0; Index < NumNodes; ++Index)
	{
		const bool bInA = Index < PictureA.NumNodes();
		const bool bInB = Index < PictureB.NumNodes();
		const bool bMesh = (bInA && A->Node(Index).Mesh != NoIndex) || (bInB && B->Node(Index).Mesh != NoIndex);
		if (!bMesh)
		{
			continue;
		}
		FNodeDeviation Node;
		Node.Node = Index;
		Node.Name = (bInA ? A : B)->Node(Index).Name;
		if (!bInA || !bInB)
		{
			Node.Difference = bInA ? "is in the first scene only" : "is in the second scene only";
		}
		else if (FSceneStatus Status = CompareNode(PictureA, PictureB, Node, Result.Size); !Status)
		{
			return Status.Error();
		}
		Node.Position /= SceneSpace::UnitsPerMetre;
		Result.Nodes.push_back(std::move(Node));
	}
	if (FSceneStatus Status = ComparePartPlaces(PictureA, PictureB, Result); !Status)
	{
		return Status.Error();
	}
	Result.Size /= SceneSpace::UnitsPerMetre;
	Result.SumUp();
	return Result;
}

void FSceneDeviation::LeaveOut(const std::function<bool(FGltfIndex)>& IsLeftOut)
{
	std::erase_if(Nodes, [&](const FNodeDeviation& Node) { return IsLeftOut(Node.Node); });
	std::erase_if(Parts, [&](const FPartDeviation& Part) { return Part.bOfMesh && IsLeftOut(Part.Node); });
	SumUp();
}

void FSceneDeviation::SumUp()
{
	Position = 0.0;
	Normal = 0.0;
	NumFlipped = 0;
	NumDifferent = 0;
	NumUnreadable = 0;
	for (const FNodeDeviation& Node : Nodes)
	{
		Position = std::max(Position, Node.Position);
		Normal = std::max(Normal, Node.Normal);
		NumFlipped += Node.NumFlipped;
		NumUnreadable += Node.bUnreadable ? 1u : 0u;
		NumDifferent += Node.Difference.empty() ? 0u : 1u;
	}
	for (const FPartDeviation& Part : Parts)
	{
		Position = std::max(Position, Part.Position);
		NumDifferent += Part.Difference.empty() ? 0u : 1u;
	}
}

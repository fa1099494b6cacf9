// SPDX-License-Identifier: MIT
#include "PlainViewer.h"

#include "SceneIO/GltfPrimitiveData.h"

#include <algorithm>
#include <cmath>

namespace
{
using FColumns = std::array<double, 16>;
using FPoint = std::array<double, 3>;

FColumns LocalPlace(const FGltfNode& Node)
{
	if (Node.bHasMatrix)
	{
		return Node.Matrix;
	}
	const auto& [X, Y, Z, W] = Node.Rotation;
	const FPoint& S = Node.Scale;
	const FPoint& T = Node.Translation;
	return {(1 - 2 * (Y * Y + Z * Z)) * S[0], 2 * (X * Y + Z * W) * S[0], 2 * (X * Z - Y * W) * S[0], 0,
		2 * (X * Y - Z * W) * S[1], (1 - 2 * (X * X + Z * Z)) * S[1], 2 * (Y * Z + X * W) * S[1], 0,
		2 * (X * Z + Y * W) * S[2], 2 * (Y * Z - X * W) * S[2], (1 - 2 * (X * X + Y * Y)) * S[2], 0, T[0], T[1], T[2],
		1};
}

FColumns Times(const FColumns& A, const FColumns& B)
{
	FColumns Product = {};
	for (std::size_t Column = 0; Column < 4; ++Column)
	{
		for (std::size_t Row = 0; Row < 4; ++Row)
		{
			for (std::size_t Inner = 0; Inner < 4; ++Inner)
			{
				Product[4 * Column + Row] += A[4 * Inner + Row] * B[4 * Column + Inner];
			}
		}
	}
	return Product;
}

/// The linear part of a place.
struct FLinear
{
	double M[3][3]; ///< by row and column

	explicit FLinear(const FColumns& Place)
	{
		for (std::size_t Row = 0; Row < 3; ++Row)
		{
			for (std::size_t Column = 0; Column < 3; ++Column)
			{
				M[Row][Column] = Place[4 * Column + Row];
			}
		}
	}

	double Cofactor(std::size_t Row, std::size_t Column) const
	{
		const std::size_t R1 = (Row + 1) % 3, R2 = (Row + 2) % 3, C1 = (Column + 1) % 3, C2 = (Column + 2) % 3;
		return M[R1][C1] * M[R2][C2] - M[R1][C2] * M[R2][C1];
	}

	bool IsMirror() const { return M[0][0] * Cofactor(0, 0) + M[0][1] * Cofactor(0, 1) + M[0][2] * Cofactor(0, 2) < 0; }

	FPoint Turn(const FPoint& V) const
	{
		FPoint Out = {};
		for (std::size_t Row = 0; Row < 3; ++Row)
		{
			Out[Row] = M[Row][0] * V[0] + M[Row][1] * V[1] + M[Row][2] * V[2];
		}
		return Out;
	}

	/// By the inverse transpose, which is that of the cofactors but for the determinant.
	FPoint TurnNormal(const FPoint& V) const
	{
		FPoint Out = {};
		for (std::size_t Row = 0; Row < 3; ++Row)
		{
			Out[Row] = Cofactor(Row, 0) * V[0] + Cofactor(Row, 1) * V[1] + Cofactor(Row, 2) * V[2];
			Out[Row] = IsMirror() ? -Out[Row] : Out[Row];
		}
		return Out;
	}
};

FPoint Unit(const FPoint& V)
{
	const double Length = std::hypot(V[0], V[1], V[2]);
	return {V[0] / Length, V[1] / Length, V[2] / Length};
}

/// The numbers of one attribute, `N` to an element.
template <std::size_t N>
std::vector<std::array<double, N>> Elements(const FPrimitiveData& Data, const char* Semantic)
{
	const FVertexAttribute* const Attribute = Data.Find(Semantic);
	std::vector<std::array<double, N>> Out(Attribute ? Data.VertexCount : 0);
	for (std::size_t Index = 0; Index < Out.size(); ++Index)
	{
		ReadComponents(Attribute->Elements, Index, std::span<double>(Out[Index]));
	}
	return Out;
}

void ShowTriangles(const FPrimitiveData& Data, bool bMirror, FShownPrimitive& Shown)
{
	const auto Corner = [&](std::size_t At) { return Data.bIndexed ? Data.Indices[At] : std::uint32_t(At); };
	const std::size_t Count = Data.bIndexed ? Data.Indices.size() : Data.VertexCount;
	const bool bList = Data.Mode == EGltfMode::Triangles;
	for (std::size_t At = 0; At + 2 < Count; At += bList ? 3 : 1)
	{
		std::array<std::uint32_t, 3> Triangle = {Corner(At), Corner(At + 1), Corner(At + 2)};
		if (Data.Mode == EGltfMode::TriangleStrip && At % 2 == 1)
		{
			std::swap(Triangle[1], Triangle[2]);
		}
		else if (Data.Mode == EGltfMode::TriangleFan)
		{
			Triangle = {Corner(At + 1), Corner(At + 2), Corner(0)};
		}
		if (bMirror)
		{
			std::swap(Triangle[1], Triangle[2]);
		}
		std::rotate(Triangle.begin(), std::min_element(Triangle.begin(), Triangle.end()), Triangle.end());
		// One with a corner twice has no inside: strips use them to go on elsewhere.
		if (Triangle[0] != Triangle[1] && Triangle[1] != Triangle[2] && Triangle[2] != Triangle[0])
		{
			Shown.Triangles.insert(Triangle);
		}
	}
}

template <std::size_t N>
testing::AssertionResult IsNear(const std::vector<std::array<double, N>>& A,
	const std::vector<std::array<double, N>>& B, double Tolerance, const char* What)
{
	if (A.size() != B.size())
	{
		return testing::AssertionFailure() << A.size() << " and " << B.size() << " " << What;
	}
	for (std::size_t Index = 0; Index < A.size(); ++Index)
	{
		for (std::size_t Axis = 0; Axis < N; ++Axis)
		{
			if (!(std::abs(A[Index][Axis] - B[Index][Axis]) <= Tolerance))
			{
				return testing::AssertionFailure() << What << " " << Index << " has " << A[Index][Axis] << " and "
												   << B[Index][Axis] << " along axis " << Axis;
			}
		}
	}
	return testing::AssertionSuccess();
}
} // namespace

std::array<double, 16> ShownPlace(const FGltfDocument& Document, FGltfIndex Node)
{
	const FGltfNode& Here = Document.Node(Node);
	return Here.Parent == NoIndex ? LocalPlace(Here) : Times(ShownPlace(Document, Here.Parent), LocalPlace(Here));
}

std::vector<FShownPrimitive> ShowNode(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Node)
{
	const FColumns Place = ShownPlace(*Document, Node);
	const FLinear Linear(Place);
	const FGltfIndex Mesh = Document->Node(Node).Mesh;
	std::vector<FShownPrimitive> Out;
	for (std::size_t Primitive = 0; Primitive < Document->Mesh(Mesh).Primitives.size(); ++Primitive)
	{
		const TSceneResult<FPrimitiveData> Data = ReadPrimitive(Document, Mesh, Primitive);
		EXPECT_TRUE(Data.IsOk()) << (Data ? "" : Data.Error().Message);
		FShownPrimitive& Shown = Out.emplace_back();
		for (const FPoint& Point : Elements<3>(*Data, "POSITION"))
		{
			const FPoint Turned = Linear.Turn(Point);
			Shown.Positions.push_back({Turned[0] + Place[12], Turned[1] + Place[13], Turned[2] + Place[14]});
		}
		for (const FPoint& Normal : Elements<3>(*Data, "NORMAL"))
		{
			Shown.Normals.push_back(Unit(Linear.TurnNormal(Normal)));
		}
		for (const std::array<double, 4>& Tangent : Elements<4>(*Data, "TANGENT"))
		{
			const FPoint Turned = Unit(Linear.Turn({Tangent[0], Tangent[1], Tangent[2]}));
			// The binormal is made of normal and tangent, whose cross product a mirror turns over.
			const double Side = Linear.IsMirror() ? -Tangent[3] : Tangent[3];
			Shown.Tangents.push_back({Turned[0], Turned[1], Turned[2], Side});
		}
		ShowTriangles(*Data, Linear.IsMirror(), Shown);
	}
	return Out;
}

testing::AssertionResult IsShownAlike(
	const std::vector<FShownPrimitive>& A, const std::vector<FShownPrimitive>& B, double Tolerance)
{
	if (A.empty() || A.size() != B.size())
	{
		return testing::AssertionFailure() << A.size() << " and " << B.size() << " primitives";
	}
	for (std::size_t Index = 0; Index < A.size(); ++Index)
	{
		for (const testing::AssertionResult& Result :
			{IsNear(A[Index].Positions, B[Index].Positions, Tolerance, "positions"),
				IsNear(A[Index].Normals, B[Index].Normals, 1e-6, "normals"),
				IsNear(A[Index].Tangents, B[Index].Tangents, 1e-6, "tangents")})
		{
			if (!Result)
			{
				return Result;
			}
		}
		if (A[Index].Triangles != B[Index].Triangles)
		{
			return testing::AssertionFailure() << "the triangles of primitive " << Index << " show other sides";
		}
	}
	return testing::AssertionSuccess();
}

// SPDX-License-Identifier: MIT
#include "Support/TestMeshes.h"

#include "CoreUObject/Package.h"

#include <array>

namespace
{
/// Adds the face of the box that looks along `Axis` in direction `Side` (1 or -1).
void AddFace(FMeshDescription& Mesh, FPolygonGroupID Group, int32 Axis, int32 Side)
{
	const int32 U = (Axis + 1) % 3;
	const int32 V = (Axis + 2) % 3;
	FVector Normal;
	FVector Tangent;
	Normal[Axis] = Side;
	Tangent[U] = 1.0;

	// Counter-clockwise seen from the tip of +Axis, since U x V = Axis.
	constexpr std::array<std::array<int32, 2>, 4> Corners{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};
	std::array<FVertexInstanceID, 4> Instances;
	for (std::size_t Corner = 0; Corner < 4; ++Corner)
	{
		const auto [AtU, AtV] = Corners[Corner];
		const int32 Vertex = (Side > 0 ? 1 << Axis : 0) | AtU << U | AtV << V;
		const FVertexInstanceID Instance = Mesh.CreateVertexInstance(FVertexID(Vertex));
		Mesh.SetVertexInstanceNormal(Instance, FVector3f(Normal));
		Mesh.SetVertexInstanceTangent(Instance, FVector3f(Tangent));
		Mesh.SetVertexInstanceBinormalSign(Instance, float(Side));
		Mesh.SetVertexInstanceUV(Instance, 0, FVector2f(float(AtU), float(AtV)));
		Mesh.SetVertexInstanceColor(Instance, FVector4f(float(Axis) / 2.f, float(AtU), float(AtV), 1.f));
		Instances[Corner] = Instance;
	}
	const std::size_t Second = Side > 0 ? 1 : 3;
	const std::size_t Last = Side > 0 ? 3 : 1;
	Mesh.CreateTriangle(Group, {Instances[0], Instances[Second], Instances[2]});
	Mesh.CreateTriangle(Group, {Instances[0], Instances[2], Instances[Last]});
}
} // namespace

FMeshDescription MakeBoxDescription(const FVector& Min, const FVector& Max)
{
	FMeshDescription Mesh;
	Mesh.SetNumUVChannels(1);
	for (int32 Corner = 0; Corner < 8; ++Corner)
	{
		FVector Position;
		for (int32 Axis = 0; Axis < 3; ++Axis)
		{
			Position[Axis] = (Corner >> Axis & 1) != 0 ? Max[Axis] : Min[Axis];
		}
		Mesh.CreateVertex(FVector3f(Position));
	}
	const FPolygonGroupID Group = Mesh.CreatePolygonGroup(TEXT("Sides"));
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		AddFace(Mesh, Group, Axis, 1);
		AddFace(Mesh, Group, Axis, -1);
	}
	return Mesh;
}

UStaticMesh* MakeBoxMesh(const FVector& Min, const FVector& Max, const FString& PackageName)
{
	UPackage* const Package = PackageName.IsEmpty() ? nullptr : CreatePackage(PackageName);
	const FName Name = Package ? FName(FPackageName::GetShortName(PackageName)) : NAME_None;
	UStaticMesh* const Mesh = NewObject<UStaticMesh>(Package, Name);
	Mesh->SetMeshDescription(0, MakeBoxDescription(Min, Max));
	Mesh->StaticMaterials.Add({TEXT("Sides"), TEXT("Stone")});
	if (Package)
	{
		Package->AddAsset(Mesh);
	}
	return Mesh;
}

UStaticMesh* MakeUnevenMesh(const FString& PackageName)
{
	return MakeBoxMesh(FVector(-1, -2, -3), FVector(2, 5, 11), PackageName);
}

UStaticMesh* MakeLargeMesh(int32 NumVertices)
{
	FMeshDescription Description;
	float Next = 0.f;
	for (FVector3f& Position : Description.AppendVertices(NumVertices))
	{
		Position = FVector3f(Next, -Next, 2.f * Next);
		Next += 0.25f;
	}
	UStaticMesh* const Mesh = NewObject<UStaticMesh>();
	Mesh->SetMeshDescription(0, std::move(Description));
	return Mesh;
}

TArray<FVector> LocalPositions(const UStaticMesh* Mesh, int32 Lod)
{
	TArray<FVector> Positions;
	if (const FMeshDescription* const Description = Mesh ? Mesh->GetMeshDescription(Lod) : nullptr)
	{
		for (const FVertexID Vertex : Description->Vertices().GetElementIDs())
		{
			Positions.Add(FVector(Description->GetVertexPosition(Vertex)));
		}
	}
	return Positions;
}

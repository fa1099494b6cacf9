// SPDX-License-Identifier: MIT
#include "SceneIO/ScenePicture.h"

#include "SceneIO/Scene.h"
#include "SceneIO/SceneMeshData.h"
#include "SceneIO/SceneSpace.h"

FScenePicture::FScenePicture(std::shared_ptr<const FGltfDocument> InDocument)
	: Document(std::move(InDocument))
{
	Worlds.resize(Document->Model().Nodes.size());
	std::vector<FGltfIndex> Pending;
	for (FGltfIndex Node = 0; Node < NumNodes(); ++Node)
	{
		if (Document->Node(Node).Parent == NoIndex)
		{
			Worlds[std::size_t(Node)] = Local(Node);
			Pending.push_back(Node);
		}
	}
	while (!Pending.empty())
	{
		const FGltfIndex Parent = Pending.back();
		Pending.pop_back();
		for (const FGltfIndex Child : Document->Node(Parent).Children)
		{
			Worlds[std::size_t(Child)] = Local(Child) * Worlds[std::size_t(Parent)];
			Pending.push_back(Child);
		}
	}
}

/// The matrix that viewers make of the node, of a quaternion that is not quite of length one, too.
FMatrix FScenePicture::Local(FGltfIndex Index) const
{
	const FGltfNode& Node = Document->Node(Index);
	if (Node.bHasMatrix)
	{
		return SceneSpace::MatrixToHost(Node.Matrix);
	}
	return FTransform(SceneSpace::RotationToHost(Node.Rotation).GetNormalized(),
		SceneSpace::PointToHost(Node.Translation), SceneSpace::ScaleToHost(Node.Scale))
		.ToMatrixWithScale();
}

TSceneResult<std::vector<FMatrix>> FScenePicture::Copies(FGltfIndex Node) const
{
	std::vector<FMatrix> Matrices;
	const auto& Extensions = Document->Node(Node).Extensions;
	if (!Extensions || !Extensions->bInstanced)
	{
		Matrices.push_back(World(Node));
		return Matrices;
	}
	TSceneResult<std::vector<FTransform>> Instances = ReadSceneInstances(Document, Node);
	if (!Instances)
	{
		return Instances.Error();
	}
	for (const FTransform& Instance : *Instances)
	{
		Matrices.push_back(Instance.ToMatrixWithScale() * World(Node));
	}
	return Matrices;
}

TSceneResult<TSharedPtr<FMeshDescription>> FScenePicture::Geometry(FGltfIndex Mesh)
{
	const auto Known = Decoded.find(Mesh);
	if (Known != Decoded.end())
	{
		return Known->second;
	}
	TSceneResult<TSharedPtr<FMeshDescription>> Result = FSceneMeshData(Document, Mesh).TryDecode();
	if (Result)
	{
		Decoded.emplace(Mesh, *Result);
	}
	return Result;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "Core/SharedPointer.h"
#include "MeshDescription/MeshDescription.h"
#include "SceneIO/GltfDocument.h"

#include <map>
#include <memory>
#include <vector>

/// A scene as a viewer computes it, in the host's space and units: where its nodes are, from their own matrices, and
/// what they show.
class FScenePicture
{
public:
	explicit FScenePicture(std::shared_ptr<const FGltfDocument> InDocument);

	FGltfIndex NumNodes() const { return FGltfIndex(Document->Model().Nodes.size()); }
	const FGltfDocument& Scene() const { return *Document; }

	/// The node's world matrix.
	const FMatrix& World(FGltfIndex Node) const { return Worlds[std::size_t(Node)]; }

	/// The world matrices of a node's copies: one, or one for each instance.
	TSceneResult<std::vector<FMatrix>> Copies(FGltfIndex Node) const;

	/// The mesh's geometry, decoded once. Fails when it cannot be decoded.
	TSceneResult<TSharedPtr<FMeshDescription>> Geometry(FGltfIndex Mesh);

private:
	FMatrix Local(FGltfIndex Index) const;

	std::shared_ptr<const FGltfDocument> Document;
	std::vector<FMatrix> Worlds;
	std::map<FGltfIndex, TSharedPtr<FMeshDescription>> Decoded;
};

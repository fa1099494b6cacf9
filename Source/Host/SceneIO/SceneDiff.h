// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"

#include <functional>
#include <string>
#include <vector>

/// How far one node's picture in one scene is from its picture in another. Lengths are in scene units, in the world.
struct FNodeDeviation
{
	FGltfIndex Node = NoIndex;
	std::string Name;
	double Position = 0.0;        ///< the largest distance between corresponding vertices
	double Normal = 0.0;          ///< the largest angle between corresponding normals, in radians; pi if one has none
	std::uint64_t NumFlipped = 0; ///< triangles that show their other side
	bool bUnreadable = false;     ///< neither scene's geometry can be decoded: there is no picture to compare
	std::string
		Difference; ///< what cannot be compared: "has 24 vertices in the one scene and 36 in the other"; else empty
};

/// How far a camera, a light, a collider or a trigger is from its place in another scene.
struct FPartDeviation
{
	FGltfIndex Node = NoIndex; ///< that carries it in the first scene, or else in the second
	std::string Name;          ///< of the node
	const char* Part = "";     ///< "camera", "light", "collider" or "trigger"
	double Position = 0.0;     ///< the largest distance between corresponding points, up to one unit from its origin
	bool bOfMesh = false;      ///< its shape is a mesh: then its vertices are compared
	std::string Difference;    ///< "is in the first scene only"; else empty
};

/// How far the picture of one scene is from that of another.
struct FSceneDeviation
{
	std::vector<FNodeDeviation> Nodes; ///< every node with a mesh, in file order
	std::vector<FPartDeviation> Parts; ///< what nodes carry, in file order
	double Position = 0.0;             ///< the largest of all nodes
	double Normal = 0.0;
	std::uint64_t NumFlipped = 0;
	double Size = 0.0;               ///< the largest world coordinate or extent in the first scene
	std::uint64_t NumDifferent = 0;  ///< nodes and parts that cannot be compared
	std::uint64_t NumUnreadable = 0; ///< nodes that no viewer can show, in neither scene

	/// The largest deviation of a position as a share of the scene's size.
	double RelativePosition() const { return Position == 0.0 ? 0.0 : Position / Size; }

	/// Takes nodes out of the comparison, and sums up what is left.
	void LeaveOut(const std::function<bool(FGltfIndex)>& IsLeftOut);

	/// Sums the nodes up; the scene's size stays.
	void SumUp();

	/// Radians by which a normal may be off: a few units in the last place of what normals are stored in.
	static constexpr double NormalTolerance = 1e-5;

	/// True when nothing that can be seen differs: positions within `Tolerance` of the size, normals within
	/// `NormalTolerance`, no flipped triangle, all nodes comparable.
	bool IsSame(double Tolerance) const
	{
		return NumDifferent == 0 && NumFlipped == 0 && !(RelativePosition() > Tolerance) && Normal <= NormalTolerance;
	}
};

/// Compares the pictures node by node, by the nodes' indices: what viewers compute, from the nodes' own matrices, of
/// every vertex that is drawn, instances included. Morph targets, skins and animations are left out. Cameras, lights,
/// colliders and triggers are compared by where they are in the world; one that has moved to a child node is the same.
/// Fails when geometry can be decoded in one scene only.
TSceneResult<FSceneDeviation> CompareScenes(
	const std::shared_ptr<const FGltfDocument>& A, const std::shared_ptr<const FGltfDocument>& B);

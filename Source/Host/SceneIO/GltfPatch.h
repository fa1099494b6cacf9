// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"
#include "SceneIO/JsonEdit.h"
#include "SceneIO/NewElements.h"
#include "SceneIO/NodePlacement.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Which elements of a primitive are meant: an attribute, or its indices.
struct FGltfSlot
{
	std::size_t Primitive = 0;
	std::string Semantic; ///< empty: the indices

	auto operator<=>(const FGltfSlot&) const = default;
};

/// What one mesh is to become.
struct FGltfMeshChange
{
	/// New elements, by slot. A slot that the primitive does not have yet is added to it.
	std::map<FGltfSlot, FNewElementsPtr> Elements;
	/// New primitive modes.
	std::map<std::size_t, EGltfMode> Modes;
	/// New texts of members of the mesh object ("extensions", "extras").
	std::map<std::string, std::string> Members;
};

/// Writes what differs from a node's default transform as translation, rotation and scale, in place of what the node
/// object had (a matrix included). Numbers equal to the object's own keep their digits.
void EditNodeTransform(FJsonEdit& Edit, const FJsonText& Json, FJsonIndex Node, const FNodePlacement& Placement);

/// What is to change in a list of indices.
struct FIndexListChange
{
	std::vector<FJsonIndex> Gone; ///< elements of the list
	std::vector<FGltfIndex> Added;
};

/// Takes elements out of a list of indices and puts others behind, making or removing the list as need be: the format
/// has no empty ones.
void EditIndexList(
	FJsonEdit& Edit, const FJsonText& Json, FJsonIndex Owner, const char* Key, const FIndexListChange& Change);

/// Everything that a save is to change in a document. Nothing else in it changes by a byte. Built, then saved once; the
/// document itself stays as it is.
class FGltfPatch
{
public:
	explicit FGltfPatch(std::shared_ptr<const FGltfDocument> InDocument);

	const FGltfDocument& Document() const { return *Source; }
	const std::shared_ptr<const FGltfDocument>& DocumentPtr() const { return Source; }

	/// True when saving gives the same bytes.
	bool IsEmpty() const;

	/// Any edit of the document's text. Lists at the root grow by AppendToRoot only.
	FJsonEdit& Json() { return Edit; }
	const FJsonEdit& Json() const { return Edit; }

	/// Adds an element to a list at the root ("nodes", "materials" …), which is made if need be, and returns its index.
	/// Not for "meshes", "accessors", "bufferViews" and "buffers", which have their own functions or follow from them.
	FGltfIndex AppendToRoot(std::string_view List, std::string Text);

	/// Lists a name in "extensionsUsed", once.
	void UseExtension(const std::string& Name);

	/// See EditNodeTransform.
	void SetNodeTransform(FGltfIndex Node, const std::array<double, 3>& Translation,
		const std::array<double, 4>& Rotation, const std::array<double, 3>& Scale);

	void SetNodeMesh(FGltfIndex Node, FGltfIndex Mesh);

	/// Adds children to a node, after those it has.
	void AddNodeChildren(FGltfIndex Node, const std::vector<FGltfIndex>& Children);

	/// Changes a mesh where it stands. Whether its elements are written over the old ones or beside them follows from
	/// who else sees the old bytes. A second change of one mesh adds to the first.
	void ChangeMesh(FGltfIndex Mesh, FGltfMeshChange Change);

	/// Adds a copy of a mesh as it is in the document, with a name and with changes, and returns its index. What the
	/// change leaves out is shared with the original.
	FGltfIndex CopyMesh(FGltfIndex Mesh, std::string Name, FGltfMeshChange Change);

	/// Adds an accessor of its own and returns its index.
	FGltfIndex AddAccessor(FNewElementsPtr Elements);

private:
	friend class FPatchLayout;

	struct FMeshCopy
	{
		FGltfIndex Mesh = NoIndex;
		std::string Name;
		FGltfMeshChange Change;
	};

	std::shared_ptr<const FGltfDocument> Source;
	FJsonEdit Edit;
	std::map<std::string, std::vector<std::string>, std::less<>> Appended;
	std::vector<std::string> NewExtensions;
	std::map<FGltfIndex, FGltfMeshChange> MeshChanges;
	std::vector<FMeshCopy> MeshCopies;
	std::vector<FNewElementsPtr> NewAccessors;
	std::map<FGltfIndex, std::vector<FGltfIndex>> NewChildren;
};

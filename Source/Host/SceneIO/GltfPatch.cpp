// SPDX-License-Identifier: MIT
#include "SceneIO/GltfPatch.h"

#include "SceneIO/JsonWrite.h"

#include <algorithm>

namespace
{
/// The old value, digits and all, where it already says the same.
template <std::size_t N>
bool Says(const FJsonText& Json, FJsonIndex Array, const std::array<double, N>& Values)
{
	if (!Json.IsArray(Array) || Json.Count(Array) != N)
	{
		return false;
	}
	FJsonIndex Element = Array + 1;
	for (const double Value : Values)
	{
		if (Json.Number(Element) != Value)
		{
			return false;
		}
		Element = Json.End(Element);
	}
	return true;
}

/// Writes a node's member unless it is the default, which needs no member, or already there.
template <std::size_t N>
void SetVector(FJsonEdit& Edit, const FJsonText& Json, FJsonIndex Node, std::string_view Key,
	const std::array<double, N>& Values, const std::array<double, N>& Default)
{
	if (Says(Json, Json.Find(Node, Key), Values))
	{
		return;
	}
	if (Values == Default)
	{
		Edit.RemoveMember(Node, Key);
		return;
	}
	Edit.SetMember(Node, Key, JsonWrite::Array(Values));
}

FGltfIndex CountOf(const FJsonText& Json, std::string_view List)
{
	const FJsonIndex Array = Json.Find(Json.Root(), List);
	return Json.IsArray(Array) ? static_cast<FGltfIndex>(Json.Count(Array)) : 0;
}
}

FGltfPatch::FGltfPatch(std::shared_ptr<const FGltfDocument> InDocument)
	: Source(std::move(InDocument))
	, Edit(Source->Json())
{
}

bool FGltfPatch::IsEmpty() const
{
	return Edit.IsEmpty() && Appended.empty() && NewExtensions.empty() && MeshChanges.empty() && MeshCopies.empty() &&
		   NewAccessors.empty() && NewChildren.empty();
}

FGltfIndex FGltfPatch::AppendToRoot(std::string_view List, std::string Text)
{
	auto Found = Appended.find(List);
	if (Found == Appended.end())
	{
		Found = Appended.emplace(std::string(List), std::vector<std::string>()).first;
	}
	Found->second.push_back(std::move(Text));
	return CountOf(Source->Json(), List) + static_cast<FGltfIndex>(Found->second.size()) - 1;
}

void FGltfPatch::UseExtension(const std::string& Name)
{
	const std::vector<std::string>& Used = Source->Model().ExtensionsUsed;
	const bool bKnown = std::find(Used.begin(), Used.end(), Name) != Used.end() ||
						std::find(NewExtensions.begin(), NewExtensions.end(), Name) != NewExtensions.end();
	if (!bKnown)
	{
		NewExtensions.push_back(Name);
	}
}

void EditNodeTransform(FJsonEdit& Edit, const FJsonText& Json, FJsonIndex Node, const FNodePlacement& Placement)
{
	Edit.RemoveMember(Node, "matrix");
	const FNodePlacement Default;
	SetVector(Edit, Json, Node, "translation", Placement.Translation, Default.Translation);
	SetVector(Edit, Json, Node, "rotation", Placement.Rotation, Default.Rotation);
	SetVector(Edit, Json, Node, "scale", Placement.Scale, Default.Scale);
}

void EditIndexList(
	FJsonEdit& Edit, const FJsonText& Json, FJsonIndex Owner, const char* Key, const FIndexListChange& Change)
{
	const FJsonIndex Array = Json.Find(Owner, Key);
	if (Array == NoJson)
	{
		if (!Change.Added.empty())
		{
			Edit.SetMember(Owner, Key, JsonWrite::Indices(Change.Added));
		}
		return;
	}
	if (Change.Added.empty() && !Change.Gone.empty() && Change.Gone.size() == Json.Count(Array))
	{
		Edit.RemoveMember(Owner, Key);
		return;
	}
	for (const FJsonIndex Element : Change.Gone)
	{
		Edit.RemoveElement(Array, Element);
	}
	for (const FGltfIndex Index : Change.Added)
	{
		Edit.AppendElement(Array, JsonWrite::Integer(static_cast<std::uint64_t>(Index)));
	}
}

void FGltfPatch::SetNodeTransform(FGltfIndex Node, const std::array<double, 3>& Translation,
	const std::array<double, 4>& Rotation, const std::array<double, 3>& Scale)
{
	EditNodeTransform(Edit, Source->Json(), Source->Node(Node).Json, {Translation, Rotation, Scale});
}

void FGltfPatch::SetNodeMesh(FGltfIndex Node, FGltfIndex Mesh)
{
	Edit.SetMember(Source->Node(Node).Json, "mesh", JsonWrite::Integer(static_cast<std::uint64_t>(Mesh)));
}

void FGltfPatch::AddNodeChildren(FGltfIndex Node, const std::vector<FGltfIndex>& Children)
{
	std::vector<FGltfIndex>& List = NewChildren[Node];
	List.insert(List.end(), Children.begin(), Children.end());
}

void FGltfPatch::ChangeMesh(FGltfIndex Mesh, FGltfMeshChange Change)
{
	FGltfMeshChange& Stored = MeshChanges[Mesh];
	for (auto& [Slot, Elements] : Change.Elements)
	{
		Stored.Elements[Slot] = std::move(Elements);
	}
	for (const auto& [Primitive, Mode] : Change.Modes)
	{
		Stored.Modes[Primitive] = Mode;
	}
	for (auto& [Key, Text] : Change.Members)
	{
		Stored.Members[Key] = std::move(Text);
	}
}

FGltfIndex FGltfPatch::CopyMesh(FGltfIndex Mesh, std::string Name, FGltfMeshChange Change)
{
	MeshCopies.push_back({Mesh, std::move(Name), std::move(Change)});
	return static_cast<FGltfIndex>(Source->Model().Meshes.size() + MeshCopies.size() - 1);
}

FGltfIndex FGltfPatch::AddAccessor(FNewElementsPtr Elements)
{
	NewAccessors.push_back(std::move(Elements));
	return static_cast<FGltfIndex>(Source->Model().Accessors.size() + NewAccessors.size() - 1);
}

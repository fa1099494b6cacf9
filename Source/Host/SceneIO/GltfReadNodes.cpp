// SPDX-License-Identifier: MIT
#include "SceneIO/GltfReader.h"
#include "SceneIO/SceneLimits.h"

namespace
{
FGltfNode& Node(FGltfReader& Reader, FGltfIndex Index)
{
	return Reader.Model.Nodes[static_cast<std::size_t>(Index)];
}

bool ReadTransform(FGltfReader& Reader, FGltfNode& Out)
{
	Out.bHasMatrix = Reader.Json.Find(Out.Json, "matrix") != NoJson;
	return Reader.Numbers(Out.Json, "matrix", Out.Matrix) && Reader.Numbers(Out.Json, "translation", Out.Translation) &&
		   Reader.Numbers(Out.Json, "rotation", Out.Rotation) && Reader.Numbers(Out.Json, "scale", Out.Scale);
}

bool ReadInstancing(FGltfReader& Reader, FJsonIndex Object, FGltfNodeExtensions& Out)
{
	FJsonIndex Attributes = NoJson;
	if (!Reader.Required(Object, "attributes") || !Reader.ObjectMember(Object, "attributes", Attributes))
	{
		return false;
	}
	Out.bInstanced = true;
	for (const FJsonMember& Member : Reader.Json.Members(Attributes))
	{
		FGltfAttribute& Attribute = Out.Instances.emplace_back();
		Attribute.Semantic = *Reader.Json.String(Member.Key);
		Attribute.Json = Member.Value;
		if (!Reader.IndexValue(Member.Value, Reader.Model.Accessors.size(), "accessors", Attribute.Accessor))
		{
			return false;
		}
		const FGltfAccessor& Data = Reader.Model.Accessors[static_cast<std::size_t>(Attribute.Accessor)];
		const bool bVec3 = Attribute.Semantic == "TRANSLATION" || Attribute.Semantic == "SCALE";
		const bool bVec4 = Attribute.Semantic == "ROTATION";
		const bool bTypeFits = (!bVec3 && !bVec4) || Data.Type == (bVec3 ? EGltfType::Vec3 : EGltfType::Vec4);
		const FGltfIndex First = Out.Instances.front().Accessor;
		if (!bTypeFits || ((bVec3 || bVec4) && Data.Component == EGltfComponent::Unknown))
		{
			return Reader.Fail(Member.Value, "names an accessor of the wrong type");
		}
		if (Data.Count != Reader.Model.Accessors[static_cast<std::size_t>(First)].Count)
		{
			return Reader.Fail(Member.Value, "names an accessor with another number of instances than the first");
		}
	}
	return true;
}

bool ReadNodeExtensions(FGltfReader& Reader, std::size_t NodeCount, FGltfNode& Out)
{
	FJsonIndex Extensions = NoJson;
	if (!Reader.ObjectMember(Out.Json, "extensions", Extensions) || Extensions == NoJson)
	{
		return Extensions == NoJson;
	}
	auto Carried = std::make_shared<FGltfNodeExtensions>();
	Carried->Names = Reader.ExtensionNames(Out.Json);
	FJsonIndex Light = NoJson;
	FJsonIndex Lod = NoJson;
	FJsonIndex Instancing = NoJson;
	FJsonIndex RigidBody = NoJson;
	if (!Reader.ObjectMember(Extensions, "KHR_lights_punctual", Light) ||
		!Reader.ObjectMember(Extensions, "MSFT_lod", Lod) ||
		!Reader.ObjectMember(Extensions, "EXT_mesh_gpu_instancing", Instancing) ||
		!Reader.ObjectMember(Extensions, "KHR_physics_rigid_bodies", RigidBody))
	{
		return false;
	}
	const bool bRead =
		(Light == NoJson || Reader.Index(Light, "light", Reader.Model.Lights.size(), "lights", Carried->Light)) &&
		(Lod == NoJson || Reader.Indices(Lod, "ids", NodeCount, "nodes", Carried->LodNodes)) &&
		(Instancing == NoJson || ReadInstancing(Reader, Instancing, *Carried)) &&
		(RigidBody == NoJson || ReadGltfRigidBody(Reader, RigidBody, Carried->RigidBody.emplace()));
	Out.Extensions = std::move(Carried);
	return bRead;
}

bool ReadNode(FGltfReader& Reader, FJsonIndex Object, std::size_t NodeCount, FGltfNode& Out)
{
	Out.Json = Object;
	Out.Name = Reader.Name(Object);
	Out.bHasWeights = Reader.Json.Find(Object, "weights") != NoJson;
	Out.bHasExtras = Reader.Json.Find(Object, "extras") != NoJson;
	const FGltfModel& Model = Reader.Model;
	return ReadTransform(Reader, Out) && Reader.Indices(Object, "children", NodeCount, "nodes", Out.Children) &&
		   Reader.Index(Object, "mesh", Model.Meshes.size(), "meshes", Out.Mesh) &&
		   Reader.Index(Object, "skin", Model.Skins.size(), "skins", Out.Skin) &&
		   Reader.Index(Object, "camera", Model.Cameras.size(), "cameras", Out.Camera) &&
		   ReadNodeExtensions(Reader, NodeCount, Out);
}

/// Gives every node its parent. A node under two parents would have two places.
bool LinkParents(FGltfReader& Reader)
{
	for (std::size_t I = 0; I < Reader.Model.Nodes.size(); ++I)
	{
		const FGltfIndex Parent = static_cast<FGltfIndex>(I);
		for (const FGltfIndex Child : Node(Reader, Parent).Children)
		{
			FGltfNode& ChildNode = Node(Reader, Child);
			if (ChildNode.Parent != NoIndex)
			{
				return Reader.FailMember(Node(Reader, Parent).Json, "children",
					"holds node " + std::to_string(Child) + ", which is already a child of node " +
						std::to_string(ChildNode.Parent));
			}
			ChildNode.Parent = Parent;
		}
	}
	return true;
}

/// With one parent each, a node that no root leads to lies on a cycle or below one. Measures depth on the way.
bool CheckHierarchy(FGltfReader& Reader)
{
	struct FStep
	{
		FGltfIndex Node;
		std::size_t Depth;
	};
	std::vector<FStep> Open;
	std::vector<bool> bReached(Reader.Model.Nodes.size());
	for (std::size_t I = 0; I < Reader.Model.Nodes.size(); ++I)
	{
		if (Reader.Model.Nodes[I].Parent == NoIndex)
		{
			Open.push_back({static_cast<FGltfIndex>(I), 0});
		}
	}
	while (!Open.empty())
	{
		const FStep Step = Open.back();
		Open.pop_back();
		bReached[static_cast<std::size_t>(Step.Node)] = true;
		if (Step.Depth > SceneLimits::MaxNodeDepth)
		{
			return Reader.Fail(Node(Reader, Step.Node).Json,
				"lies more than " + std::to_string(SceneLimits::MaxNodeDepth) + " levels below its root");
		}
		for (const FGltfIndex Child : Node(Reader, Step.Node).Children)
		{
			Open.push_back({Child, Step.Depth + 1});
		}
	}
	for (std::size_t I = 0; I < bReached.size(); ++I)
	{
		if (!bReached[I])
		{
			return Reader.Fail(Reader.Model.Nodes[I].Json, "is its own ancestor, or lies below a node that is");
		}
	}
	return true;
}

bool IsIdentity(const FGltfNode& Node)
{
	const FGltfNode Identity;
	return Node.Matrix == Identity.Matrix && Node.Translation == Identity.Translation &&
		   Node.Rotation == Identity.Rotation && Node.Scale == Identity.Scale;
}

/// A scene may list a node that is another's child, as some exporters do, only where nothing above it moves it:
/// elsewhere viewers differ in whether the scene or the parent says where it is.
bool IsPlacedByScene(FGltfReader& Reader, FGltfIndex Root)
{
	for (FGltfIndex At = Node(Reader, Root).Parent; At != NoIndex; At = Node(Reader, At).Parent)
	{
		if (!IsIdentity(Node(Reader, At)))
		{
			return false;
		}
	}
	return true;
}

bool ReadScenes(FGltfReader& Reader)
{
	std::vector<FJsonIndex> Scenes;
	if (!Reader.Objects(Reader.Json.Root(), "scenes", Scenes))
	{
		return false;
	}
	for (const FJsonIndex Object : Scenes)
	{
		FGltfScene& Scene = Reader.Model.Scenes.emplace_back();
		Scene.Json = Object;
		Scene.Name = Reader.Name(Object);
		if (!Reader.Indices(Object, "nodes", Reader.Model.Nodes.size(), "nodes", Scene.Nodes))
		{
			return false;
		}
		for (const FGltfIndex Root : Scene.Nodes)
		{
			if (!IsPlacedByScene(Reader, Root))
			{
				return Reader.FailMember(Object, "nodes",
					"holds node " + std::to_string(Root) + ", which is no root: it is moved as a child of node " +
						std::to_string(Node(Reader, Root).Parent));
			}
		}
	}
	return Reader.Index(Reader.Json.Root(), "scene", Reader.Model.Scenes.size(), "scenes", Reader.Model.DefaultScene);
}

/// Skins stand before nodes, since nodes name them; what they say of nodes is checked against the number of nodes.
bool ReadSkins(FGltfReader& Reader, std::size_t NodeCount)
{
	std::vector<FJsonIndex> Skins;
	if (!Reader.Objects(Reader.Json.Root(), "skins", Skins))
	{
		return false;
	}
	for (const FJsonIndex Object : Skins)
	{
		FGltfSkin& Skin = Reader.Model.Skins.emplace_back();
		Skin.Json = Object;
		Skin.Name = Reader.Name(Object);
		if (!Reader.Indices(Object, "joints", NodeCount, "nodes", Skin.Joints) ||
			!Reader.Index(Object, "skeleton", NodeCount, "nodes", Skin.Skeleton) ||
			!Reader.Index(
				Object, "inverseBindMatrices", Reader.Model.Accessors.size(), "accessors", Skin.InverseBindMatrices))
		{
			return false;
		}
	}
	return true;
}
}

bool ReadGltfNodes(FGltfReader& Reader)
{
	std::vector<FJsonIndex> Nodes;
	if (!Reader.Objects(Reader.Json.Root(), "nodes", Nodes) || !ReadSkins(Reader, Nodes.size()))
	{
		return false;
	}
	Reader.Model.Nodes.reserve(Nodes.size());
	for (const FJsonIndex Object : Nodes)
	{
		if (!ReadNode(Reader, Object, Nodes.size(), Reader.Model.Nodes.emplace_back()))
		{
			return false;
		}
	}
	return LinkParents(Reader) && CheckHierarchy(Reader) && ReadScenes(Reader);
}

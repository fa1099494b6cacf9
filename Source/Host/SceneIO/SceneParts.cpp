// SPDX-License-Identifier: MIT
#include "SceneIO/SceneParts.h"

#include "Engine/Actor.h"
#include "SceneIO/GltfPatch.h"
#include "SceneIO/JsonWrite.h"

DEFINE_CLASS(UScenePartComponent)

namespace
{
constexpr const char* Lights = "KHR_lights_punctual";
constexpr const char* Bodies = "KHR_physics_rigid_bodies";

/// Geometry that is the node's own mesh changes with it, and needs no move.
bool Moves(const FGltfGeometry& Geometry, FGltfIndex Node)
{
	return Geometry.Node != Node;
}

bool HasLight(const FGltfNode& Node)
{
	return Node.Extensions && Node.Extensions->Light != NoIndex;
}

bool HasCollider(const FGltfNode& Node, FGltfIndex Index)
{
	return Node.Extensions && Node.Extensions->RigidBody && Node.Extensions->RigidBody->Collider &&
		   Moves(Node.Extensions->RigidBody->Collider->Geometry, Index);
}

bool HasTrigger(const FGltfNode& Node, FGltfIndex Index)
{
	return Node.Extensions && Node.Extensions->RigidBody && Node.Extensions->RigidBody->Trigger &&
		   Node.Extensions->RigidBody->Trigger->Nodes.empty() &&
		   Moves(Node.Extensions->RigidBody->Trigger->Geometry, Index);
}

/// Moves members of a node's objects elsewhere.
class FPartMove
{
public:
	FPartMove(FJsonEdit& InEdit, const FJsonText& InJson)
		: Edit(InEdit)
		, Json(InJson)
	{
	}

	/// Takes the member from its owner, and returns it as a member of another.
	std::string Take(FJsonIndex Owner, const char* Key)
	{
		Edit.RemoveMember(Owner, Key);
		return std::string("\"") + Key + "\":" + std::string(Json.Raw(Json.Find(Owner, Key)));
	}

private:
	FJsonEdit& Edit;
	const FJsonText& Json;
};

void AppendMember(std::string& Members, const std::string& Member)
{
	Members += (Members.empty() ? "" : ",") + Member;
}
} // namespace

bool SceneParts::HasParts(const FGltfDocument& Document, FGltfIndex Index)
{
	const FGltfNode& Node = Document.Node(Index);
	return Node.Mesh != NoIndex &&
		   (Node.Camera != NoIndex || HasLight(Node) || HasCollider(Node, Index) || HasTrigger(Node, Index));
}

UScenePartComponent* SceneParts::Find(const AActor* Actor)
{
	const TArray<UScenePartComponent*> Parts = Actor->GetComponentsOf<UScenePartComponent>();
	return Parts.IsEmpty() ? nullptr : Parts[0];
}

const char* SceneParts::NameOfPart(const FGltfDocument& Document, FGltfIndex Index)
{
	const FGltfNode& Node = Document.Node(Index);
	return Node.Camera != NoIndex     ? "camera"
		   : HasLight(Node)           ? "light"
		   : HasCollider(Node, Index) ? "collider"
									  : "trigger";
}

std::string SceneParts::MoveToChild(FJsonEdit& Edit, const FGltfDocument& Document, FGltfIndex Index,
	const FTransform& Relative, const std::string& NodeName)
{
	const FGltfNode& Node = Document.Node(Index);
	const FJsonText& Json = Document.Json();
	const FJsonIndex Extensions = Json.Find(Node.Json, "extensions");
	FPartMove Move(Edit, Json);
	std::string Members = Node.Camera != NoIndex ? Move.Take(Node.Json, "camera") : std::string();

	std::string Carried;
	std::uint32_t NumTaken = 0;
	if (HasLight(Node))
	{
		AppendMember(Carried, Move.Take(Extensions, Lights));
		++NumTaken;
	}
	std::string Body;
	const FJsonIndex BodyObject = Json.Find(Extensions, Bodies);
	std::uint32_t NumTakenOfBody = 0;
	for (const auto& [Key, bHas] :
		{std::pair("collider", HasCollider(Node, Index)), {"trigger", HasTrigger(Node, Index)}})
	{
		if (bHas)
		{
			AppendMember(Body, Move.Take(BodyObject, Key));
			++NumTakenOfBody;
		}
	}
	if (!Body.empty())
	{
		AppendMember(Carried, std::string("\"") + Bodies + "\":{" + Body + "}");
		if (NumTakenOfBody == Json.Count(BodyObject))
		{
			Edit.RemoveMember(Extensions, Bodies);
			++NumTaken;
		}
	}
	if (NumTaken > 0 && NumTaken == Json.Count(Extensions))
	{
		Edit.RemoveMember(Node.Json, "extensions");
	}
	if (!Carried.empty())
	{
		AppendMember(Members, "\"extensions\":{" + Carried + "}");
	}

	const std::string Name = JsonWrite::String(NodeName.empty() ? "parts" : NodeName + " parts");
	const std::string Object = "{\"name\":" + Name + "," + Members + "}";
	const TSceneResult<FJsonText> Child = FJsonText::Parse(Object, "");
	check(Child.IsOk());
	FJsonEdit Placing(*Child);
	if (const auto Placement = ChangedPlacement(FGltfNode(), FTransform(), Relative))
	{
		EditNodeTransform(Placing, *Child, Child->Root(), *Placement);
	}
	return Placing.ApplyAll();
}

// SPDX-License-Identifier: MIT
#include "SceneIO/GltfReader.h"

namespace
{
EGltfShapeType ShapeType(std::string_view Name)
{
	return Name == "plane"      ? EGltfShapeType::Plane
		   : Name == "sphere"   ? EGltfShapeType::Sphere
		   : Name == "box"      ? EGltfShapeType::Box
		   : Name == "cylinder" ? EGltfShapeType::Cylinder
		   : Name == "capsule"  ? EGltfShapeType::Capsule
								: EGltfShapeType::Unknown;
}

/// The values that the extension gives to parameters that are left out.
void SetDefaults(FGltfShape& Shape)
{
	switch (Shape.Type)
	{
	case EGltfShapeType::Sphere:
		Shape.Radius = 0.5;
		break;
	case EGltfShapeType::Box:
		Shape.Size = {1, 1, 1};
		break;
	case EGltfShapeType::Cylinder:
	case EGltfShapeType::Capsule:
		Shape.Height = 0.5;
		Shape.RadiusBottom = 0.25;
		Shape.RadiusTop = 0.25;
		break;
	case EGltfShapeType::Plane:
	case EGltfShapeType::Unknown:
		break;
	}
}

bool ReadShape(FGltfReader& Reader, FJsonIndex Object)
{
	FGltfShape& Shape = Reader.Model.Shapes.emplace_back();
	Shape.Json = Object;
	std::string Type;
	if (!Reader.Required(Object, "type") || !Reader.String(Object, "type", Type))
	{
		return false;
	}
	Shape.Type = ShapeType(Type);
	if (Shape.Type == EGltfShapeType::Unknown)
	{
		return true;
	}
	SetDefaults(Shape);
	const FJsonIndex Values = Reader.Json.Find(Object, Type);
	if (!Reader.ObjectMember(Object, Type, Shape.Parameters) || Values == NoJson)
	{
		return Values == NoJson;
	}
	if (Shape.Type == EGltfShapeType::Box)
	{
		return Reader.Numbers(Values, "size", Shape.Size);
	}
	return Reader.Number(Values, "radius", Shape.Radius) && Reader.Number(Values, "height", Shape.Height) &&
		   Reader.Number(Values, "radiusBottom", Shape.RadiusBottom) &&
		   Reader.Number(Values, "radiusTop", Shape.RadiusTop) && Reader.Number(Values, "sizeX", Shape.Size[0]) &&
		   Reader.Number(Values, "sizeZ", Shape.Size[2]) && Reader.Bool(Values, "doubleSided", Shape.bDoubleSided);
}

std::size_t RootNodeCount(const FGltfReader& Reader)
{
	const FJsonIndex Nodes = Reader.Json.Find(Reader.Json.Root(), "nodes");
	return Reader.Json.IsArray(Nodes) ? Reader.Json.Count(Nodes) : 0;
}

/// The length of one of the lists that the extension keeps at the root.
std::size_t RootListCount(const FGltfReader& Reader, std::string_view List)
{
	const FJsonText& Json = Reader.Json;
	const FJsonIndex Extensions = Json.Find(Json.Root(), "extensions");
	const FJsonIndex Array = Json.Find(Json.Find(Extensions, "KHR_physics_rigid_bodies"), List);
	return Json.IsArray(Array) ? Json.Count(Array) : 0;
}

bool ReadGeometry(FGltfReader& Reader, FJsonIndex Owner, FGltfGeometry& Out)
{
	if (!Reader.ObjectMember(Owner, "geometry", Out.Json) || Out.Json == NoJson)
	{
		return Out.Json == NoJson;
	}
	return Reader.Index(Out.Json, "shape", Reader.Model.Shapes.size(), "implicit shapes", Out.Shape) &&
		   Reader.Index(Out.Json, "node", RootNodeCount(Reader), "nodes", Out.Node) &&
		   Reader.Bool(Out.Json, "convexHull", Out.bConvexHull);
}

bool ReadCollider(FGltfReader& Reader, FJsonIndex Object, FGltfCollider& Out)
{
	Out.Json = Object;
	return ReadGeometry(Reader, Object, Out.Geometry) &&
		   Reader.Index(Object, "physicsMaterial", RootListCount(Reader, "physicsMaterials"), "physics materials",
			   Out.Material) &&
		   Reader.Index(
			   Object, "collisionFilter", RootListCount(Reader, "collisionFilters"), "collision filters", Out.Filter);
}

bool ReadTrigger(FGltfReader& Reader, FJsonIndex Object, FGltfTrigger& Out)
{
	Out.Json = Object;
	return ReadGeometry(Reader, Object, Out.Geometry) &&
		   Reader.Indices(Object, "nodes", RootNodeCount(Reader), "nodes", Out.Nodes) &&
		   Reader.Index(
			   Object, "collisionFilter", RootListCount(Reader, "collisionFilters"), "collision filters", Out.Filter);
}

bool ReadJoint(FGltfReader& Reader, FJsonIndex Object, FGltfJoint& Out)
{
	Out.Json = Object;
	return Reader.Index(Object, "connectedNode", RootNodeCount(Reader), "nodes", Out.ConnectedNode) &&
		   Reader.Index(Object, "joint", RootListCount(Reader, "physicsJoints"), "physics joints", Out.Joint);
}
}

bool ReadGltfShapes(FGltfReader& Reader)
{
	FJsonIndex Extension = NoJson;
	std::vector<FJsonIndex> Shapes;
	if (!Reader.Extension(Reader.Json.Root(), "KHR_implicit_shapes", Extension) ||
		!Reader.Objects(Extension, "shapes", Shapes))
	{
		return false;
	}
	for (const FJsonIndex Object : Shapes)
	{
		if (!ReadShape(Reader, Object))
		{
			return false;
		}
	}
	return true;
}

bool ReadGltfRigidBody(FGltfReader& Reader, FJsonIndex Object, FGltfRigidBody& Out)
{
	Out.Json = Object;
	FJsonIndex Collider = NoJson;
	FJsonIndex Trigger = NoJson;
	FJsonIndex Joint = NoJson;
	return Reader.ObjectMember(Object, "motion", Out.Motion) && Reader.ObjectMember(Object, "collider", Collider) &&
		   Reader.ObjectMember(Object, "trigger", Trigger) && Reader.ObjectMember(Object, "joint", Joint) &&
		   (Collider == NoJson || ReadCollider(Reader, Collider, Out.Collider.emplace())) &&
		   (Trigger == NoJson || ReadTrigger(Reader, Trigger, Out.Trigger.emplace())) &&
		   (Joint == NoJson || ReadJoint(Reader, Joint, Out.Joint.emplace()));
}

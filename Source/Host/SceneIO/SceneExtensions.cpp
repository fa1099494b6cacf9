// SPDX-License-Identifier: MIT
#include "SceneIO/SceneExtensions.h"

#include "Engine/BodySetup.h"
#include "Engine/StaticMeshSocket.h"
#include "SceneIO/JsonEdit.h"
#include "SceneIO/JsonWrite.h"
#include "SceneIO/SceneSpace.h"

#include <array>
#include <cmath>

namespace
{
/// Larger places and sizes, in metres, are refused: the host keeps sizes in single precision, and a bake multiplies
/// them by the scale of a node, which is bounded alike.
constexpr double LargestNumber = 1e15;

/// Takes numbers out of one extension object, and remembers the first thing that is wrong.
class FExtensionReader
{
public:
	explicit FExtensionReader(const FGltfDocument& InDocument)
		: Document(InDocument)
		, Json(InDocument.Json())
	{
	}

	bool Fail(FJsonIndex At, const std::string& Why)
	{
		if (!Error)
		{
			Error = Document.Error(At, Why);
		}
		return false;
	}

	bool Coordinate(FJsonIndex Value, double& Out)
	{
		const std::optional<double> Read = Json.Number(Value);
		if (!Read || std::abs(*Read) > LargestNumber)
		{
			return Fail(Value, Json.IsNumber(Value) ? "is too large a number" : "is not a number");
		}
		Out = *Read;
		return true;
	}

	template <std::size_t N>
	bool Numbers(FJsonIndex Object, std::string_view Key, std::array<double, N>& Out)
	{
		const FJsonIndex Value = Json.Find(Object, Key);
		if (Value == NoJson)
		{
			return true;
		}
		if (!Json.IsArray(Value) || Json.Count(Value) != N)
		{
			return Fail(Value, "is not an array of " + std::to_string(N) + " numbers");
		}
		std::size_t Index = 0;
		for (const FJsonIndex Element : Json.Elements(Value))
		{
			if (!Coordinate(Element, Out[Index++]))
			{
				return false;
			}
		}
		return true;
	}

	bool Size(FJsonIndex Object, std::string_view Key, float& Out)
	{
		const FJsonIndex Value = Json.Find(Object, Key);
		const std::optional<double> Number = Value == NoJson ? std::nullopt : Json.Number(Value);
		if (!Number || *Number < 0.0)
		{
			return Fail(Value == NoJson ? Object : Value,
				"must have \"" + std::string(Key) + "\", a number that is not negative");
		}
		if (*Number > LargestNumber)
		{
			return Fail(Value, "is too large a number");
		}
		Out = static_cast<float>(*Number * SceneSpace::UnitsPerMetre);
		return true;
	}

	/// Translation, rotation and scale of an object, as far as it has them; in the host's space.
	bool Placement(FJsonIndex Object, FTransform& Out)
	{
		std::array<double, 3> Translation = {0, 0, 0};
		std::array<double, 4> Rotation = {0, 0, 0, 1};
		std::array<double, 3> Scale = {1, 1, 1};
		if (!Numbers(Object, "translation", Translation) || !Numbers(Object, "rotation", Rotation) ||
			!Numbers(Object, "scale", Scale))
		{
			return false;
		}
		const FQuat Quat = SceneSpace::RotationToHost(Rotation);
		if (!Quat.IsNormalized())
		{
			return Fail(Object, "has a rotation that is no unit quaternion");
		}
		Out = FTransform(Quat.GetNormalized(), SceneSpace::PointToHost(Translation), SceneSpace::ScaleToHost(Scale));
		return true;
	}

	/// Calls `Read(Element)` for the objects of an array; an absent one has none.
	template <class TRead>
	bool ForEach(FJsonIndex Object, std::string_view Key, const TRead& Read)
	{
		const FJsonIndex Array = Json.Find(Object, Key);
		if (Array == NoJson)
		{
			return true;
		}
		if (!Json.IsArray(Array))
		{
			return Fail(Array, "is not an array");
		}
		for (const FJsonIndex Element : Json.Elements(Array))
		{
			if (!Json.IsObject(Element) ? !Fail(Element, "is not an object") : !Read(Element))
			{
				return false;
			}
		}
		return true;
	}

	const FGltfDocument& Document;
	const FJsonText& Json;
	std::optional<FSceneError> Error;
};

FJsonIndex ExtensionOf(const FGltfDocument& Document, FJsonIndex Owner, const char* Name)
{
	const FJsonText& Json = Document.Json();
	const FJsonIndex Extensions = Json.Find(Owner, "extensions");
	return Extensions == NoJson ? NoJson : Json.Find(Extensions, Name);
}

bool ReadSocket(FExtensionReader& Reader, FJsonIndex Object, UStaticMesh& Asset)
{
	const FJsonIndex Name = Reader.Json.Find(Object, "name");
	if (!Reader.Json.IsString(Name))
	{
		return Reader.Fail(Object, "must have a \"name\", a string");
	}
	FTransform Place;
	if (!Reader.Placement(Object, Place))
	{
		return false;
	}
	UStaticMeshSocket* const Socket = Asset.AddSocket(FName(FString::FromUtf8(*Reader.Json.String(Name))));
	Socket->RelativeLocation = Place.GetTranslation();
	Socket->RelativeRotation = Place.GetRotation().Rotator();
	Socket->RelativeScale = Place.GetScale3D();
	return true;
}

bool ReadConvex(FExtensionReader& Reader, FJsonIndex Object, FKConvexElem& Convex)
{
	FTransform Place;
	if (!Reader.Placement(Object, Place))
	{
		return false;
	}
	Convex.SetTransform(Place);
	std::array<double, 3> Point = {0, 0, 0};
	const FJsonIndex Points = Reader.Json.Find(Object, "points");
	if (!Reader.Json.IsArray(Points))
	{
		return Reader.Fail(Object, "must have \"points\", an array");
	}
	for (const FJsonIndex Element : Reader.Json.Elements(Points))
	{
		std::size_t Axis = 0;
		for (const FJsonIndex Number :
			Reader.Json.IsArray(Element) ? Reader.Json.Elements(Element) : std::vector<FJsonIndex>())
		{
			if (Axis > 2)
			{
				return Reader.Fail(Element, "is not an array of 3 numbers");
			}
			if (!Reader.Coordinate(Number, Point[Axis++]))
			{
				return false;
			}
		}
		if (Axis != 3)
		{
			return Reader.Fail(Element, "is not an array of 3 numbers");
		}
		Convex.VertexData.Add(SceneSpace::PointToHost(Point));
	}
	Convex.UpdateElemBox();
	return true;
}

bool ReadShape(FExtensionReader& Reader, FJsonIndex Object, FKAggregateGeom& Geometry)
{
	const FJsonIndex Type = Reader.Json.Find(Object, "type");
	const std::string Kind = Reader.Json.IsString(Type) ? *Reader.Json.String(Type) : std::string();
	FTransform Place;
	if (!Reader.Placement(Object, Place))
	{
		return false;
	}
	const FVector Center = Place.GetTranslation();
	const FRotator Rotation = Place.GetRotation().Rotator();
	if (Kind == "sphere")
	{
		FKSphereElem Sphere{Center, 0.f};
		return Reader.Size(Object, "radius", Sphere.Radius) && (Geometry.SphereElems.Add(Sphere), true);
	}
	if (Kind == "box")
	{
		std::array<double, 3> Size = {0, 0, 0};
		if (!Reader.Numbers(Object, "size", Size))
		{
			return false;
		}
		const FVector Sides = SceneSpace::ScaleToHost(Size) * SceneSpace::UnitsPerMetre;
		Geometry.BoxElems.Add({Center, Rotation, float(Sides.X), float(Sides.Y), float(Sides.Z)});
		return true;
	}
	if (Kind == "capsule")
	{
		FKSphylElem Capsule{Center, Rotation, 0.f, 0.f};
		return Reader.Size(Object, "radius", Capsule.Radius) && Reader.Size(Object, "length", Capsule.Length) &&
			   (Geometry.SphylElems.Add(Capsule), true);
	}
	if (Kind == "taperedCapsule")
	{
		FKTaperedCapsuleElem Capsule{Center, Rotation, 0.f, 0.f, 0.f};
		return Reader.Size(Object, "radiusTop", Capsule.Radius0) &&
			   Reader.Size(Object, "radiusBottom", Capsule.Radius1) && Reader.Size(Object, "length", Capsule.Length) &&
			   (Geometry.TaperedCapsuleElems.Add(Capsule), true);
	}
	if (Kind == "convex")
	{
		FKConvexElem Convex;
		return ReadConvex(Reader, Object, Convex) && (Geometry.ConvexElems.Add(Convex), true);
	}
	return Reader.Fail(
		Type == NoJson ? Object : Type, "must have a \"type\": sphere, box, capsule, taperedCapsule or convex");
}
} // namespace

TSceneResult<FGltfIndex> SceneExtensions::ReadHiRes(const FGltfDocument& Document, FGltfIndex Mesh)
{
	const FJsonIndex Object = ExtensionOf(Document, Document.Mesh(Mesh).Json, StaticMesh);
	const FJsonIndex Value = Object == NoJson ? NoJson : Document.Json().Find(Object, "hiRes");
	if (Value == NoJson)
	{
		return NoIndex;
	}
	const std::optional<std::uint64_t> Index = Document.Json().Unsigned(Value);
	if (!Index || *Index >= Document.Model().Meshes.size() || FGltfIndex(*Index) == Mesh)
	{
		return Document.Error(Value, "is not the index of another mesh");
	}
	return FGltfIndex(*Index);
}

FSceneStatus SceneExtensions::ReadStaticMesh(const FGltfDocument& Document, FGltfIndex Mesh, UStaticMesh& Asset)
{
	const FJsonIndex Object = ExtensionOf(Document, Document.Mesh(Mesh).Json, StaticMesh);
	if (Object == NoJson)
	{
		return {};
	}
	FExtensionReader Reader(Document);
	if (!Document.Json().IsObject(Object))
	{
		return Document.Error(Object, "is not an object");
	}
	const bool bRead =
		Reader.ForEach(Object, "sockets", [&](FJsonIndex Socket) { return ReadSocket(Reader, Socket, Asset); }) &&
		(Document.Json().Find(Object, "collision") == NoJson ||
			Reader.ForEach(Object, "collision",
				[&](FJsonIndex Shape) { return ReadShape(Reader, Shape, Asset.CreateBodySetup()->AggGeom); }));
	return bRead ? FSceneStatus() : FSceneStatus(*Reader.Error);
}

TSceneResult<EComponentCreationMethod> SceneExtensions::ReadCreationMethod(
	const FGltfDocument& Document, FGltfIndex Node)
{
	const FJsonIndex Object = ExtensionOf(Document, Document.Node(Node).Json, Component);
	const FJsonIndex Value = Object == NoJson ? NoJson : Document.Json().Find(Object, "creationMethod");
	if (Value == NoJson || Document.Json().StringEquals(Value, "native"))
	{
		return EComponentCreationMethod::Native;
	}
	if (Document.Json().StringEquals(Value, "constructionScript"))
	{
		return EComponentCreationMethod::SimpleConstructionScript;
	}
	if (Document.Json().StringEquals(Value, "instance"))
	{
		return EComponentCreationMethod::Instance;
	}
	return Document.Error(Value, "must be native, constructionScript or instance");
}

namespace
{
std::string Member(const char* Key, const std::string& Text)
{
	return std::string(",\"") + Key + "\":" + Text;
}

std::string Metres(float Size)
{
	return JsonWrite::Number(double(Size) / SceneSpace::UnitsPerMetre);
}

/// The members that say where something is; what is the identity is left out.
std::string PlacementMembers(const FTransform& Place)
{
	std::string Text;
	if (Place.GetTranslation() != FVector::ZeroVector)
	{
		Text += Member("translation", JsonWrite::Array(SceneSpace::PointToFile(Place.GetTranslation())));
	}
	if (Place.GetRotation() != FQuat::Identity)
	{
		Text += Member("rotation", JsonWrite::Array(SceneSpace::RotationToFile(Place.GetRotation())));
	}
	if (Place.GetScale3D() != FVector::OneVector)
	{
		Text += Member("scale", JsonWrite::Array(SceneSpace::ScaleToFile(Place.GetScale3D())));
	}
	return Text;
}

void AppendTo(std::string& List, const std::string& Object)
{
	List += (List.empty() ? "" : ",") + Object;
}

std::string ShapeObject(const char* Type, const FRotator& Rotation, const FVector& Center, const std::string& Sizes)
{
	return std::string("{\"type\":\"") + Type + "\"" + PlacementMembers(FTransform(Rotation, Center)) + Sizes + "}";
}

std::string CollisionList(const FKAggregateGeom& Geometry)
{
	std::string List;
	for (const FKSphereElem& Sphere : Geometry.SphereElems)
	{
		AppendTo(List, ShapeObject("sphere", FRotator(), Sphere.Center, Member("radius", Metres(Sphere.Radius))));
	}
	for (const FKBoxElem& Box : Geometry.BoxElems)
	{
		const FVector Sides = FVector(Box.X, Box.Y, Box.Z) / SceneSpace::UnitsPerMetre;
		AppendTo(List, ShapeObject("box", Box.Rotation, Box.Center,
						   Member("size", JsonWrite::Array(SceneSpace::ScaleToFile(Sides)))));
	}
	for (const FKSphylElem& Capsule : Geometry.SphylElems)
	{
		AppendTo(List, ShapeObject("capsule", Capsule.Rotation, Capsule.Center,
						   Member("radius", Metres(Capsule.Radius)) + Member("length", Metres(Capsule.Length))));
	}
	for (const FKTaperedCapsuleElem& Capsule : Geometry.TaperedCapsuleElems)
	{
		AppendTo(
			List, ShapeObject("taperedCapsule", Capsule.Rotation, Capsule.Center,
					  Member("radiusTop", Metres(Capsule.Radius0)) + Member("radiusBottom", Metres(Capsule.Radius1)) +
						  Member("length", Metres(Capsule.Length))));
	}
	for (const FKConvexElem& Convex : Geometry.ConvexElems)
	{
		std::string Points;
		for (const FVector& Point : Convex.VertexData)
		{
			AppendTo(Points, JsonWrite::Array(SceneSpace::PointToFile(Point)));
		}
		AppendTo(List, "{\"type\":\"convex\"" + PlacementMembers(Convex.GetTransform()) +
						   Member("points", "[" + Points + "]") + "}");
	}
	return "[" + List + "]";
}

std::string SocketList(const UStaticMesh& Asset)
{
	std::string List;
	for (const TObjectPtr<UStaticMeshSocket>& Socket : Asset.Sockets)
	{
		if (Socket)
		{
			const FTransform Place(Socket->RelativeRotation, Socket->RelativeLocation, Socket->RelativeScale);
			AppendTo(List, "{\"name\":" + JsonWrite::String(Socket->SocketName.ToString().ToUtf8()) +
							   PlacementMembers(Place) + "}");
		}
	}
	return "[" + List + "]";
}
} // namespace

bool SceneExtensions::HasStaticMesh(const FGltfDocument& Document, FGltfIndex Mesh)
{
	return ExtensionOf(Document, Document.Mesh(Mesh).Json, StaticMesh) != NoJson;
}

std::string SceneExtensions::WriteStaticMesh(
	const FGltfDocument& Document, FGltfIndex Mesh, const UStaticMesh& Asset, FGltfIndex NewHiRes)
{
	// Compared as it would be written, so that what was not touched keeps its digits.
	UStaticMesh* const Read = NewObject<UStaticMesh>();
	const FSceneStatus Status = ReadStaticMesh(Document, Mesh, *Read);
	const auto Collision = [](const UStaticMesh& Of)
	{ return Of.GetBodySetup() ? CollisionList(Of.GetBodySetup()->AggGeom) : std::string(); };
	const bool bSockets = !Status || SocketList(*Read) != SocketList(Asset);
	const bool bCollision = !Status || Collision(*Read) != Collision(Asset);
	Read->MarkAsGarbage();
	if (!bSockets && !bCollision && NewHiRes == NoIndex)
	{
		return {};
	}
	const FJsonText& Json = Document.Json();
	FJsonEdit Edit(Json);
	const FJsonIndex Object = ExtensionOf(Document, Document.Mesh(Mesh).Json, StaticMesh);
	if (bSockets)
	{
		Edit.SetMember(Object, "sockets", SocketList(Asset));
	}
	if (bCollision)
	{
		Edit.SetMember(Object, "collision", Collision(Asset));
	}
	if (NewHiRes != NoIndex)
	{
		Edit.SetMember(Object, "hiRes", JsonWrite::Integer(std::uint64_t(NewHiRes)));
	}
	return Edit.Apply(Json.Find(Document.Mesh(Mesh).Json, "extensions"));
}

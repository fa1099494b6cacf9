// SPDX-License-Identifier: MIT
#include "SmallScenes.h"

#include "Host/SceneIO/PackedScenes.h"

#include <array>

namespace
{
std::string Text(int Number)
{
	return std::to_string(Number);
}

/// Positions, normals and tangents, element by element.
void AddInterleavedMesh(FSceneText& Scene)
{
	const std::array<float, 40> Vertices = {0, 0, 0, 0, 0, 1, 1, 0, 0, 1, 2, 0, 0, 0, 0, 1, 1, 0, 0, 1, 2, 3, 0, 0, 0,
		1, 1, 0, 0, 1, 0, 3, 5, 0, 0, 1, 1, 0, 0, -1};
	const int View = Scene.AddView(
		{reinterpret_cast<const char*>(Vertices.data()), sizeof(Vertices)}, ", \"byteStride\": 40, \"target\": 34962");
	const int Position = Scene.AddAccessor(View, 5126, 4, "VEC3", ", \"min\": [ 0, 0, 0 ], \"max\": [ 2.0, 3.0, 5.0 ]");
	const int Normal = Scene.AddAccessor(View, 5126, 4, "VEC3", ", \"byteOffset\": 12");
	const int Tangent = Scene.AddAccessor(View, 5126, 4, "VEC4", ", \"byteOffset\": 24");
	const int Indices = Scene.AddIndices({0, 1, 2, 0, 2, 3});
	Scene.AddMesh(
		"\"POSITION\": " + Text(Position) + ", \"NORMAL\": " + Text(Normal) + ", \"TANGENT\": " + Text(Tangent),
		", \"indices\": " + Text(Indices));
	// The collision and the sockets of the first mesh, beside what nobody here knows.
	Scene.Meshes.back().insert(Scene.Meshes.back().size() - 2,
		R"(, "extras" : { "n": [ 1.50, {} ] }, "extensions": { "TARVIN_static_mesh": { "hiRes": 5,
      "sockets": [ { "name": "Lid", "translation": [0, 0.5, 0] }, { "name": "Side", "rotation": [0, 0.6, 0, 0.8] } ],
      "collision": [ { "type": "box", "size": [1, 2, 3] }, { "type": "sphere", "translation": [0, 1, 0], "radius": 0.3 },
        { "type": "capsule", "radius": 0.2, "length": 0.5 },
        { "type": "taperedCapsule", "radiusTop": 0.1, "radiusBottom": 0.2, "length": 0.4 },
        { "type": "convex", "points": [[-1, 0, -1], [1, 0, -1], [0, 0, 1], [0, 2, 0]] } ] } })");
}

/// A strip whose positions are sparse, a fan without indices, a level, a triangle with a morph target, a HiRes source.
void AddOtherMeshes(FSceneText& Scene)
{
	const int Places = Scene.AddView(std::string("\1\3", 2));
	const std::array<float, 6> Values = {2, 0, 1, 2, 3, 1};
	const int Moved = Scene.AddView({reinterpret_cast<const char*>(Values.data()), sizeof(Values)});
	const int Base = Scene.AddVec3({0, 0, 0, 1, 0, 0, 0, 2, 0, 1, 2, 0});
	const int Sparse = Scene.AddAccessor(Moved + 1, 5126, 4, "VEC3",
		", \"min\": [0, 0, 0], \"max\": [2, 3, 1], \"sparse\": { \"count\": 2, \"indices\": { \"bufferView\": " +
			Text(Places) + ", \"componentType\": 5121 }, \"values\": { \"bufferView\": " + Text(Moved) + " } }");
	const int Strip = Scene.AddIndices({0, 1, 2, 3});
	Scene.AddMesh("\"POSITION\": " + Text(Sparse), ", \"indices\": " + Text(Strip) + ", \"mode\": 5");
	Scene.AddMesh("\"POSITION\": " + Text(Base), ", \"mode\": 6");
	const int Three = Scene.AddVec3({0, 0, 0, 1, 0, 0, 0, 7, 0});
	Scene.AddMesh("\"POSITION\": " + Text(Three));
	Scene.AddMesh("\"POSITION\": " + Text(Three), ", \"targets\": [ { \"POSITION\": " + Text(Three) + " } ]");
	Scene.AddMesh("\"POSITION\": " + Text(Base));
}

void AddNodes(FSceneText& Scene)
{
	const int Places = Scene.AddVec3({0, 0, 0, 3, 0, 0});
	const int Times = Scene.Add(std::vector<float>{0, 1}, 5126, "SCALAR", 1, ", \"min\": [0], \"max\": [1]");
	const int Turns = Scene.AddVec4({0, 0, 0, 1, 0, 0.6f, 0, 0.8f});
	Scene.AddNode(
		R"("name": "Crate", "mesh": 0, "rotation": [0, 0, 0.6, 0.8], "scale": [2, 3, 5], "children": [1, 2])");
	Scene.AddNode(
		R"("name": "Lamp", "translation": [0, 1, 0], "extensions": { "KHR_lights_punctual": { "light": 0 } })");
	Scene.AddNode(R"("name": "Eye", "camera": 0, "translation": [0, 2, 0])");
	Scene.AddNode(R"("name": "Mirrored", "mesh": 1, "scale": [-2, 2, 2])");
	Scene.AddNode(R"("name": "Matrix", "mesh": 1, "matrix": [0, 2, 0, 0, -2, 0, 0, 0, 0, 0, 2, 0, 3, 5, 7, 1])");
	Scene.AddNode(
		R"("name": "Fan", "mesh": 2, "scale": [3, 3, 3], "extensions": { "MSFT_lod": { "ids": [ 6 ] }, "TARVIN_component": { "creationMethod": "native" } })");
	Scene.AddNode(R"("name": "Fan LOD1", "mesh": 3, "scale": [3, 3, 3])");
	Scene.AddNode(R"("name": "Morphed", "mesh": 4, "scale": [2, 2, 2], "weights": [0.5])");
	Scene.AddNode(
		R"("name": "Fence", "mesh": 2, "extensions": { "EXT_mesh_gpu_instancing": { "attributes": { "TRANSLATION": )" +
		Text(Places) + " } } }");
	Scene.AddNode(
		R"("name": "Body", "mesh": 0, "scale": [2, 2, 2], "extensions": { "KHR_physics_rigid_bodies": { "motion": { "mass": 3 }, "collider": { "geometry": { "shape": 0 } } } })");
	Scene.Root += R"(, "animations": [ { "samplers": [ { "input": )" + Text(Times) + R"(, "output": )" + Text(Turns) +
				  R"( } ], "channels": [ { "sampler": 0, "target": { "node": 7, "path": "rotation" } } ] } ],
  "skins": [ { "joints": [ 7 ] } ])";
}

/// Puts the parts together as the container has them.
FSmallScene Assemble(const FSceneText& Scene, ESceneContainer Container)
{
	switch (Container)
	{
	case ESceneContainer::Binary:
		return {Container, Scene.Text("chunk"), Scene.Bytes};
	case ESceneContainer::External:
		return {Container, Scene.Text("scene.bin"), Scene.Bytes};
	default:
		return {Container, Scene.Text(""), {}};
	}
}
} // namespace

std::string FSmallScene::SceneBytes() const
{
	return Container == ESceneContainer::Binary ? BinaryScene(Json, Buffer) : Json;
}

FSmallScene SmallScenes::Everything(ESceneContainer Container)
{
	FSceneText Scene;
	AddInterleavedMesh(Scene);
	AddOtherMeshes(Scene);
	Scene.Root = R"(, "scenes": [ { "nodes": [ 0, 3, 4, 5, 7, 8, 9 ] } ], "scene": 0,
  "extensionsUsed": [ "KHR_lights_punctual", "MSFT_lod", "EXT_mesh_gpu_instancing", "TARVIN_static_mesh",
    "TARVIN_component", "KHR_implicit_shapes", "KHR_physics_rigid_bodies", "ACME_unknown" ],
  "cameras": [ { "type": "perspective", "perspective": { "yfov": 0.8, "znear": 0.1 } } ],
  "extensions": { "KHR_lights_punctual": { "lights": [ { "type": "spot", "spot": {} } ] },
    "KHR_implicit_shapes": { "shapes": [ { "type": "sphere", "sphere": { "radius": 0.5 } } ] },
    "ACME_unknown": { "bufferView": 0, "deep": [ [ { "x": 1e400 } ] ] } },
  "extras": { "n": 12345678901234567890123 })";
	AddNodes(Scene);
	return Assemble(Scene, Container);
}

FSmallScene SmallScenes::Meshopt()
{
	// Three corners of 16 bits, in 8 bytes each, and indices of 32 bits.
	const std::array<std::uint16_t, 12> Corners = {0, 0, 0, 0, 65535, 0, 0, 0, 0, 32768, 13107, 0};
	FSceneText Scene;
	AddPacked(Scene, PackedVertices(Corners.data(), 3, 8), 3, 8, "ATTRIBUTES");
	AddPacked(Scene, PackedTriangles({0, 1, 2}, 3), 3, 4, "TRIANGLES");
	Scene.AddAccessor(0, 5123, 3, "VEC3", ",\"normalized\":true,\"min\":[0,0,0],\"max\":[65535,32768,13107]");
	Scene.AddAccessor(1, 5125, 3, "SCALAR");
	Scene.AddMesh("\"POSITION\":0", ",\"indices\":1");
	Scene.AddNode(R"("name":"Packed","mesh":0,"rotation":[0,0.6,0,0.8],"scale":[2,2,-3])");
	Scene.Root = R"(,"extensionsUsed":["KHR_mesh_quantization","EXT_meshopt_compression"])"
				 R"(,"extensionsRequired":["KHR_mesh_quantization","EXT_meshopt_compression"])";
	return {ESceneContainer::Binary, WithFallback(Scene), Scene.Bytes};
}

FSmallScene SmallScenes::Draco()
{
	FSceneText Scene = DracoScene(DracoTriangle());
	Scene.AddNode(R"("name":"Packed","mesh":0,"rotation":[0,0.6,0,0.8],"scale":[2,2,-3])");
	return Assemble(Scene, ESceneContainer::Binary);
}

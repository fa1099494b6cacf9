// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "SceneBuilder.h"
#include "SceneIO/AtomicFile.h"
#include "SceneIO/JsonWrite.h"
#include "SceneIO/PrintableText.h"
#include "SceneIO/SceneFolder.h"

#include <cmath>
#include <cstdio>

namespace
{
using FTriple = std::array<double, 3>;

/// The members of a node that stands somewhere: turned by degrees about Y, and scaled.
FJsonObject Placed(const FTriple& At, double Degrees = 0.0, const FTriple& Scale = {1, 1, 1})
{
	FJsonObject Members;
	Members.Raw("translation", JsonWrite::Array(At));
	if (Degrees != 0.0)
	{
		const double Half = Degrees * M_PI / 360.0;
		Members.Raw("rotation", JsonWrite::Array(std::array<double, 4>{0, std::sin(Half), 0, std::cos(Half)}));
	}
	if (Scale != FTriple{1, 1, 1})
	{
		Members.Raw("scale", JsonWrite::Array(Scale));
	}
	return Members;
}

std::string Index(int Value)
{
	return std::to_string(Value);
}

/// The yard, case by case. Every function adds one of them, and the roots that belong to it.
class FYard
{
public:
	FYard()
	{
		Stone = Builder.AddMaterial("stone", {0.55, 0.55, 0.5});
		Wood = Builder.AddMaterial("wood", {0.5, 0.33, 0.18});
		Metal = Builder.AddMaterial("metal", {0.35, 0.4, 0.45});
		Ground();
		Crate();
		Walls();
		Shed();
		Skewed();
		Fence();
		Statue();
		Rock();
		Barrel();
		Ball();
		Lantern();
		Animated();
		Skinned();
	}

	std::string Finish(bool bBinary) const { return Builder.Finish(Roots, bBinary); }

private:
	int Root(const std::string& Name, FJsonObject Members)
	{
		Roots.push_back(Builder.AddNode(Name, Members));
		return Roots.back();
	}

	/// Nothing to bake: neither turned nor scaled.
	void Ground()
	{
		const int Mesh = Builder.AddMesh("Ground", MakeBuilderBox({-12, -0.2f, -12}, {12, 0, 12}), Stone);
		Root("Ground", Placed({0, 0, 0}).Integer("mesh", Mesh));
	}

	/// A sole user, with sockets and collision of every kind, and a camera below it that must stay where it is.
	void Crate()
	{
		Builder.UseExtension("TARVIN_static_mesh");
		const char* const Extension =
			R"(,"extensions":{"TARVIN_static_mesh":{"sockets":[)"
			R"({"name":"Lid","translation":[0,0.5,0]},{"name":"Handle","translation":[0.5,0,0],"rotation":[0,0,0.3826834323650898,0.9238795325112867]}],)"
			R"("collision":[{"type":"box","size":[1,1,1]},{"type":"sphere","translation":[0,0.5,0],"radius":0.3},)"
			R"({"type":"capsule","translation":[0,0,0.25],"radius":0.2,"length":0.5},)"
			R"({"type":"taperedCapsule","translation":[0.25,0,0],"radiusTop":0.1,"radiusBottom":0.2,"length":0.4},)"
			R"({"type":"convex","points":[[-0.5,-0.5,-0.5],[0.5,-0.5,-0.5],[0,-0.5,0.5],[0,0.5,0]]}]}})";
		const int Mesh =
			Builder.AddMesh("Crate", MakeBuilderBox({-0.5f, -0.5f, -0.5f}, {0.5f, 0.5f, 0.5f}), Wood, Extension);
		Builder.AddRoot("cameras", R"([{"type":"perspective","perspective":{"yfov":0.8,"znear":0.1}}])");
		const int Camera = Builder.AddNode("Crate camera", Placed({0, 1, 2}).Integer("camera", 0));
		Root("Crate",
			Placed({-4, 1, 2}, 30, {2, 2, 2}).Integer("mesh", Mesh).Raw("children", "[" + Index(Camera) + "]"));
	}

	/// One mesh on four nodes: two of one shape, one of another, one mirrored.
	void Walls()
	{
		const int Mesh = Builder.AddMesh("Wall", MakeBuilderBox({-1, 0, -0.1f}, {1, 1, 0.1f}), Stone);
		Root("Wall A", Placed({-6, 0, -6}, 0, {1, 2, 1}).Integer("mesh", Mesh));
		Root("Wall B", Placed({-3, 0, -6}, 0, {1, 2, 1}).Integer("mesh", Mesh));
		Root("Wall C", Placed({0, 0, -6}, 90, {1.5, 1, 1}).Integer("mesh", Mesh));
		Root("Wall mirrored", Placed({3, 0, -6}, 20, {-1, 1.5, 1}).Integer("mesh", Mesh));
	}

	/// Meshes below each other, and a light below those.
	void Shed()
	{
		Builder.UseExtension("KHR_lights_punctual");
		Builder.AddRoot("extensions",
			R"({"KHR_lights_punctual":{"lights":[{"type":"spot","intensity":40,"spot":{}}]},)"
			R"("KHR_implicit_shapes":{"shapes":[{"type":"capsule","capsule":{"height":0.6,"radiusBottom":0.3,"radiusTop":0.3}},)"
			R"({"type":"sphere","sphere":{"radius":0.2}}]}})");
		const int ShedMesh = Builder.AddMesh("Shed", MakeBuilderBox({-1, 0, -1}, {1, 1.5f, 1}), Wood);
		const int DoorMesh =
			Builder.AddMesh("Door", Unindexed(MakeBuilderBox({0, 0, -0.05f}, {0.8f, 1.2f, 0.05f})), Metal);
		const int Light = Builder.AddNode(
			"Door light", Placed({0.4, 1.4, 0}, 45).Raw("extensions", R"({"KHR_lights_punctual":{"light":0}})"));
		const int Door = Builder.AddNode("Door",
			Placed({-0.4, 0, 1.05}, 0, {1, 1, -1}).Integer("mesh", DoorMesh).Raw("children", "[" + Index(Light) + "]"));
		Root("Shed",
			Placed({5, 0, 1}, -40, {1.5, 1.5, 1.5}).Integer("mesh", ShedMesh).Raw("children", "[" + Index(Door) + "]"));
	}

	/// Below a parent with rotation and uneven scale: what is turned there has shear, what is not could be held, but
	/// for that parent.
	void Skewed()
	{
		const int Mesh = Builder.AddMesh("Post", MakeBuilderBox({-0.2f, 0, -0.2f}, {0.2f, 1, 0.2f}), Wood);
		const int Straight = Builder.AddNode("Straight post", Placed({0, 0, 0}).Integer("mesh", Mesh));
		const int Leaning = Builder.AddNode("Leaning post", Placed({1, 0, 0}, 35).Integer("mesh", Mesh));
		Root("Skewed parent",
			Placed({0, 0, 5}, 25, {2, 1, 1}).Raw("children", "[" + Index(Straight) + "," + Index(Leaning) + "]"));
	}

	/// Instances, which stay as they are, and one node that shows the same mesh.
	void Fence()
	{
		Builder.UseExtension("EXT_mesh_gpu_instancing");
		const int Mesh = Builder.AddMesh("Picket", MakeBuilderBox({-0.1f, 0, -0.05f}, {0.1f, 1, 0.05f}), Wood);
		std::vector<float> Places;
		for (int Picket = 0; Picket < 12; ++Picket)
		{
			Places.insert(Places.end(), {float(Picket) * 0.4f, 0.f, 0.f});
		}
		const int Accessor = Builder.AddFloats(Places, "VEC3", false);
		Root("Fence", Placed({-8, 0, 8}, 10)
						  .Integer("mesh", Mesh)
						  .Raw("extensions",
							  R"({"EXT_mesh_gpu_instancing":{"attributes":{"TRANSLATION":)" + Index(Accessor) + "}}}"));
		Root("Lone picket", Placed({-9, 0, 8}, 15, {1, 1.3, 1}).Integer("mesh", Mesh));
	}

	/// Levels of detail.
	void Statue()
	{
		Builder.UseExtension("MSFT_lod");
		const int High = Builder.AddMesh("Statue", MakeBuilderBox({-0.4f, 0, -0.3f}, {0.4f, 2, 0.3f}), Stone);
		const int Low = Builder.AddMesh("Statue low", MakeBuilderBox({-0.35f, 0, -0.25f}, {0.35f, 1.9f, 0.25f}), Stone);
		const FJsonObject Place = Placed({2, 0, 3}, 60, {1.2, 1.4, 1.2});
		const int Level = Builder.AddNode("Statue LOD1", FJsonObject(Place).Integer("mesh", Low));
		Root("Statue", FJsonObject(Place)
						   .Integer("mesh", High)
						   .Raw("extensions", R"({"MSFT_lod":{"ids":[)" + Index(Level) + "]}}")
						   .Raw("extras", R"({"MSFT_screencoverage":[0.4,0.05]})"));
	}

	/// A HiRes source beside the mesh that is shown.
	void Rock()
	{
		const int HiRes =
			Builder.AddMesh("Rock HiRes", MakeBuilderBox({-0.62f, 0, -0.52f}, {0.62f, 0.72f, 0.52f}), Stone);
		const int Mesh = Builder.AddMesh("Rock", MakeBuilderBox({-0.6f, 0, -0.5f}, {0.6f, 0.7f, 0.5f}), Stone,
			R"(,"extensions":{"TARVIN_static_mesh":{"hiRes":)" + Index(HiRes) + "}}");
		Root("Rock", Placed({7, 0, 6}, 110, {1.5, 0.8, 1.1}).Integer("mesh", Mesh));
	}

	/// A collider on the node of its mesh, which a bake moves to a child node.
	void Barrel()
	{
		Builder.UseExtension("KHR_implicit_shapes");
		Builder.UseExtension("KHR_physics_rigid_bodies");
		const int Mesh = Builder.AddMesh("Barrel", MakeBuilderBox({-0.3f, -0.6f, -0.3f}, {0.3f, 0.6f, 0.3f}), Metal);
		Root("Barrel", Placed({-1, 0.8, 0}, 15, {1.3, 1.3, 1.3})
						   .Integer("mesh", Mesh)
						   .Raw("extensions", R"({"KHR_physics_rigid_bodies":{"collider":{"geometry":{"shape":0}}}})"));
	}

	/// A body that moves, whose velocities are said in its own space: left out.
	void Ball()
	{
		const int Mesh = Builder.AddMesh("Ball", MakeBuilderBox({-0.2f, -0.2f, -0.2f}, {0.2f, 0.2f, 0.2f}), Wood);
		Root("Ball",
			Placed({0, 2, 2}, 50, {1.5, 1.5, 1.5})
				.Integer("mesh", Mesh)
				.Raw("extensions",
					R"({"KHR_physics_rigid_bodies":{"motion":{"mass":2,"linearVelocity":[1,0,0]},"collider":{"geometry":{"shape":1}}}})"));
	}

	/// A mirrored lantern that is light and mesh in one: the light, too, stays where it is.
	void Lantern()
	{
		const int Mesh = Builder.AddMesh("Lantern", MakeBuilderBox({-0.1f, 0, -0.1f}, {0.15f, 0.3f, 0.1f}), Metal);
		Root("Lantern", Placed({-5, 2, 4}, 75, {-1.2, 1.4, 1.2})
							.Integer("mesh", Mesh)
							.Raw("extensions", R"({"KHR_lights_punctual":{"light":0}})"));
	}

	/// A flag that turns: left out.
	void Animated()
	{
		const int Mesh = Builder.AddMesh("Flag", MakeBuilderBox({0, 2, 0}, {1, 2.6f, 0.02f}), Metal);
		const int Flag = Root("Flag", Placed({8, 0, -3}, 0, {1.2, 1.2, 1.2}).Integer("mesh", Mesh));
		const int Times = Builder.AddFloats({0.f, 1.f, 2.f}, "SCALAR", true);
		const int Turns = Builder.AddFloats({0, 0, 0, 1, 0, 0.38268343f, 0, 0.92387953f, 0, 0, 0, 1}, "VEC4", false);
		Builder.AddRoot("animations", R"([{"name":"Waving","samplers":[{"input":)" + Index(Times) + R"(,"output":)" +
										  Index(Turns) + R"(}],"channels":[{"sampler":0,"target":{"node":)" +
										  Index(Flag) + R"(,"path":"rotation"}}]}])");
	}

	/// A figure on two bones: left out.
	void Skinned()
	{
		const FBuilderGeometry Box = MakeBuilderBox({-0.2f, 0, -0.2f}, {0.2f, 1.6f, 0.2f});
		std::vector<std::uint16_t> Joints;
		std::vector<float> Weights;
		for (const std::array<float, 3>& Position : Box.Positions)
		{
			const float Upper = Position[1] / 1.6f;
			Joints.insert(Joints.end(), {0, 1, 0, 0});
			Weights.insert(Weights.end(), {1.f - Upper, Upper, 0.f, 0.f});
		}
		const int JointAccessor = Builder.AddShorts(Joints, "VEC4", 34962);
		const int WeightAccessor = Builder.AddFloats(Weights, "VEC4", false);
		const int Mesh = Builder.AddMesh("Figure", Box, Metal, "",
			",\"JOINTS_0\":" + Index(JointAccessor) + ",\"WEIGHTS_0\":" + Index(WeightAccessor));
		const int Bind = Builder.AddFloats(
			{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, -0.8f, 0, 1},
			"MAT4", false);
		const int Upper = Builder.AddNode("Upper bone", Placed({0, 0.8, 0}));
		const int Lower = Root("Lower bone", Placed({-8, 0, 0}).Raw("children", "[" + Index(Upper) + "]"));
		Builder.AddRoot("skins",
			R"([{"joints":[)" + Index(Lower) + "," + Index(Upper) + R"(],"inverseBindMatrices":)" + Index(Bind) + "}]");
		Root("Figure", Placed({-8, 0, 0}, 0, {2, 2, 2}).Integer("mesh", Mesh).Integer("skin", 0));
	}

	static FBuilderGeometry Unindexed(const FBuilderGeometry& Source)
	{
		FBuilderGeometry Result;
		for (const std::uint16_t Vertex : Source.Indices)
		{
			Result.Positions.push_back(Source.Positions[Vertex]);
			Result.Normals.push_back(Source.Normals[Vertex]);
		}
		return Result;
	}

	FSceneBuilder Builder;
	std::vector<int> Roots;
	int Stone = 0;
	int Wood = 0;
	int Metal = 0;
};

FSceneStatus WriteWhole(const std::string& Path, const std::string& Content)
{
	TSceneResult<FScenePlace> Place = SceneFolder::Resolve(Path);
	if (!Place)
	{
		return Place.Error();
	}
	FAtomicFile File;
	FSceneStatus Status = File.Create(Place->Folder, Place->Name, Content.size());
	Status = Status ? File.Write(std::as_bytes(std::span<const char>(Content))) : Status;
	return Status ? File.Replace() : Status;
}
} // namespace

EExitCode RunDemo(const std::string& Output)
{
	const bool bBinary = Output.ends_with(".glb") || Output.ends_with(".GLB");
	const std::string File = FYard().Finish(bBinary);
	const FSceneStatus Written = WriteWhole(Output, File);
	if (!Written)
	{
		std::fprintf(stderr, "tarvin: %s\n", PrintableText(Written.Error().Message, 2000).c_str());
		return ExitUnwritable;
	}
	std::printf("The sample yard was written to %s\n", PrintableText(Output).c_str());
	return ExitDone;
}

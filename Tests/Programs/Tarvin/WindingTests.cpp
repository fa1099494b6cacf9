// SPDX-License-Identifier: MIT
#include "TarvinProcess.h"

#include "SceneIO/Base64.h"

#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <span>

namespace
{
/// The primitive modes that draw triangles.
enum EMode
{
	Triangles = 4,
	Strip = 5,
	Fan = 6,
};

/// A fan or strip that goes all around an axis, so that its triangles look to all sides.
std::array<float, 3> CurledVertex(EMode Mode, int Vertex)
{
	const float Angle = 0.9f * float(Vertex);
	const float Height = Mode == Fan ? 2.f : float(Vertex % 2) * 3.f;
	return Mode == Fan && Vertex == 0 ? std::array<float, 3>{} : std::array{std::cos(Angle), std::sin(Angle), Height};
}

/// A scene with one mirrored node whose mesh is drawn in `Mode`, of `NumVertices` vertices, with or without indices.
std::string MirroredScene(EMode Mode, int NumVertices, bool bIndexed, bool bCurled)
{
	std::vector<float> Positions;
	std::vector<std::uint16_t> Indices;
	for (int Vertex = 0; Vertex < NumVertices; ++Vertex)
	{
		const float Step = float(Vertex);
		if (bCurled)
		{
			const std::array<float, 3> Position = CurledVertex(Mode, Vertex);
			Positions.insert(Positions.end(), Position.begin(), Position.end());
		}
		else if (Mode == Fan)
		{
			Positions.insert(Positions.end(),
				{Vertex == 0 ? 0.f : Step * 0.5f, Vertex == 0 ? 0.f : 5.f - Step * Step * 0.1f, 0.25f * Step});
		}
		else
		{
			Positions.insert(Positions.end(), {Step, Vertex % 2 == 0 ? 0.f : 2.f, 0.125f * Step * Step});
		}
		Indices.push_back(std::uint16_t(Vertex));
	}
	std::string Data(reinterpret_cast<const char*>(Positions.data()), Positions.size() * sizeof(float));
	const std::size_t PositionBytes = Data.size();
	Data.append(reinterpret_cast<const char*>(Indices.data()), Indices.size() * sizeof(std::uint16_t));
	const std::string Count = std::to_string(NumVertices);
	return R"({"asset":{"version":"2.0"},"scene":0,"scenes":[{"nodes":[0]}],"nodes":[{"name":"N","mesh":0,"scale":[2,3,-5]}],)"
		   R"("meshes":[{"primitives":[{"mode":)" +
		   std::to_string(Mode) + R"(,"attributes":{"POSITION":0})" + (bIndexed ? R"(,"indices":1)" : "") +
		   R"(}]}],"accessors":[{"bufferView":0,"componentType":5126,"count":)" + Count +
		   R"(,"type":"VEC3","min":[-100,-100,-100],"max":[100,100,100]},{"bufferView":1,"componentType":5123,"count":)" +
		   Count + R"(,"type":"SCALAR"}],"bufferViews":[{"buffer":0,"byteLength":)" + std::to_string(PositionBytes) +
		   R"(},{"buffer":0,"byteOffset":)" + std::to_string(PositionBytes) + R"(,"byteLength":)" +
		   std::to_string(Data.size() - PositionBytes) + R"(}],"buffers":[{"byteLength":)" +
		   std::to_string(Data.size()) + R"(,"uri":"data:application/octet-stream;base64,)" +
		   Base64::Encode(std::as_bytes(std::span<const char>(Data))) + R"("}]})";
}

class MirroredWinding : public FYardFixture
{
protected:
	void ExpectKept(EMode Mode, int NumVertices, bool bIndexed, bool bCurled = false)
	{
		WriteAll(Path("in.gltf"), MirroredScene(Mode, NumVertices, bIndexed, bCurled));
		const FTarvinRun Run = RunTarvin({"bake", Path("in.gltf"), "-o", Path("out.gltf"), "--verify"});
		EXPECT_EQ(Run.ExitCode, 0) << Run.Errors;
		EXPECT_THAT(Run.Output, testing::HasSubstr("1 node(s) baked"));
		// The node is not mirrored any more, so the triangles themselves must have been turned.
		EXPECT_THAT(ReadAll(Path("out.gltf")), testing::Not(testing::HasSubstr("\"scale\"")));
	}
};
} // namespace

TEST_F(MirroredWinding, IsTurnedInLists)
{
	ExpectKept(Triangles, 6, true);
	ExpectKept(Triangles, 9, false);
}

TEST_F(MirroredWinding, IsTurnedInStripsOfEvenAndOddLength)
{
	for (const int NumVertices : {3, 4, 5, 8, 9})
	{
		ExpectKept(Strip, NumVertices, true);
		ExpectKept(Strip, NumVertices, false);
	}
}

TEST_F(MirroredWinding, IsTurnedInFans)
{
	for (const int NumVertices : {3, 4, 7})
	{
		ExpectKept(Fan, NumVertices, true);
		ExpectKept(Fan, NumVertices, false);
	}
}

TEST_F(MirroredWinding, IsTurnedInStripsAndFansThatGoAround)
{
	for (const int NumVertices : {6, 7})
	{
		ExpectKept(Strip, NumVertices, true, true);
		ExpectKept(Fan, NumVertices, false, true);
	}
}

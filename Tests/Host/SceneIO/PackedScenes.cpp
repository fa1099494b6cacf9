// SPDX-License-Identifier: MIT
#include "PackedScenes.h"

#include <draco/compression/encode.h>
#include <draco/mesh/triangle_soup_mesh_builder.h>
#include <gtest/gtest.h>
#include <meshoptimizer.h>

std::string DracoTriangle()
{
	draco::TriangleSoupMeshBuilder Builder;
	Builder.Start(1);
	const int Position = Builder.AddAttribute(draco::GeometryAttribute::POSITION, 3, draco::DT_FLOAT32);
	Builder.SetAttributeValuesForFace(
		Position, draco::FaceIndex(0), &TrianglePositions[0], &TrianglePositions[3], &TrianglePositions[6]);
	const std::unique_ptr<draco::Mesh> Mesh = Builder.Finalize();
	draco::Encoder Encoder;
	Encoder.SetEncodingMethod(draco::MESH_SEQUENTIAL_ENCODING);
	draco::EncoderBuffer Buffer;
	EXPECT_TRUE(Encoder.EncodeMeshToBuffer(*Mesh, &Buffer).ok());
	return {Buffer.data(), Buffer.size()};
}

FSceneText DracoScene(const std::string& Compressed, std::size_t Vertices, int UniqueId)
{
	FSceneText Scene;
	Scene.AddView(Compressed);
	Scene.Accessors = {"{\"componentType\":5126,\"count\":" + std::to_string(Vertices) + ",\"type\":\"VEC3\"}",
		"{\"componentType\":5123,\"count\":3,\"type\":\"SCALAR\"}"};
	Scene.AddMesh("\"POSITION\":0", ",\"indices\":1,\"extensions\":{\"KHR_draco_mesh_compression\":{\"bufferView\":0,"
									"\"attributes\":{\"POSITION\":" +
										std::to_string(UniqueId) + "}}}");
	Scene.Root = ",\"extensionsUsed\":[\"KHR_draco_mesh_compression\"],"
				 "\"extensionsRequired\":[\"KHR_draco_mesh_compression\"]";
	return Scene;
}

void AddPacked(FSceneText& Scene, const std::string& Packed, std::size_t Count, std::size_t Stride, const char* Mode,
	const char* Filter)
{
	const std::size_t Offset = (Scene.Bytes.size() + 3) / 4 * 4;
	const std::string Length = std::to_string(Packed.size());
	Scene.AddView(Packed);
	Scene.Views.back() =
		"{\"buffer\":1,\"byteLength\":" + std::to_string(Count * Stride) +
		",\"extensions\":{\"EXT_meshopt_compression\":{\"buffer\":0,\"byteOffset\":" + std::to_string(Offset) +
		",\"byteLength\":" + Length + ",\"byteStride\":" + std::to_string(Stride) +
		",\"count\":" + std::to_string(Count) + ",\"mode\":\"" + Mode + "\",\"filter\":\"" + Filter + "\"}}}";
}

std::string PackedVertices(const void* Data, std::size_t Count, std::size_t Stride)
{
	std::vector<unsigned char> Out(meshopt_encodeVertexBufferBound(Count, Stride));
	Out.resize(meshopt_encodeVertexBuffer(Out.data(), Out.size(), Data, Count, Stride));
	return {Out.begin(), Out.end()};
}

std::string PackedTriangles(const std::vector<std::uint32_t>& Indices, std::size_t Vertices)
{
	std::vector<unsigned char> Out(meshopt_encodeIndexBufferBound(Indices.size(), Vertices));
	Out.resize(meshopt_encodeIndexBuffer(Out.data(), Out.size(), Indices.data(), Indices.size()));
	return {Out.begin(), Out.end()};
}

std::string WithFallback(const FSceneText& Scene)
{
	std::string Text = Scene.Text("chunk");
	const std::string End = std::to_string(Scene.Bytes.size()) + " }";
	Text.insert(Text.find(End) + End.size(),
		", {\"byteLength\":100000,\"extensions\":{\"EXT_meshopt_compression\":{\"fallback\":true}}}");
	return Text;
}

FSceneText PackedScene(const std::string& Vertices, const std::string& Indices)
{
	FSceneText Scene;
	AddPacked(Scene, Vertices, 3, 12, "ATTRIBUTES");
	AddPacked(Scene, Indices, 3, 4, "TRIANGLES");
	Scene.AddAccessor(0, 5126, 3, "VEC3");
	Scene.AddAccessor(1, 5125, 3, "SCALAR");
	Scene.AddMesh("\"POSITION\":0", ",\"indices\":1");
	return Scene;
}

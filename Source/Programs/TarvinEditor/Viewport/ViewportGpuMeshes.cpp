// SPDX-License-Identifier: MIT
#include "ViewportGpuMeshes.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace
{
/// A vertex as the graphics card gets it: the normal in ten bits an axis.
struct FGpuVertex
{
	FVector3f Position;
	uint32 Normal;
};

uint32 PackNormal(const FVector3f& Normal)
{
	const float Length = std::sqrt(Normal.X * Normal.X + Normal.Y * Normal.Y + Normal.Z * Normal.Z);
	if (!(Length > 0.f) || !std::isfinite(Length))
	{
		return 0;
	}
	const auto Pack = [&](float Value) { return uint32(int32(std::lround(Value / Length * 511.f))) & 1023u; };
	return Pack(Normal.X) | (Pack(Normal.Y) << 10) | (Pack(Normal.Z) << 20);
}

/// A grey that leans to one of many hues.
FVector3f TintOf(const UStaticMesh& Mesh)
{
	uint32 Hash = 2166136261u;
	for (const char Byte : Mesh.GetName().ToUtf8())
	{
		Hash = (Hash ^ uint32(uint8(Byte))) * 16777619u;
	}
	const float Hue = float(Hash >> 8 & 1023u) / 1024.f * 6.2831853f;
	const float Grey = 0.80f + float(Hash >> 20 & 255u) / 255.f * 0.08f;
	const auto Channel = [&](float Shift) { return Grey * (1.f + 0.045f * std::cos(Hue + Shift)); };
	return {Channel(0.f), Channel(-2.0943951f), Channel(2.0943951f)};
}

const void* Offset(std::size_t Bytes)
{
	return reinterpret_cast<const void*>(Bytes);
}
}

void FViewportGpuMeshes::Synchronize(QOpenGLExtraFunctions& Gl, const FViewportScene& Scene)
{
	for (auto& [Handle, Copy] : Copies)
	{
		Copy.bUsed = false;
	}
	ByIndex.clear();
	for (const FViewportMesh& Entry : Scene.GetMeshes())
	{
		UStaticMesh* const Mesh = Entry.Mesh.Get();
		if (!Mesh || !Entry.bReady || !Entry.Bounds.IsValid)
		{
			ByIndex.emplace_back();
			continue;
		}
		FCopy& Copy = Copies[Mesh->GetHandle()];
		Copy.bUsed = true;
		if (Copy.Source != Entry.Source)
		{
			Drop(Gl, Copy);
			Copy.Source = Entry.Source;
			Copy.Tint = TintOf(*Mesh);
			Copy.Bounds = Entry.Bounds;
			if (const FStaticMeshLodRenderData* const Data = Mesh->GetRenderData(0))
			{
				Upload(Gl, *Data, Copy);
			}
		}
		ByIndex.push_back(Copy);
	}
	for (auto Place = Copies.begin(); Place != Copies.end();)
	{
		if (Place->second.bUsed)
		{
			++Place;
			continue;
		}
		Drop(Gl, Place->second);
		Place = Copies.erase(Place);
	}
}

void FViewportGpuMeshes::Release(QOpenGLExtraFunctions& Gl)
{
	for (auto& [Handle, Copy] : Copies)
	{
		Drop(Gl, Copy);
	}
	Copies.clear();
	ByIndex.clear();
	Gl.glDeleteVertexArrays(1, &SpeckArray);
	SpeckArray = 0;
}

void FViewportGpuMeshes::Upload(QOpenGLExtraFunctions& Gl, const FStaticMeshLodRenderData& Data, FCopy& Copy)
{
	const std::size_t NumVertices = std::size_t(Data.Positions.Num());
	std::vector<FGpuVertex> Vertices(NumVertices);
	for (std::size_t Index = 0; Index < NumVertices; ++Index)
	{
		Vertices[Index] = {Data.Positions.GetData()[Index], PackNormal(Data.Normals.GetData()[Index])};
	}
	constexpr int64 MostIndices = std::numeric_limits<GLsizei>::max() / 3 * 3;
	Copy.NumIndices = GLsizei(std::min<int64>(int64(Data.Indices.Num()), MostIndices));
	Gl.glGenVertexArrays(1, &Copy.VertexArray);
	Gl.glBindVertexArray(Copy.VertexArray);
	Gl.glGenBuffers(1, &Copy.Vertices);
	Gl.glBindBuffer(GL_ARRAY_BUFFER, Copy.Vertices);
	Gl.glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(NumVertices * sizeof(FGpuVertex)), Vertices.data(), GL_STATIC_DRAW);
	Gl.glGenBuffers(1, &Copy.Indices);
	Gl.glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, Copy.Indices);
	Gl.glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(std::size_t(Copy.NumIndices) * sizeof(uint32)),
		Data.Indices.GetData(), GL_STATIC_DRAW);
	Gl.glEnableVertexAttribArray(0);
	Gl.glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, sizeof(FGpuVertex), Offset(offsetof(FGpuVertex, Position)));
	Gl.glEnableVertexAttribArray(1);
	Gl.glVertexAttribPointer(
		1, 4, GL_INT_2_10_10_10_REV, GL_TRUE, sizeof(FGpuVertex), Offset(offsetof(FGpuVertex, Normal)));
	for (GLuint Axis = 2; Axis < 5; ++Axis)
	{
		Gl.glEnableVertexAttribArray(Axis);
		Gl.glVertexAttribDivisor(Axis, 1);
	}
	Gl.glBindVertexArray(0);
}

void FViewportGpuMeshes::Drop(QOpenGLExtraFunctions& Gl, FCopy& Copy)
{
	Gl.glDeleteVertexArrays(1, &Copy.VertexArray);
	Gl.glDeleteBuffers(1, &Copy.Vertices);
	Gl.glDeleteBuffers(1, &Copy.Indices);
	Copy = {nullptr, 0, 0, 0, 0, Copy.Tint, FBox(), Copy.bUsed};
}

void FViewportGpuMeshes::Draw(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer) const
{
	const FCopy& Copy = ByIndex[std::size_t(Run.Mesh)];
	if (Copy.NumIndices == 0)
	{
		return;
	}
	Gl.glBindVertexArray(Copy.VertexArray);
	BindPlaces(Gl, Run, PlacesBuffer);
	Gl.glDrawElementsInstanced(GL_TRIANGLES, Copy.NumIndices, GL_UNSIGNED_INT, nullptr, Run.Count);
}

void FViewportGpuMeshes::DrawSpecks(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer)
{
	if (ByIndex[std::size_t(Run.Mesh)].NumIndices == 0)
	{
		return;
	}
	if (SpeckArray == 0)
	{
		Gl.glGenVertexArrays(1, &SpeckArray);
		Gl.glBindVertexArray(SpeckArray);
		for (GLuint Axis = 2; Axis < 5; ++Axis)
		{
			Gl.glEnableVertexAttribArray(Axis);
		}
	}
	Gl.glBindVertexArray(SpeckArray);
	BindPlaces(Gl, Run, PlacesBuffer);
	Gl.glDrawArrays(GL_POINTS, 0, Run.Count);
}

void FViewportGpuMeshes::BindPlaces(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer)
{
	Gl.glBindBuffer(GL_ARRAY_BUFFER, PlacesBuffer);
	for (GLuint Axis = 0; Axis < 3; ++Axis)
	{
		const std::size_t Start = std::size_t(Run.First) * sizeof(FInstancePlace) + Axis * 4 * sizeof(float);
		Gl.glVertexAttribPointer(2 + Axis, 4, GL_FLOAT, GL_FALSE, sizeof(FInstancePlace), Offset(Start));
	}
}

// SPDX-License-Identifier: MIT
#include "SceneIO/PrimitiveTopology.h"

#include <algorithm>
#include <numeric>

namespace
{
void AddTriangle(std::vector<std::uint32_t>& Out, std::uint32_t A, std::uint32_t B, std::uint32_t C)
{
	if (A != B && B != C && C != A)
	{
		Out.insert(Out.end(), {A, B, C});
	}
}
}

bool PrimitiveTopology::HasTriangles(EGltfMode Mode)
{
	return Mode == EGltfMode::Triangles || Mode == EGltfMode::TriangleStrip || Mode == EGltfMode::TriangleFan;
}

std::vector<std::uint32_t> PrimitiveTopology::Sequence(std::uint32_t VertexCount)
{
	std::vector<std::uint32_t> Out(VertexCount);
	std::iota(Out.begin(), Out.end(), 0u);
	return Out;
}

std::vector<std::uint32_t> PrimitiveTopology::TriangleList(EGltfMode Mode, std::span<const std::uint32_t> Indices)
{
	std::vector<std::uint32_t> Out;
	if (Mode == EGltfMode::Triangles)
	{
		Out.assign(Indices.begin(), Indices.end() - static_cast<std::ptrdiff_t>(Indices.size() % 3));
	}
	else if (Mode == EGltfMode::TriangleStrip)
	{
		for (std::size_t I = 0; I + 2 < Indices.size(); ++I)
		{
			// Every second triangle of a strip is wound the other way round.
			const std::size_t Odd = I % 2;
			AddTriangle(Out, Indices[I], Indices[I + 1 + Odd], Indices[I + 2 - Odd]);
		}
	}
	else if (Mode == EGltfMode::TriangleFan)
	{
		for (std::size_t I = 1; I + 1 < Indices.size(); ++I)
		{
			AddTriangle(Out, Indices[I], Indices[I + 1], Indices[0]);
		}
	}
	return Out;
}

bool PrimitiveTopology::HasSides(EGltfMode Mode, std::span<const std::uint32_t> Indices)
{
	if (!HasTriangles(Mode))
	{
		return false;
	}
	const bool bFan = Mode == EGltfMode::TriangleFan;
	const std::size_t Step = Mode == EGltfMode::Triangles ? 3 : 1;
	for (std::size_t I = 0; I + 2 < Indices.size(); I += Step)
	{
		const std::uint32_t A = Indices[bFan ? 0 : I];
		const std::uint32_t B = Indices[I + 1];
		const std::uint32_t C = Indices[I + 2];
		if (A != B && B != C && C != A)
		{
			return true;
		}
	}
	return false;
}

std::vector<std::uint32_t> PrimitiveTopology::Flipped(EGltfMode Mode, std::span<const std::uint32_t> Indices)
{
	std::vector<std::uint32_t> Out(Indices.begin(), Indices.end());
	if (Mode == EGltfMode::Triangles)
	{
		// The first corner stays first: some materials shade a triangle by it.
		for (std::size_t I = 0; I + 2 < Out.size(); I += 3)
		{
			std::swap(Out[I + 1], Out[I + 2]);
		}
	}
	else if (Mode == EGltfMode::TriangleFan && !Out.empty())
	{
		std::reverse(Out.begin() + 1, Out.end());
	}
	else if (Mode == EGltfMode::TriangleStrip && Out.size() % 2 == 1)
	{
		std::reverse(Out.begin(), Out.end());
	}
	else if (Mode == EGltfMode::TriangleStrip && !Out.empty())
	{
		// A first vertex that stands twice makes an empty triangle and moves every other one to the other winding.
		Out.insert(Out.begin(), Out.front());
	}
	return Out;
}

// SPDX-License-Identifier: MIT
#include "SceneIO/TrianglePairs.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace
{
std::array<int32, 3> SortedCorners(const FTriangleCorners& Corners)
{
	std::array<int32, 3> Out = {Corners[0].GetValue(), Corners[1].GetValue(), Corners[2].GetValue()};
	std::sort(Out.begin(), Out.end());
	return Out;
}

/// The triangles in the order of their corners.
std::vector<std::size_t> ByCorners(std::span<const FTriangleCorners> Triangles)
{
	std::vector<std::size_t> Order(Triangles.size());
	std::iota(Order.begin(), Order.end(), std::size_t(0));
	std::stable_sort(Order.begin(), Order.end(),
		[Triangles](std::size_t Left, std::size_t Right)
		{ return SortedCorners(Triangles[Left]) < SortedCorners(Triangles[Right]); });
	return Order;
}
} // namespace

std::vector<std::size_t> PairTriangles(std::span<const FTriangleCorners> A, std::span<const FTriangleCorners> B)
{
	if (std::equal(A.begin(), A.end(), B.begin(), B.end(),
			[](const FTriangleCorners& Left, const FTriangleCorners& Right)
			{ return SortedCorners(Left) == SortedCorners(Right); }))
	{
		return {};
	}
	const std::vector<std::size_t> OrderA = ByCorners(A);
	const std::vector<std::size_t> OrderB = ByCorners(B);
	std::vector<std::size_t> Pairs(A.size());
	for (std::size_t Place = 0; Place < OrderA.size(); ++Place)
	{
		Pairs[OrderA[Place]] = OrderB[Place];
	}
	return Pairs;
}

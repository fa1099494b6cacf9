// SPDX-License-Identifier: MIT
#include "ViewportInstances.h"

#include <algorithm>
#include <tuple>

namespace
{
/// Large enough that a hundred thousand items make few chunks, small enough to leave out most of what is not seen.
constexpr int32 ChunkSize = 128;
/// What is smaller, in pixels of the widget, shows no shape.
constexpr double SpeckSize = 4.0;

/// Spreads the lower 10 bits of a number, two zeros after each.
uint32 Spread(uint32 Bits)
{
	Bits = (Bits | (Bits << 16)) & 0x030000ffu;
	Bits = (Bits | (Bits << 8)) & 0x0300f00fu;
	Bits = (Bits | (Bits << 4)) & 0x030c30c3u;
	return (Bits | (Bits << 2)) & 0x09249249u;
}

/// A number that is near for places that are near each other.
uint32 PlaceCode(const FVector& Place, const FBox& Bounds)
{
	uint32 Code = 0;
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		const double Size = Bounds.Max[Axis] - Bounds.Min[Axis];
		const double Share = Size > 0.0 ? (Place[Axis] - Bounds.Min[Axis]) / Size : 0.0;
		Code |= Spread(uint32(std::clamp(Share, 0.0, 1.0) * 1023.0)) << Axis;
	}
	return Code;
}

FInstancePlace PlaceOf(const FMatrix& LocalToWorld, const FVector& Origin)
{
	FInstancePlace Place{};
	for (int32 Axis = 0; Axis < 3; ++Axis)
	{
		for (int32 Row = 0; Row < 4; ++Row)
		{
			const double Shift = Row == 3 ? Origin[Axis] : 0.0;
			Place.Axes[std::size_t(Axis) * 4 + std::size_t(Row)] = float(LocalToWorld.M[Row][Axis] - Shift);
		}
	}
	return Place;
}

/// Whether the part of the box that is farthest along a plane's normal is in front of the plane through the eye.
bool IsInFront(const FBox& Box, const FVector& Normal, const FVector& Eye)
{
	const FVector Farthest(Normal.X >= 0.0 ? Box.Max.X : Box.Min.X, Normal.Y >= 0.0 ? Box.Max.Y : Box.Min.Y,
		Normal.Z >= 0.0 ? Box.Max.Z : Box.Min.Z);
	return ((Farthest - Eye) | Normal) >= 0.0;
}
}

void FViewportInstances::Build(const FViewportScene& Scene, const FVector& Origin, bool bSelectedOnly)
{
	struct FEntry
	{
		int32 Mesh;
		uint32 Code;
		int32 Item;
	};
	std::vector<FEntry> Entries;
	const std::vector<FViewportItem>& Items = Scene.GetItems();
	for (std::size_t Index = 0; Index < Items.size(); ++Index)
	{
		const FViewportItem& Item = Items[Index];
		if (Item.WorldBounds.IsValid && (!bSelectedOnly || Scene.GetActors()[std::size_t(Item.Actor)].bSelected))
		{
			Entries.push_back({Item.Mesh, PlaceCode(Item.WorldBounds.GetCenter(), Scene.GetBounds()), int32(Index)});
		}
	}
	std::sort(Entries.begin(), Entries.end(),
		[](const FEntry& A, const FEntry& B)
		{ return std::tie(A.Mesh, A.Code, A.Item) < std::tie(B.Mesh, B.Code, B.Item); });
	Places.clear();
	Chunks.clear();
	Places.reserve(Entries.size());
	for (const FEntry& Entry : Entries)
	{
		if (Chunks.empty() || Chunks.back().Run.Mesh != Entry.Mesh || Chunks.back().Run.Count == ChunkSize)
		{
			Chunks.push_back({{Entry.Mesh, int32(Places.size()), 0, false}, FBox(), 0.0});
		}
		const FViewportItem& Item = Items[std::size_t(Entry.Item)];
		Places.push_back(PlaceOf(Item.LocalToWorld, Origin));
		Chunks.back().Bounds += Item.WorldBounds;
		Chunks.back().LargestSize = std::max(Chunks.back().LargestSize, Item.WorldBounds.GetSize().Size());
		++Chunks.back().Run.Count;
	}
}

bool FViewportInstances::AreSpecks(const FChunk& Chunk, const FViewportCamera& Camera)
{
	const FVector Forward = Camera.GetForward();
	const FVector Extent = Chunk.Bounds.GetExtent();
	const double Depth = ((Chunk.Bounds.GetCenter() - Camera.GetEye()) | Forward) - (Extent | Forward.GetAbs());
	return Depth > 0.0 && Chunk.LargestSize * Camera.GetPixelsPerUnit(Depth) < SpeckSize;
}

std::vector<FInstanceRun> FViewportInstances::FindVisible(const FViewportCamera& Camera) const
{
	const FVector Eye = Camera.GetEye();
	const FVector UpperLeft = Camera.GetRay({0.0, 0.0}).Direction;
	const FVector LowerRight = Camera.GetRay({Camera.GetWidth(), Camera.GetHeight()}).Direction;
	const FVector Up = Camera.GetUp();
	const FVector Right = Camera.GetRight();
	const std::array<FVector, 5> Planes = {
		UpperLeft ^ Up, Up ^ LowerRight, UpperLeft ^ Right, Right ^ LowerRight, Camera.GetForward()};
	std::vector<FInstanceRun> Runs;
	for (const FChunk& Chunk : Chunks)
	{
		if (!std::all_of(Planes.begin(), Planes.end(),
				[&](const FVector& Normal) { return IsInFront(Chunk.Bounds, Normal, Eye); }))
		{
			continue;
		}
		const bool bSpecks = AreSpecks(Chunk, Camera);
		if (!Runs.empty() && Runs.back().Mesh == Chunk.Run.Mesh && Runs.back().bSpecks == bSpecks &&
			Runs.back().First + Runs.back().Count == Chunk.Run.First)
		{
			Runs.back().Count += Chunk.Run.Count;
		}
		else
		{
			Runs.push_back({Chunk.Run.Mesh, Chunk.Run.First, Chunk.Run.Count, bSpecks});
		}
	}
	return Runs;
}

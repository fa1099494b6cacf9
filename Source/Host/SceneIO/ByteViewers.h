// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"

#include <cstdint>
#include <vector>

/// Who sees which bytes of a document's buffers, and how often each accessor is named. Decides what may be written
/// over.
///
/// What counts is the byte range, not the index: another accessor (used or not), sparse data, an image, compressed
/// data, or a buffer view that an extension which is not understood may refer to.
class FByteViewers
{
public:
	explicit FByteViewers(const FGltfDocument& InDocument);

	/// True when the elements of the accessor can be written over as far as bytes are concerned: they stand in a buffer
	/// as they are, and nothing but this accessor reaches into them.
	bool OwnsItsBytes(FGltfIndex Accessor);

	/// How often meshes, skins, animations and instances name the accessor. What an extension that is not understood
	/// may name counts as once more.
	std::uint32_t UseCount(FGltfIndex Accessor) const { return Uses[static_cast<std::size_t>(Accessor)]; }

private:
	/// Elements of `Size` bytes every `Stride` bytes, from Begin up to End.
	struct FRange
	{
		FGltfIndex Buffer = NoIndex;
		std::uint64_t Begin = 0;
		std::uint64_t End = 0;
		std::uint64_t Stride = 0;
		std::uint64_t Size = 0;
		FGltfIndex Accessor = NoIndex; ///< whose elements these are; NoIndex for anything else
	};

	FRange ElementsOf(FGltfIndex Accessor) const;
	void AddView(FGltfIndex View);
	void AddSparse(const FGltfAccessor& Accessor);
	void CountUses();
	void CollectRanges();
	static bool Intersect(const FRange& A, const FRange& B);

	const FGltfDocument& Document;
	std::vector<std::uint32_t> Uses;
	std::vector<FRange> Ranges;             ///< by buffer, then by begin
	std::vector<std::uint64_t> FurthestEnd; ///< of the ranges of the same buffer up to and including this one
	std::uint64_t StepsLeft = 100'000'000;  ///< bounds the work that a hostile layout can cause; then the answer is no
};

// SPDX-License-Identifier: MIT
#include "SceneIO/BufferWriter.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{
constexpr std::uint64_t BlockBytes = 1u << 20;

/// Puts the part of a piece that lies in [Begin, Begin + Block.size()) into the block.
void Apply(const FBufferPiece& Piece, std::uint64_t Begin, std::span<std::byte> Block, std::vector<std::byte>& Scratch)
{
	const std::uint64_t Size = Piece.Elements->ElementBytes();
	const std::uint64_t End = Begin + Block.size();
	const std::uint64_t First = Begin < Piece.Offset + Size ? 0 : (Begin - Piece.Offset - Size) / Piece.Stride + 1;
	const std::uint64_t Last =
		std::min(Piece.Elements->Count, End <= Piece.Offset ? 0 : (End - Piece.Offset - 1) / Piece.Stride + 1);
	if (First >= Last)
	{
		return;
	}
	const std::uint64_t FirstAt = Piece.Offset + First * Piece.Stride;
	const std::uint64_t LastEnd = Piece.Offset + (Last - 1) * Piece.Stride + Size;
	if (Piece.Stride == Size && FirstAt >= Begin && LastEnd <= End)
	{
		// Whole elements without gaps are made where they belong.
		Piece.Elements->Produce(First,
			Block.subspan(static_cast<std::size_t>(FirstAt - Begin), static_cast<std::size_t>(LastEnd - FirstAt)));
		return;
	}
	Scratch.resize(static_cast<std::size_t>((Last - First) * Size));
	Piece.Elements->Produce(First, Scratch);
	for (std::uint64_t I = First; I < Last; ++I)
	{
		// The block may begin or end within an element.
		const std::uint64_t At = Piece.Offset + I * Piece.Stride;
		const std::uint64_t From = std::max(At, Begin);
		const std::uint64_t To = std::min(At + Size, End);
		if (From < To)
		{
			std::memcpy(Block.data() + (From - Begin), Scratch.data() + (I - First) * Size + (From - At),
				static_cast<std::size_t>(To - From));
		}
	}
}

/// Old bytes, and zeros behind their end.
void CopyOld(std::span<const std::byte> Old, std::uint64_t Begin, std::span<std::byte> Block)
{
	const std::uint64_t Available = Begin < Old.size() ? std::min<std::uint64_t>(Old.size() - Begin, Block.size()) : 0;
	const auto Count = static_cast<std::size_t>(Available);
	if (Count > 0)
	{
		std::memcpy(Block.data(), Old.data() + Begin, Count);
	}
	std::fill(Block.begin() + static_cast<std::ptrdiff_t>(Count), Block.end(), std::byte{0});
}
}

std::uint64_t WrittenLength(const FBufferPlan& Plan, std::span<const std::byte> Old)
{
	return std::max<std::uint64_t>(Plan.NewLength, Old.size());
}

FSceneStatus WriteBuffer(const FBufferPlan& Plan, std::span<const std::byte> Old, const FByteSink& Sink)
{
	const std::uint64_t Length = WrittenLength(Plan, Old);
	std::vector<std::byte> Block(static_cast<std::size_t>(std::min(BlockBytes, Length)));
	std::vector<std::byte> Scratch;
	std::vector<const FBufferPiece*> Active;
	auto Next = Plan.Pieces.begin();
	for (std::uint64_t Begin = 0; Begin < Length; Begin += BlockBytes)
	{
		const std::uint64_t End = std::min(Begin + BlockBytes, Length);
		for (; Next != Plan.Pieces.end() && Next->Offset < End; ++Next)
		{
			Active.push_back(&*Next);
		}
		std::erase_if(Active, [Begin](const FBufferPiece* Piece) { return Piece->End() <= Begin; });
		FSceneStatus Status;
		if (Active.empty() && End <= Old.size())
		{
			Status = Sink(Old.subspan(static_cast<std::size_t>(Begin), static_cast<std::size_t>(End - Begin)));
		}
		else
		{
			const std::span<std::byte> Now = std::span(Block).first(static_cast<std::size_t>(End - Begin));
			CopyOld(Old, Begin, Now);
			for (const FBufferPiece* const Piece : Active)
			{
				Apply(*Piece, Begin, Now, Scratch);
			}
			Status = Sink(Now);
		}
		if (!Status)
		{
			return Status;
		}
	}
	return {};
}

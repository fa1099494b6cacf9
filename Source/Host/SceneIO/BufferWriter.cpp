// SPDX-License-Identifier: MIT
#include "SceneIO/BufferWriter.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>
#include <memory>
#include <vector>

#include <tbb/parallel_pipeline.h>

namespace
{
/// Small enough to be in a core's own cache when it is sent.
constexpr std::uint64_t BlockBytes = 1u << 18;

/// Copies the part of an element, whose bytes stand at `At` in the buffer, that lies in the block.
void CopyElement(std::span<const std::byte> Element, std::uint64_t At, std::uint64_t Begin, std::span<std::byte> Block)
{
	const std::uint64_t From = std::max(At, Begin);
	const std::uint64_t To = std::min(At + Element.size(), Begin + Block.size());
	if (From < To)
	{
		std::memcpy(Block.data() + (From - Begin), Element.data() + (From - At), static_cast<std::size_t>(To - From));
	}
}

/// Puts the part of a piece that lies in [Begin, Begin + Block.size()) into the block.
void Apply(const FBufferPiece& Piece, std::uint64_t Begin, std::span<std::byte> Block)
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
	const bool bInside = FirstAt >= Begin && LastEnd <= End;
	if (Piece.Stride == Size && bInside)
	{
		// Whole elements without gaps are made where they belong.
		Piece.Elements->Produce(First,
			Block.subspan(static_cast<std::size_t>(FirstAt - Begin), static_cast<std::size_t>(LastEnd - FirstAt)));
		return;
	}
	alignas(16) std::array<std::byte, 1u << 14> Buffer;
	const std::uint64_t AtATime = Buffer.size() / Size;
	for (std::uint64_t From = First; From < Last; From += AtATime)
	{
		const std::uint64_t Num = std::min(AtATime, Last - From);
		const std::span<std::byte> Elements = std::span(Buffer).first(static_cast<std::size_t>(Num * Size));
		Piece.Elements->Produce(From, Elements);
		for (std::uint64_t I = 0; I < Num; ++I)
		{
			CopyElement(Elements.subspan(static_cast<std::size_t>(I * Size), static_cast<std::size_t>(Size)),
				Piece.Offset + (From + I) * Piece.Stride, Begin, Block);
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

namespace
{
/// A part of the buffer on its way to the sink.
struct FBlock
{
	std::uint64_t Begin = 0;
	std::vector<const FBufferPiece*> Pieces; ///< that reach into it
	std::span<const std::byte> Bytes;        ///< what is to be sent
	std::unique_ptr<std::byte[]> Made;
};

/// Cuts a buffer into blocks and makes their bytes.
class FBlockMaker
{
public:
	FBlockMaker(const FBufferPlan& InPlan, std::span<const std::byte> InOld)
		: Plan(InPlan)
		, Old(InOld)
		, Length(WrittenLength(InPlan, InOld))
		, NextPiece(InPlan.Pieces.begin())
	{
	}

	bool IsAtEnd() const { return NextBegin >= Length; }

	FBlock Next()
	{
		FBlock Block;
		Block.Begin = NextBegin;
		NextBegin = std::min(NextBegin + BlockBytes, Length);
		for (; NextPiece != Plan.Pieces.end() && NextPiece->Offset < NextBegin; ++NextPiece)
		{
			Active.push_back(&*NextPiece);
		}
		std::erase_if(Active, [&Block](const FBufferPiece* Piece) { return Piece->End() <= Block.Begin; });
		Block.Pieces = Active;
		return Block;
	}

	/// May run on several blocks at once.
	void Make(FBlock& Block) const
	{
		const std::uint64_t End = std::min(Block.Begin + BlockBytes, Length);
		if (Block.Pieces.empty() && End <= Old.size())
		{
			Block.Bytes =
				Old.subspan(static_cast<std::size_t>(Block.Begin), static_cast<std::size_t>(End - Block.Begin));
			return;
		}
		const auto Size = static_cast<std::size_t>(End - Block.Begin);
		Block.Made = std::make_unique_for_overwrite<std::byte[]>(Size);
		const std::span<std::byte> Bytes(Block.Made.get(), Size);
		CopyOld(Old, Block.Begin, Bytes);
		for (const FBufferPiece* const Piece : Block.Pieces)
		{
			Apply(*Piece, Block.Begin, Bytes);
		}
		Block.Bytes = Bytes;
	}

private:
	const FBufferPlan& Plan;
	std::span<const std::byte> Old;
	std::uint64_t Length;
	std::uint64_t NextBegin = 0;
	std::vector<FBufferPiece>::const_iterator NextPiece;
	std::vector<const FBufferPiece*> Active;
};
}

FSceneStatus WriteBuffer(const FBufferPlan& Plan, std::span<const std::byte> Old, const FByteSink& Sink)
{
	FBlockMaker Maker(Plan, Old);
	FSceneStatus Status;
	std::atomic<bool> bFailed = false;
	const auto Take = [&](tbb::flow_control& Control)
	{
		if (Maker.IsAtEnd() || bFailed)
		{
			Control.stop();
			return std::make_shared<FBlock>();
		}
		return std::make_shared<FBlock>(Maker.Next());
	};
	const auto Make = [&Maker](std::shared_ptr<FBlock> Block)
	{
		Maker.Make(*Block);
		return Block;
	};
	const auto Send = [&](const std::shared_ptr<FBlock>& Block)
	{
		if (!bFailed)
		{
			Status = Sink(Block->Bytes);
			bFailed = !Status;
		}
	};
	using FBlockPtr = std::shared_ptr<FBlock>;
	// Blocks are made on all cores while others are being sent, which bounds the memory that they take.
	constexpr std::size_t BlocksAtATime = 16;
	tbb::parallel_pipeline(
		BlocksAtATime, tbb::make_filter<void, FBlockPtr>(tbb::filter_mode::serial_in_order, Take) &
						   tbb::make_filter<FBlockPtr, FBlockPtr>(tbb::filter_mode::parallel, Make) &
						   tbb::make_filter<FBlockPtr, void>(tbb::filter_mode::serial_in_order, Send));
	return Status;
}

// SPDX-License-Identifier: MIT
// The part of the layout that gives new elements their places in buffers.
#include "SceneIO/JsonWrite.h"
#include "SceneIO/PatchLayout.h"

#include <algorithm>
#include <tuple>

namespace
{
std::uint64_t AlignedTo4(std::uint64_t Offset)
{
	return (Offset + 3) / 4 * 4;
}

/// Bytes from one element to the next: vertices begin at multiples of four, all else follows without gaps.
std::uint64_t StrideOf(const FNewElements& Elements)
{
	return Elements.Use == EElementUse::Vertices ? AlignedTo4(Elements.ElementBytes()) : Elements.ElementBytes();
}

/// New elements of one kind share a buffer view.
struct FNewView
{
	EElementUse Use = EElementUse::Vertices;
	std::uint64_t Stride = 0;
	std::uint64_t Offset = 0;
	std::uint64_t Length = 0;
};

std::string Member(std::string_view Key, std::uint64_t Value)
{
	return JsonWrite::String(Key) + ":" + JsonWrite::Integer(Value);
}

std::string ViewText(const FNewView& View, FGltfIndex Buffer)
{
	constexpr std::uint64_t ArrayBuffer = 34962;
	constexpr std::uint64_t ElementArrayBuffer = 34963;
	std::string Text = "{" + Member("buffer", static_cast<std::uint64_t>(Buffer)) + "," +
					   Member("byteLength", View.Length) + "," + Member("byteOffset", View.Offset);
	if (View.Use == EElementUse::Vertices)
	{
		Text += "," + Member("byteStride", View.Stride) + "," + Member("target", ArrayBuffer);
	}
	else if (View.Use == EElementUse::Indices)
	{
		Text += "," + Member("target", ElementArrayBuffer);
	}
	return Text + "}";
}

std::string BoundText(std::string_view Key, const std::vector<double>& Values, EGltfComponent Component)
{
	std::string Text = "," + JsonWrite::String(Key) + ":";
	if (Component != EGltfComponent::Float)
	{
		return Text + JsonWrite::Array(Values);
	}
	std::vector<float> Singles(Values.size());
	std::transform(
		Values.begin(), Values.end(), Singles.begin(), [](double Value) { return static_cast<float>(Value); });
	return Text + JsonWrite::Array(Singles);
}

std::string AccessorText(const FNewElements& Elements, std::uint64_t View, std::uint64_t Offset, bool bBounds)
{
	std::string Text = "{" + Member("bufferView", View) + "," + Member("byteOffset", Offset) + "," +
					   Member("componentType", static_cast<std::uint64_t>(Elements.Component)) + "," +
					   Member("count", Elements.Count) + ",\"type\":\"" + TypeName(Elements.Type) + "\"";
	if (Elements.bNormalized)
	{
		Text += ",\"normalized\":true";
	}
	if (bBounds && Elements.Bounds().bFinite)
	{
		Text += BoundText("min", Elements.Bounds().Min, Elements.Component);
		Text += BoundText("max", Elements.Bounds().Max, Elements.Component);
	}
	return Text + "}";
}
}

/// The buffer that new elements are put into: the binary chunk, or the first that has bytes of its own.
FGltfIndex FPatchLayout::PickBuffer()
{
	const std::vector<FGltfBuffer>& Buffers = Document.Model().Buffers;
	const auto Find = [&Buffers](EGltfBufferKind Kind)
	{
		const auto Found = std::find_if(
			Buffers.begin(), Buffers.end(), [Kind](const FGltfBuffer& Buffer) { return Buffer.Kind == Kind; });
		return Found == Buffers.end() ? NoIndex : static_cast<FGltfIndex>(Found - Buffers.begin());
	};
	for (const EGltfBufferKind Kind : {EGltfBufferKind::Chunk, EGltfBufferKind::File, EGltfBufferKind::Embedded})
	{
		if (const FGltfIndex Buffer = Find(Kind); Buffer != NoIndex)
		{
			return Buffer;
		}
	}
	// Only the first buffer of a binary file can mean its chunk.
	const bool bChunk = Document.IsBinary() && Buffers.empty() && Document.File().BinaryChunkIndex < 0;
	Plan.NewBuffer = bChunk ? EGltfBufferKind::Chunk : EGltfBufferKind::Embedded;
	return static_cast<FGltfIndex>(Buffers.size());
}

FBufferPlan& FPatchLayout::PlanFor(FGltfIndex Buffer)
{
	const auto [Found, bNew] = Plan.Buffers.try_emplace(Buffer);
	FBufferPlan& Out = Found->second;
	if (bNew && static_cast<std::size_t>(Buffer) < Document.Model().Buffers.size())
	{
		const FGltfBuffer& Record = Document.Buffer(Buffer);
		Out.OldLength = Out.NewLength = Record.ByteLength;
		if (Record.Kind == EGltfBufferKind::File)
		{
			Out.OldLength = Document.BufferFile(Buffer)->Bytes().size();
		}
		else if (Record.Kind == EGltfBufferKind::Chunk)
		{
			Out.OldLength = Document.File().ChunkBytes(Document.File().BinaryChunkIndex).size();
		}
	}
	return Out;
}

void FPatchLayout::PlaceNewAccessors()
{
	if (NewAccessors.empty())
	{
		return;
	}
	std::vector<const FNewElements*> Bounded;
	for (const FNewAccessor& Accessor : NewAccessors)
	{
		if (Accessor.bBounds)
		{
			Bounded.push_back(Accessor.Elements.get());
		}
	}
	NewElements::MeasureAll(std::move(Bounded));
	const FGltfIndex Buffer = PickBuffer();
	FBufferPlan& BufferPlan = PlanFor(Buffer);
	std::vector<FNewView> Views;
	std::vector<std::size_t> ViewOf(NewAccessors.size());
	std::vector<std::uint64_t> OffsetInView(NewAccessors.size());
	for (std::size_t I = 0; I < NewAccessors.size(); ++I)
	{
		const FNewElements& Elements = *NewAccessors[I].Elements;
		const std::uint64_t Stride = StrideOf(Elements);
		auto View = std::find_if(Views.begin(), Views.end(),
			[&](const FNewView& Known) { return Known.Use == Elements.Use && Known.Stride == Stride; });
		if (View == Views.end())
		{
			View = Views.insert(Views.end(), {Elements.Use, Stride, 0, 0});
		}
		ViewOf[I] = static_cast<std::size_t>(View - Views.begin());
		OffsetInView[I] = View->Length;
		View->Length += Elements.Count * Stride;
	}
	std::uint64_t End = AlignedTo4(BufferPlan.OldLength);
	for (FNewView& View : Views)
	{
		View.Offset = End;
		End = AlignedTo4(End + View.Length);
	}
	BufferPlan.NewLength = Views.back().Offset + Views.back().Length;

	const std::size_t FirstView = Document.Model().BufferViews.size();
	std::vector<std::string> AccessorTexts;
	for (std::size_t I = 0; I < NewAccessors.size(); ++I)
	{
		const FNewView& View = Views[ViewOf[I]];
		BufferPlan.Pieces.push_back({View.Offset + OffsetInView[I], View.Stride, NewAccessors[I].Elements});
		AccessorTexts.push_back(
			AccessorText(*NewAccessors[I].Elements, FirstView + ViewOf[I], OffsetInView[I], NewAccessors[I].bBounds));
	}
	std::vector<std::string> ViewTexts;
	for (const FNewView& View : Views)
	{
		ViewTexts.push_back(ViewText(View, Buffer));
	}
	AppendList("accessors", std::move(AccessorTexts));
	AppendList("bufferViews", std::move(ViewTexts));
}

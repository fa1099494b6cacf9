// SPDX-License-Identifier: MIT
#include "SceneIO/ByteViewers.h"

#include <algorithm>
#include <tuple>

FByteViewers::FByteViewers(const FGltfDocument& InDocument)
	: Document(InDocument)
{
	CountUses();
	CollectRanges();
}

void FByteViewers::CountUses()
{
	const FGltfModel& Model = Document.Model();
	Uses.assign(Model.Accessors.size(), 0);
	const auto Count = [this](FGltfIndex Accessor)
	{
		if (Accessor != NoIndex)
		{
			++Uses[static_cast<std::size_t>(Accessor)];
		}
	};
	const auto CountAll = [&Count](const std::vector<FGltfAttribute>& Attributes)
	{
		for (const FGltfAttribute& Attribute : Attributes)
		{
			Count(Attribute.Accessor);
		}
	};
	for (const FGltfMesh& Mesh : Model.Meshes)
	{
		for (const FGltfPrimitive& Primitive : Mesh.Primitives)
		{
			Count(Primitive.Indices);
			CountAll(Primitive.Attributes);
			std::for_each(Primitive.Targets.begin(), Primitive.Targets.end(), CountAll);
		}
	}
	for (const FGltfSkin& Skin : Model.Skins)
	{
		Count(Skin.InverseBindMatrices);
	}
	for (const FGltfAnimation& Animation : Model.Animations)
	{
		std::for_each(Animation.SamplerAccessors.begin(), Animation.SamplerAccessors.end(), Count);
	}
	for (const FGltfNode& Node : Model.Nodes)
	{
		if (Node.Extensions != nullptr)
		{
			CountAll(Node.Extensions->Instances);
		}
	}
	for (std::size_t I = 0; I < Uses.size(); ++I)
	{
		Uses[I] += Model.AccessorsSeenByUnknown[I] ? 1u : 0u;
	}
}

FByteViewers::FRange FByteViewers::ElementsOf(FGltfIndex Index) const
{
	const FGltfAccessor& Accessor = Document.Accessor(Index);
	const FGltfBufferView& View = Document.View(Accessor.View);
	FRange Range;
	Range.Buffer = View.Buffer;
	Range.Begin = View.ByteOffset + Accessor.ByteOffset;
	Range.Accessor = Index;
	Range.Size = Accessor.ElementBytes();
	if (Range.Size == 0 || Accessor.Count == 0)
	{
		// Of an unknown type, and so of unknown size: all that is left of the view.
		Range.End = Accessor.Count == 0 ? Range.Begin : std::max(Range.Begin, View.ByteOffset + View.ByteLength);
		Range.Size = Range.Stride = Range.End - Range.Begin;
		return Range;
	}
	Range.Stride = View.ByteStride == 0 ? Range.Size : View.ByteStride;
	Range.End = Range.Begin + (Accessor.Count - 1) * Range.Stride + Range.Size;
	return Range;
}

void FByteViewers::AddView(FGltfIndex Index)
{
	const FGltfBufferView& View = Document.View(Index);
	FRange Range;
	Range.Buffer = View.Buffer;
	Range.Begin = View.ByteOffset;
	Range.End = View.ByteOffset + View.ByteLength;
	Range.Size = Range.Stride = View.ByteLength;
	Ranges.push_back(Range);
	if (View.Meshopt)
	{
		Range.Buffer = View.Meshopt->Buffer;
		Range.Begin = View.Meshopt->ByteOffset;
		Range.End = Range.Begin + View.Meshopt->ByteLength;
		Range.Size = Range.Stride = View.Meshopt->ByteLength;
		Ranges.push_back(Range);
	}
}

void FByteViewers::AddSparse(const FGltfAccessor& Accessor)
{
	AddView(Accessor.Sparse->IndicesView);
	AddView(Accessor.Sparse->ValuesView);
}

void FByteViewers::CollectRanges()
{
	const FGltfModel& Model = Document.Model();
	std::vector<bool> bOnlyByAccessors(Model.BufferViews.size(), false);
	for (std::size_t I = 0; I < Model.Accessors.size(); ++I)
	{
		const FGltfAccessor& Accessor = Model.Accessors[I];
		if (Accessor.View != NoIndex && !Document.View(Accessor.View).Meshopt)
		{
			Ranges.push_back(ElementsOf(static_cast<FGltfIndex>(I)));
			bOnlyByAccessors[static_cast<std::size_t>(Accessor.View)] = true;
		}
		if (Accessor.Sparse)
		{
			AddSparse(Accessor);
		}
	}
	// Draco data, images and what else may look at a whole view.
	for (const FGltfImage& Image : Model.Images)
	{
		if (Image.View != NoIndex)
		{
			bOnlyByAccessors[static_cast<std::size_t>(Image.View)] = false;
		}
	}
	for (const FGltfMesh& Mesh : Model.Meshes)
	{
		for (const FGltfPrimitive& Primitive : Mesh.Primitives)
		{
			if (Primitive.Draco)
			{
				bOnlyByAccessors[static_cast<std::size_t>(Primitive.Draco->View)] = false;
			}
		}
	}
	for (std::size_t I = 0; I < Model.BufferViews.size(); ++I)
	{
		if (!bOnlyByAccessors[I] || Model.ViewsSeenByUnknown[I])
		{
			AddView(static_cast<FGltfIndex>(I));
		}
	}
	std::erase_if(Ranges, [](const FRange& Range) { return Range.Begin == Range.End; });
	std::sort(Ranges.begin(), Ranges.end(),
		[](const FRange& A, const FRange& B)
		{ return std::tie(A.Buffer, A.Begin, A.End) < std::tie(B.Buffer, B.Begin, B.End); });
	FurthestEnd.resize(Ranges.size());
	for (std::size_t I = 0; I < Ranges.size(); ++I)
	{
		const bool bSameBuffer = I > 0 && Ranges[I - 1].Buffer == Ranges[I].Buffer;
		FurthestEnd[I] = bSameBuffer ? std::max(FurthestEnd[I - 1], Ranges[I].End) : Ranges[I].End;
	}
}

bool FByteViewers::Intersect(const FRange& A, const FRange& B)
{
	if (A.Buffer != B.Buffer || A.End <= B.Begin || B.End <= A.Begin)
	{
		return false;
	}
	const bool bInterleaved = A.Stride == B.Stride && A.Stride > A.Size && B.Stride > B.Size;
	if (!bInterleaved)
	{
		return true; // or nearly so: a gap of one that holds the other whole is not looked for
	}
	const std::uint64_t Stride = A.Stride;
	const std::uint64_t BAfterA = (B.Begin % Stride + Stride - A.Begin % Stride) % Stride;
	const std::uint64_t AAfterB = (Stride - BAfterA) % Stride;
	return BAfterA < A.Size || AAfterB < B.Size;
}

bool FByteViewers::OwnsItsBytes(FGltfIndex Index)
{
	const FGltfAccessor& Accessor = Document.Accessor(Index);
	if (Accessor.View == NoIndex || Accessor.Sparse || Accessor.ElementBytes() == 0 ||
		Document.View(Accessor.View).Meshopt)
	{
		return false;
	}
	if (Document.Buffer(Document.View(Accessor.View).Buffer).Kind == EGltfBufferKind::None)
	{
		return false;
	}
	const FRange Own = ElementsOf(Index);
	const auto BufferBegin = std::lower_bound(Ranges.begin(), Ranges.end(), Own.Buffer,
		[](const FRange& Range, FGltfIndex Buffer) { return Range.Buffer < Buffer; });
	const auto BufferEnd = std::upper_bound(BufferBegin, Ranges.end(), Own.Buffer,
		[](FGltfIndex Buffer, const FRange& Range) { return Buffer < Range.Buffer; });
	const auto FirstEnd = FurthestEnd.begin() + (BufferBegin - Ranges.begin());
	const auto LastEnd = FurthestEnd.begin() + (BufferEnd - Ranges.begin());
	// From the first range on that, or before which one, reaches past the begin.
	const auto Reaching = std::upper_bound(FirstEnd, LastEnd, Own.Begin);
	for (auto Range = BufferBegin + (Reaching - FirstEnd); Range != BufferEnd && Range->Begin < Own.End; ++Range)
	{
		if (StepsLeft == 0)
		{
			return false;
		}
		--StepsLeft;
		if (Range->Accessor != Index && Intersect(Own, *Range))
		{
			return false;
		}
	}
	return true;
}

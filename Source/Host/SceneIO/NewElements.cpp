// SPDX-License-Identifier: MIT
#include "SceneIO/NewElements.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>
#include <tbb/parallel_reduce.h>

namespace
{
FNewElementsPtr FromNumbers(std::vector<float> Values, EGltfType Type, EGltfComponent Component, bool bNormalized)
{
	auto Out = std::make_shared<FNewElements>();
	Out->Component = Component;
	Out->Type = Type;
	Out->bNormalized = bNormalized;
	Out->Count = Values.size() / ComponentCount(Type);
	Out->Produce = [Numbers = std::move(Values), Type, Component, bNormalized](
					   std::uint64_t First, std::span<std::byte> Bytes)
	{
		const std::size_t Components = Bytes.size() / ComponentSize(Component);
		const std::size_t Begin = static_cast<std::size_t>(First) * ComponentCount(Type);
		WriteComponents(std::span(Numbers).subspan(Begin, Components), Component, bNormalized, Bytes);
	};
	return Out;
}

/// The largest index that may stand for a vertex: the one above means "primitive restart".
std::uint32_t LargestIndex(EGltfComponent Component)
{
	return Component == EGltfComponent::UnsignedByte    ? 0xFEu
		   : Component == EGltfComponent::UnsignedShort ? 0xFFFEu
														: 0xFFFFFFFEu;
}
}

FNewElementsPtr NewElements::FromFloats(std::vector<float> Values, EGltfType Type)
{
	return FromNumbers(std::move(Values), Type, EGltfComponent::Float, false);
}

FNewElementsPtr NewElements::FromFloatsLike(const FGltfAccessor& Like, std::vector<float> Values, double Tolerance)
{
	const bool bMatrix = Like.Type >= EGltfType::Mat2;
	const bool bFits = !bMatrix && FitsStorage(Values, Like.Component, Like.bNormalized, Tolerance);
	return bFits ? FromNumbers(std::move(Values), Like.Type, Like.Component, Like.bNormalized)
				 : FromNumbers(std::move(Values), Like.Type, EGltfComponent::Float, false);
}

FNewElementsPtr NewElements::FromView(const FElementView& View)
{
	auto Out = std::make_shared<FNewElements>();
	Out->Component = View.Component;
	Out->Type = View.Type;
	Out->bNormalized = View.bNormalized;
	Out->Count = View.Count;
	Out->Produce = [View, Size = Out->ElementBytes()](std::uint64_t First, std::span<std::byte> Bytes)
	{
		const std::size_t Begin = static_cast<std::size_t>(First);
		for (std::size_t I = 0; I * Size < Bytes.size(); ++I)
		{
			std::memcpy(Bytes.data() + I * Size, View.Element(Begin + I), Size);
		}
	};
	return Out;
}

FNewElementsPtr NewElements::FromIndices(std::vector<std::uint32_t> Indices, std::optional<EGltfComponent> Preferred)
{
	const std::uint32_t Largest = Indices.empty() ? 0 : *std::max_element(Indices.begin(), Indices.end());
	auto Out = std::make_shared<FNewElements>();
	Out->Type = EGltfType::Scalar;
	Out->Use = EElementUse::Indices;
	Out->Count = Indices.size();
	Out->Component = Preferred && Largest <= LargestIndex(*Preferred)         ? *Preferred
					 : Largest <= LargestIndex(EGltfComponent::UnsignedShort) ? EGltfComponent::UnsignedShort
																			  : EGltfComponent::UnsignedInt;
	Out->Produce = [List = std::move(Indices), Size = Out->ElementBytes()](
					   std::uint64_t First, std::span<std::byte> Bytes)
	{
		// Little-endian: the low bytes of a number come first, whatever its size.
		for (std::size_t I = 0; I * Size < Bytes.size(); ++I)
		{
			std::memcpy(Bytes.data() + I * Size, &List[static_cast<std::size_t>(First) + I], Size);
		}
	};
	return Out;
}

const FElementBounds& FNewElements::Bounds() const
{
	if (Measured)
	{
		return *Measured;
	}
	if (Type >= EGltfType::Mat2)
	{
		return Measured.emplace();
	}
	const auto Measure = [this](const tbb::blocked_range<std::uint64_t>& Range, FElementBounds So)
	{
		constexpr std::uint64_t ElementsAtATime = 1024;
		std::array<std::byte, ElementsAtATime * 16> Buffer; // no element but a matrix is larger
		for (std::uint64_t First = Range.begin(); First < Range.end(); First += ElementsAtATime)
		{
			const std::uint64_t Num = std::min(ElementsAtATime, Range.end() - First);
			const std::span Bytes = std::span(Buffer).first(static_cast<std::size_t>(Num * ElementBytes()));
			Produce(First, Bytes);
			So.Add(Bytes, Component, Type);
		}
		return So;
	};
	const auto Join = [](FElementBounds A, const FElementBounds& B)
	{
		A.Add(B);
		return A;
	};
	constexpr std::uint64_t TaskElements = 1u << 16;
	const tbb::blocked_range<std::uint64_t> All(0, Count, TaskElements);
	Measured = Count < 2 * TaskElements ? Measure(All, {}) : tbb::parallel_reduce(All, FElementBounds(), Measure, Join);
	return *Measured;
}

void NewElements::MeasureAll(std::vector<const FNewElements*> Elements)
{
	std::ranges::sort(Elements);
	Elements.erase(std::unique(Elements.begin(), Elements.end()), Elements.end());
	tbb::parallel_for(std::size_t(0), Elements.size(), [&](std::size_t Index) { (void)Elements[Index]->Bounds(); });
}

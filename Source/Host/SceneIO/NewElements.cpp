// SPDX-License-Identifier: MIT
#include "SceneIO/NewElements.h"

#include <algorithm>
#include <cstring>

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
	NewElements::MeasureBounds(*Out);
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
	MeasureBounds(*Out);
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

void NewElements::MeasureBounds(FNewElements& Elements)
{
	constexpr std::uint64_t ElementsAtATime = 4096;
	Elements.Bounds = FElementBounds();
	std::vector<std::byte> Bytes;
	for (std::uint64_t First = 0; First < Elements.Count; First += ElementsAtATime)
	{
		const std::uint64_t Count = std::min(ElementsAtATime, Elements.Count - First);
		Bytes.resize(static_cast<std::size_t>(Count * Elements.ElementBytes()));
		Elements.Produce(First, Bytes);
		if (Elements.Type < EGltfType::Mat2)
		{
			Elements.Bounds.Add(Bytes, Elements.Component, Elements.Type);
		}
	}
}

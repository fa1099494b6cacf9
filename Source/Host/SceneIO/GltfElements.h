// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfDocument.h"
#include "SceneIO/GltfStorage.h"
#include "SceneIO/SceneResult.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// Elements of an accessor, somewhere in memory: in a mapped file (then strided, quantised and unaligned as they are
/// there), or decoded. The view keeps alive what it looks at. The bytes of a mapped file may still change under it;
/// whoever has read them asks FGltfDocument::CheckIntact before relying on them.
struct FElementView
{
	const std::byte* Data = nullptr;
	std::size_t Stride = 0;
	std::size_t Count = 0;
	EGltfComponent Component = EGltfComponent::Float;
	EGltfType Type = EGltfType::Scalar;
	bool bNormalized = false;
	std::shared_ptr<const void> Owner;

	const std::byte* Element(std::size_t Index) const { return Data + Index * Stride; }
};

/// The elements of an accessor. Costs nothing where they stand in the file as they are; sparse accessors, and those
/// without a buffer view (zeros), are put together in memory.
TSceneResult<FElementView> ViewElements(const std::shared_ptr<const FGltfDocument>& Document, FGltfIndex Accessor);

/// Writes the components of elements [First, First + Out.size() / components) as numbers; normalised integers become
/// fractions. Columns of matrices follow each other without padding.
void ReadComponents(const FElementView& View, std::size_t First, std::span<float> Out);
void ReadComponents(const FElementView& View, std::size_t First, std::span<double> Out);

/// As ReadComponents, for unsigned integers of one component, as indices are.
void ReadUnsigned(const FElementView& View, std::size_t First, std::span<std::uint32_t> Out);

/// True when each value, stored and read again, differs by at most `Tolerance`.
bool FitsStorage(std::span<const float> Values, EGltfComponent Component, bool bNormalized, double Tolerance);

/// Stores numbers as components without gaps: the nearest representable value, clamped to the component's range. Not
/// for matrices. `Out` has room for all.
void WriteComponents(
	std::span<const float> Values, EGltfComponent Component, bool bNormalized, std::span<std::byte> Out);

/// Smallest and largest stored value of each component, as an accessor's `min` and `max` give them (integers are not
/// normalised). NaN is left out; a component without a finite value has none.
struct FElementBounds
{
	std::vector<double> Min;
	std::vector<double> Max;
	bool bFinite = false; ///< every component has bounds, and none is infinite

	/// Takes elements without gaps, as WriteComponents stores them.
	void Add(std::span<const std::byte> Elements, EGltfComponent Component, EGltfType Type);

	/// Takes the bounds of elements that come behind.
	void Add(const FElementBounds& Other);

private:
	void SetFinite();
};

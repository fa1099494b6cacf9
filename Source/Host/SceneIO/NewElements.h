// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfElements.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// What elements are for; it decides what kind of buffer view they are put into.
enum class EElementUse : std::uint8_t
{
	Vertices, ///< a vertex attribute: every element begins at a multiple of four bytes
	Indices,  ///< indices of vertices
	Other,    ///< instances, for example
};

/// Elements that a save is to write. They need not exist as bytes before: `Produce` is asked for them piece by piece,
/// in order, while the file is written, so that large meshes are never held twice.
struct FNewElements
{
	EGltfComponent Component = EGltfComponent::Float;
	EGltfType Type = EGltfType::Vec3;
	bool bNormalized = false;
	EElementUse Use = EElementUse::Vertices;
	std::uint64_t Count = 0;

	/// Writes the elements from `First` on, without gaps, until `Out` is full. Called with whole elements only,
	/// possibly more than once for the same ones, and on several threads at once.
	std::function<void(std::uint64_t First, std::span<std::byte> Out)> Produce;

	/// Of exactly what Produce gives: measured when it is first asked for, which two threads must not do at once.
	const FElementBounds& Bounds() const;

	std::uint32_t ElementBytes() const { return ElementSize(Component, Type); }

private:
	mutable std::optional<FElementBounds> Measured;
};

/// Shared by every use that is to have the same elements: uses that share the pointer share the accessor that is
/// written.
using FNewElementsPtr = std::shared_ptr<const FNewElements>;

namespace NewElements
{
/// Stored as single-precision numbers.
FNewElementsPtr FromFloats(std::vector<float> Values, EGltfType Type);

/// In the storage that `Like` has (component type, normalised or not) if it holds every value within `Tolerance`, else
/// in single precision. Values that do not fit are never clamped.
FNewElementsPtr FromFloatsLike(const FGltfAccessor& Like, std::vector<float> Values, double Tolerance);

/// As they are in memory.
FNewElementsPtr FromView(const FElementView& View);

/// Indices in the component type of `Preferred` if it holds them all (its largest value, which would mean "primitive
/// restart", not counted), else in the smallest of 16 and 32 bits that does.
FNewElementsPtr FromIndices(std::vector<std::uint32_t> Indices, std::optional<EGltfComponent> Preferred);

/// Measures the bounds of all of them, so that they are known where they are asked for.
void MeasureAll(std::vector<const FNewElements*> Elements);
}

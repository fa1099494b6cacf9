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
	FElementBounds Bounds; ///< of exactly what Produce gives; empty Min and Max where none are to be written

	/// Writes the elements from `First` on, without gaps, until `Out` is full. Called with whole elements only, and
	/// possibly more than once for the same ones.
	std::function<void(std::uint64_t First, std::span<std::byte> Out)> Produce;

	std::uint32_t ElementBytes() const { return ElementSize(Component, Type); }
};

/// Shared by every use that is to have the same elements: uses that share the pointer share the accessor that is
/// written.
using FNewElementsPtr = std::shared_ptr<const FNewElements>;

namespace NewElements
{
/// Stored as single-precision numbers, with bounds.
FNewElementsPtr FromFloats(std::vector<float> Values, EGltfType Type);

/// In the storage that `Like` has (component type, normalised or not) if it holds every value within `Tolerance`, else
/// in single precision. Values that do not fit are never clamped. With bounds.
FNewElementsPtr FromFloatsLike(const FGltfAccessor& Like, std::vector<float> Values, double Tolerance);

/// As they are in memory, with bounds.
FNewElementsPtr FromView(const FElementView& View);

/// Indices in the component type of `Preferred` if it holds them all (its largest value, which would mean "primitive
/// restart", not counted), else in the smallest of 16 and 32 bits that does. Without bounds.
FNewElementsPtr FromIndices(std::vector<std::uint32_t> Indices, std::optional<EGltfComponent> Preferred);

/// Runs `Produce` over all elements and puts their bounds into the record.
void MeasureBounds(FNewElements& Elements);
}

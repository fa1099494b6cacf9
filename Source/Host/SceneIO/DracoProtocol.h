// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

/// What passes between the scene reader and the process that runs the Draco decoder, over one socket, in the machine's
/// own byte order. Request: FRequest, FAttribute for each, the compressed bytes. Answer: FAnswer, and on success the
/// indices (32 bits each), then each attribute's components without gaps, in the order asked.
namespace DracoProtocol
{
struct FRequest
{
	std::uint32_t Bytes = 0;
	std::uint32_t Attributes = 0;
};

struct FAttribute
{
	std::uint32_t UniqueId = 0;
	std::uint32_t Component = 0; ///< 5120 … 5126
	std::uint32_t Components = 0;
};

enum class EStatus : std::uint32_t
{
	Done,
	Damaged,          ///< the decoder refuses the data
	MissingAttribute, ///< an attribute is not in the data, or has another number of components
	TooLarge,         ///< what comes out is larger than the caps
};

struct FAnswer
{
	EStatus Status = EStatus::Damaged;
	std::uint32_t Vertices = 0;
	std::uint32_t Indices = 0;
};

constexpr std::uint32_t MaxAttributes = 1024;
}

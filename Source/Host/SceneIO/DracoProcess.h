// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/DracoProtocol.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

/// What the decoder made of one primitive.
struct FDracoOutput
{
	std::uint32_t Vertices = 0;
	std::vector<std::uint32_t> Indices;                              ///< three for each triangle; each below Vertices
	std::vector<std::shared_ptr<std::vector<std::byte>>> Attributes; ///< components without gaps, in the order asked
};

/// A child process that runs the Draco decoder under limits of memory and time (SceneLimits), so that hostile data ends
/// that process and not this one. It is started on first use, serves one request after the other, and is started anew
/// when it died. One request at a time.
class FDracoProcess
{
public:
	FDracoProcess() = default;
	~FDracoProcess();
	FDracoProcess(const FDracoProcess&) = delete;
	FDracoProcess& operator=(const FDracoProcess&) = delete;

	/// Empty on failure; `OutWhy` then ends a sentence about the compressed primitive. `ExpectedVertices` bounds what
	/// is taken from the process: another number of vertices is a failure.
	std::optional<FDracoOutput> Decode(std::span<const std::byte> Compressed,
		std::span<const DracoProtocol::FAttribute> Attributes, std::uint32_t ExpectedVertices, std::string& OutWhy);

	/// The decoder's program: beside the library that this code is in.
	static std::string ProgramPath();

private:
	bool Start(std::string& OutWhy);
	void Stop();
	bool Send(std::span<const std::byte> Bytes);
	bool Receive(std::span<std::byte> Bytes);
	bool WaitFor(short Event) const;

	int Socket = -1;
	pid_t Child = -1;
	std::int64_t DeadlineMs = 0;
};

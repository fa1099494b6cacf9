// SPDX-License-Identifier: MIT
#include "SceneIO/DracoProcess.h"

#include "SceneIO/GltfStorage.h"
#include "SceneIO/SceneLimits.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace
{
std::int64_t NowMs()
{
	timespec Time = {};
	clock_gettime(CLOCK_MONOTONIC, &Time);
	return static_cast<std::int64_t>(Time.tv_sec) * 1000 + Time.tv_nsec / 1000000;
}

std::uint64_t OutputBytes(
	std::uint64_t Vertices, std::uint64_t Indices, std::span<const DracoProtocol::FAttribute> Attributes)
{
	std::uint64_t Sum = Indices * sizeof(std::uint32_t);
	for (const DracoProtocol::FAttribute& Attribute : Attributes)
	{
		Sum += Vertices * Attribute.Components * ComponentSize(static_cast<EGltfComponent>(Attribute.Component));
	}
	return Sum;
}

const char* Sentence(DracoProtocol::EStatus Status)
{
	switch (Status)
	{
	case DracoProtocol::EStatus::MissingAttribute:
		return "does not hold an attribute that the primitive says it does";
	case DracoProtocol::EStatus::TooLarge:
		return "unfolds to more than its limits allow";
	case DracoProtocol::EStatus::Damaged:
	case DracoProtocol::EStatus::Done:
		break;
	}
	return "holds compressed data that is damaged";
}

template <typename T>
std::span<const std::byte> BytesOf(const T& Value)
{
	return std::as_bytes(std::span(&Value, 1));
}
}

FDracoProcess::~FDracoProcess()
{
	Stop();
}

std::string FDracoProcess::ProgramPath()
{
	Dl_info Info = {};
	if (dladdr(reinterpret_cast<const void*>(&DracoProtocol::MaxAttributes), &Info) == 0 || Info.dli_fname == nullptr)
	{
		return "tarvin-draco";
	}
	char* const Resolved = realpath(Info.dli_fname, nullptr);
	std::string Path = Resolved == nullptr ? Info.dli_fname : Resolved;
	std::free(Resolved);
	const std::size_t Slash = Path.rfind('/');
	return Slash == std::string::npos ? "tarvin-draco" : Path.substr(0, Slash + 1) + "tarvin-draco";
}

bool FDracoProcess::Start(std::string& OutWhy)
{
	int Pair[2] = {-1, -1};
	if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, Pair) != 0)
	{
		OutWhy = std::string("could not be decompressed: ") + std::strerror(errno);
		return false;
	}
	posix_spawn_file_actions_t Actions;
	posix_spawn_file_actions_init(&Actions);
	posix_spawn_file_actions_adddup2(&Actions, Pair[1], STDIN_FILENO);
	posix_spawn_file_actions_addclosefrom_np(&Actions, STDERR_FILENO + 1);
	const std::string Program = ProgramPath();
	std::string Name = "tarvin-draco";
	char* const Arguments[] = {Name.data(), nullptr};
	const int Error = posix_spawn(&Child, Program.c_str(), &Actions, nullptr, Arguments, environ);
	posix_spawn_file_actions_destroy(&Actions);
	close(Pair[1]);
	if (Error != 0)
	{
		close(Pair[0]);
		Child = -1;
		OutWhy =
			"could not be decompressed: the program \"" + Program + "\" does not start (" + std::strerror(Error) + ")";
		return false;
	}
	Socket = Pair[0];
	return true;
}

void FDracoProcess::Stop()
{
	if (Socket >= 0)
	{
		close(Socket);
		Socket = -1;
	}
	if (Child > 0)
	{
		kill(Child, SIGKILL);
		while (waitpid(Child, nullptr, 0) < 0 && errno == EINTR)
		{
		}
		Child = -1;
	}
}

bool FDracoProcess::WaitFor(short Event) const
{
	while (true)
	{
		const std::int64_t Left = DeadlineMs - NowMs();
		if (Left <= 0)
		{
			return false;
		}
		pollfd Poll = {Socket, Event, 0};
		const int Ready = poll(&Poll, 1, static_cast<int>(Left));
		if (Ready > 0)
		{
			return true;
		}
		if (Ready == 0 || errno != EINTR)
		{
			return false;
		}
	}
}

bool FDracoProcess::Send(std::span<const std::byte> Bytes)
{
	while (!Bytes.empty())
	{
		// Without MSG_NOSIGNAL a process that died would take this one along.
		const ssize_t Sent = send(Socket, Bytes.data(), Bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
		if (Sent > 0)
		{
			Bytes = Bytes.subspan(static_cast<std::size_t>(Sent));
		}
		else if (errno != EINTR && (errno != EAGAIN || !WaitFor(POLLOUT)))
		{
			return false;
		}
	}
	return true;
}

bool FDracoProcess::Receive(std::span<std::byte> Bytes)
{
	while (!Bytes.empty())
	{
		const ssize_t Got = recv(Socket, Bytes.data(), Bytes.size(), MSG_DONTWAIT);
		if (Got > 0)
		{
			Bytes = Bytes.subspan(static_cast<std::size_t>(Got));
		}
		else if (Got == 0 || (errno != EINTR && (errno != EAGAIN || !WaitFor(POLLIN))))
		{
			return false;
		}
	}
	return true;
}

std::optional<FDracoOutput> FDracoProcess::Decode(std::span<const std::byte> Compressed,
	std::span<const DracoProtocol::FAttribute> Attributes, std::uint32_t ExpectedVertices, std::string& OutWhy)
{
	if (Compressed.size() > 0xFFFFFFFFu || Attributes.size() > DracoProtocol::MaxAttributes)
	{
		OutWhy = Sentence(DracoProtocol::EStatus::TooLarge);
		return std::nullopt;
	}
	if (Socket < 0 && !Start(OutWhy))
	{
		return std::nullopt;
	}
	DeadlineMs = NowMs() + static_cast<std::int64_t>(SceneLimits::DracoWallSeconds) * 1000;
	const DracoProtocol::FRequest Request = {
		static_cast<std::uint32_t>(Compressed.size()), static_cast<std::uint32_t>(Attributes.size())};
	DracoProtocol::FAnswer Answer;
	if (!Send(BytesOf(Request)) || !Send(std::as_bytes(Attributes)) || !Send(Compressed) ||
		!Receive(std::as_writable_bytes(std::span(&Answer, 1))))
	{
		Stop();
		OutWhy = "ended its decoder, which ran out of memory or time or failed";
		return std::nullopt;
	}
	if (Answer.Status != DracoProtocol::EStatus::Done)
	{
		OutWhy = Sentence(Answer.Status);
		return std::nullopt;
	}
	const bool bTooLarge = OutputBytes(Answer.Vertices, Answer.Indices, Attributes) > SceneLimits::DracoAddressSpace;
	if (bTooLarge || Answer.Vertices != ExpectedVertices)
	{
		Stop(); // with its answer unread
		OutWhy = bTooLarge ? Sentence(DracoProtocol::EStatus::TooLarge)
						   : "decompresses to " + std::to_string(Answer.Vertices) +
								 " vertices, but its accessors have " + std::to_string(ExpectedVertices);
		return std::nullopt;
	}
	FDracoOutput Out;
	Out.Vertices = Answer.Vertices;
	Out.Indices.resize(Answer.Indices);
	bool bReceived = Receive(std::as_writable_bytes(std::span(Out.Indices)));
	for (const DracoProtocol::FAttribute& Attribute : Attributes)
	{
		const std::size_t Size = std::size_t{Answer.Vertices} * Attribute.Components *
								 ComponentSize(static_cast<EGltfComponent>(Attribute.Component));
		Out.Attributes.push_back(std::make_shared<std::vector<std::byte>>(bReceived ? Size : 0));
		bReceived = bReceived && Receive(*Out.Attributes.back());
	}
	const bool bInRange = std::all_of(
		Out.Indices.begin(), Out.Indices.end(), [&Out](std::uint32_t Index) { return Index < Out.Vertices; });
	if (!bReceived || !bInRange)
	{
		Stop();
		OutWhy = Sentence(DracoProtocol::EStatus::Damaged);
		return std::nullopt;
	}
	return Out;
}

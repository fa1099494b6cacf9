// SPDX-License-Identifier: MIT
// Decodes Draco data for the scene reader, in a process of its own: see DracoProcess.h. It speaks over standard input,
// a socket, and ends when that is closed.
#include "SceneIO/DracoProtocol.h"
#include "SceneIO/SceneLimits.h"

#include <cstdlib>
#include <draco/compression/decode.h>
#include <memory>
#include <new>
#include <span>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>
#include <vector>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define TARVIN_ADDRESS_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__)
#define TARVIN_ADDRESS_SANITIZER 1
#endif

#if defined(TARVIN_ADDRESS_SANITIZER)
// The sanitizer needs address space without bounds, so that its own limits stand in for the system's.
extern "C" const char* __asan_default_options();
const char* __asan_default_options()
{
	return "max_allocation_size_mb=2048:hard_rss_limit_mb=4096:allocator_may_return_null=0:detect_leaks=0";
}
#endif

namespace
{
constexpr int Socket = STDIN_FILENO;

bool Receive(std::span<std::byte> Bytes)
{
	while (!Bytes.empty())
	{
		const ssize_t Got = recv(Socket, Bytes.data(), Bytes.size(), 0);
		if (Got <= 0)
		{
			return false;
		}
		Bytes = Bytes.subspan(static_cast<std::size_t>(Got));
	}
	return true;
}

bool Send(std::span<const std::byte> Bytes)
{
	while (!Bytes.empty())
	{
		const ssize_t Sent = send(Socket, Bytes.data(), Bytes.size(), MSG_NOSIGNAL);
		if (Sent <= 0)
		{
			return false;
		}
		Bytes = Bytes.subspan(static_cast<std::size_t>(Sent));
	}
	return true;
}

void LimitMemory()
{
#if !defined(TARVIN_ADDRESS_SANITIZER)
	const rlimit Limit = {SceneLimits::DracoAddressSpace, SceneLimits::DracoAddressSpace};
	setrlimit(RLIMIT_AS, &Limit);
#endif
	const rlimit NoCore = {0, 0};
	setrlimit(RLIMIT_CORE, &NoCore);
	std::set_new_handler([] { _exit(3); });
}

/// Allows each request its own share of processor time.
void LimitTime()
{
	rusage Used = {};
	getrusage(RUSAGE_SELF, &Used);
	rlimit Limit = {};
	getrlimit(RLIMIT_CPU, &Limit);
	const auto Seconds = static_cast<rlim_t>(Used.ru_utime.tv_sec + Used.ru_stime.tv_sec + 1);
	Limit.rlim_cur = Seconds + SceneLimits::DracoCpuSeconds;
	setrlimit(RLIMIT_CPU, &Limit);
}

template <typename T>
bool Extract(const draco::Mesh& Mesh, const draco::PointAttribute& Attribute, std::uint32_t Components,
	std::vector<std::byte>& Out)
{
	const std::size_t Stride = Components * sizeof(T);
	Out.resize(std::size_t{Mesh.num_points()} * Stride);
	for (draco::PointIndex Point(0); Point < Mesh.num_points(); ++Point)
	{
		const draco::AttributeValueIndex Value = Attribute.mapped_index(Point);
		T* const Place = reinterpret_cast<T*>(Out.data() + Point.value() * Stride);
		if (Value.value() >= Attribute.size() ||
			!Attribute.ConvertValue<T>(Value, static_cast<std::int8_t>(Components), Place))
		{
			return false;
		}
	}
	return true;
}

bool ExtractAny(const draco::Mesh& Mesh, const DracoProtocol::FAttribute& Wanted, std::vector<std::byte>& Out)
{
	const draco::PointAttribute* const Attribute = Mesh.GetAttributeByUniqueId(Wanted.UniqueId);
	if (Attribute == nullptr || Wanted.Components == 0 || Wanted.Components > 4 ||
		Attribute->num_components() != static_cast<int>(Wanted.Components))
	{
		return false;
	}
	switch (Wanted.Component)
	{
	case 5120:
		return Extract<std::int8_t>(Mesh, *Attribute, Wanted.Components, Out);
	case 5121:
		return Extract<std::uint8_t>(Mesh, *Attribute, Wanted.Components, Out);
	case 5122:
		return Extract<std::int16_t>(Mesh, *Attribute, Wanted.Components, Out);
	case 5123:
		return Extract<std::uint16_t>(Mesh, *Attribute, Wanted.Components, Out);
	case 5125:
		return Extract<std::uint32_t>(Mesh, *Attribute, Wanted.Components, Out);
	case 5126:
		return Extract<float>(Mesh, *Attribute, Wanted.Components, Out);
	default:
		return false;
	}
}

std::vector<std::uint32_t> ExtractIndices(const draco::Mesh& Mesh)
{
	std::vector<std::uint32_t> Out;
	Out.reserve(std::size_t{Mesh.num_faces()} * 3);
	for (draco::FaceIndex Face(0); Face < Mesh.num_faces(); ++Face)
	{
		for (int Corner = 0; Corner < 3; ++Corner)
		{
			Out.push_back(Mesh.face(Face)[static_cast<std::size_t>(Corner)].value());
		}
	}
	return Out;
}

bool Answer(DracoProtocol::EStatus Status)
{
	const DracoProtocol::FAnswer Failure = {Status, 0, 0};
	return Send(std::as_bytes(std::span(&Failure, 1)));
}

bool Serve(std::span<const std::byte> Compressed, std::span<const DracoProtocol::FAttribute> Wanted)
{
	draco::DecoderBuffer Buffer;
	Buffer.Init(reinterpret_cast<const char*>(Compressed.data()), Compressed.size());
	draco::Decoder Decoder;
	draco::StatusOr<std::unique_ptr<draco::Mesh>> Decoded = Decoder.DecodeMeshFromBuffer(&Buffer);
	if (!Decoded.ok() || Decoded.value() == nullptr)
	{
		return Answer(DracoProtocol::EStatus::Damaged);
	}
	const draco::Mesh& Mesh = *Decoded.value();
	if (std::uint64_t{Mesh.num_faces()} * 3 > 0xFFFFFFFFu)
	{
		return Answer(DracoProtocol::EStatus::TooLarge);
	}
	const std::vector<std::uint32_t> Indices = ExtractIndices(Mesh);
	std::vector<std::vector<std::byte>> Attributes(Wanted.size());
	for (std::size_t I = 0; I < Wanted.size(); ++I)
	{
		if (!ExtractAny(Mesh, Wanted[I], Attributes[I]))
		{
			return Answer(DracoProtocol::EStatus::MissingAttribute);
		}
	}
	const DracoProtocol::FAnswer Done = {
		DracoProtocol::EStatus::Done, Mesh.num_points(), static_cast<std::uint32_t>(Indices.size())};
	bool bSent = Send(std::as_bytes(std::span(&Done, 1))) && Send(std::as_bytes(std::span(Indices)));
	for (const std::vector<std::byte>& Attribute : Attributes)
	{
		bSent = bSent && Send(Attribute);
	}
	return bSent;
}

bool ServeNext()
{
	DracoProtocol::FRequest Request;
	if (!Receive(std::as_writable_bytes(std::span(&Request, 1))) || Request.Attributes > DracoProtocol::MaxAttributes)
	{
		return false;
	}
	LimitTime();
	std::vector<DracoProtocol::FAttribute> Attributes(Request.Attributes);
	std::vector<std::byte> Compressed(Request.Bytes);
	return Receive(std::as_writable_bytes(std::span(Attributes))) && Receive(Compressed) &&
		   Serve(Compressed, Attributes);
}
}

int main()
{
	LimitMemory();
	while (ServeNext())
	{
	}
	return 0;
}

// SPDX-License-Identifier: MIT
#include "SceneIO/GltfExtensions.h"
#include "SceneIO/GltfReader.h"
#include "SceneIO/SceneUri.h"

namespace
{
/// Walks the document once, knowing of each value whether it lies in `extras` or in an extension that is not
/// understood.
class FReferenceWalk
{
public:
	explicit FReferenceWalk(FGltfReader& InReader)
		: Reader(InReader)
		, Json(InReader.Json)
	{
	}

	void Run() { Object(Json.Root()); }

private:
	void Value(FJsonIndex At)
	{
		if (Json.IsObject(At))
		{
			Object(At);
		}
		for (const FJsonIndex Element : Json.Elements(At))
		{
			Value(Element);
		}
	}

	void Object(FJsonIndex At)
	{
		for (const FJsonMember& Member : Json.Members(At))
		{
			if (Json.StringEquals(Member.Key, "extras"))
			{
				Extras(Member.Value);
			}
			else if (Json.StringEquals(Member.Key, "extensions"))
			{
				Extensions(Member.Value);
			}
			else
			{
				NoteFile(Member);
				Value(Member.Value);
			}
		}
	}

	void Extensions(FJsonIndex At)
	{
		for (const FJsonMember& Member : Json.Members(At))
		{
			if (!GltfExtensions::HasKnownReferences(*Json.String(Member.Key)))
			{
				NoteNumbers(Member.Value);
			}
			Value(Member.Value);
		}
	}

	/// Any whole number in what is not understood may be an index of an accessor or of a buffer view.
	void NoteNumbers(FJsonIndex At)
	{
		for (FJsonIndex I = At; I < Json.End(At); ++I)
		{
			if (const std::optional<std::uint64_t> Index = Json.Unsigned(I))
			{
				Mark(Reader.Model.AccessorsSeenByUnknown, *Index);
				Mark(Reader.Model.ViewsSeenByUnknown, *Index);
			}
		}
	}

	/// Numbers in extras are mostly just numbers; what is called an accessor or a buffer view is taken at its word.
	void Extras(FJsonIndex At)
	{
		for (FJsonIndex I = At; I + 1 < Json.End(At); ++I)
		{
			if (Json.IsString(I))
			{
				const std::string_view Key = Json.Raw(I);
				const std::optional<std::uint64_t> Index = Json.Unsigned(I + 1);
				if (Index && Key.find("ccessor") != std::string_view::npos)
				{
					Mark(Reader.Model.AccessorsSeenByUnknown, *Index);
				}
				if (Index && Key.find("ufferView") != std::string_view::npos)
				{
					Mark(Reader.Model.ViewsSeenByUnknown, *Index);
				}
			}
		}
	}

	static void Mark(std::vector<bool>& List, std::uint64_t Index)
	{
		if (Index < List.size())
		{
			List[static_cast<std::size_t>(Index)] = true;
		}
	}

	void NoteFile(const FJsonMember& Member)
	{
		if (Json.StringEquals(Member.Key, "uri") && Json.IsString(Member.Value))
		{
			// Embedded images may be large: only what can be a path is unescaped.
			if (Json.Raw(Member.Value).starts_with("\"data:"))
			{
				return;
			}
			const std::string Uri = *Json.String(Member.Value);
			const SceneUri::FTarget Target = SceneUri::Parse(Uri);
			if (Target.Kind == SceneUri::EKind::Relative)
			{
				Reader.Model.Files.push_back({Member.Value, Target.Path});
			}
		}
	}

	FGltfReader& Reader;
	const FJsonText& Json;
};
}

bool ReadGltfReferences(FGltfReader& Reader)
{
	Reader.Model.AccessorsSeenByUnknown.assign(Reader.Model.Accessors.size(), false);
	Reader.Model.ViewsSeenByUnknown.assign(Reader.Model.BufferViews.size(), false);
	FReferenceWalk(Reader).Run();
	return true;
}

// SPDX-License-Identifier: MIT
#include "SceneIO/GltfExtensions.h"
#include "SceneIO/GltfReader.h"
#include "SceneIO/PrintableText.h"

namespace
{
/// Readers differ in which of two members of one name they believe, so that such a file has no one meaning. What stands
/// in `extras` is the author's own and has none here.
bool CheckKeysAreUnique(FGltfReader& Reader)
{
	const FJsonText& Json = Reader.Json;
	const FJsonIndex Last = Json.End(Json.Root());
	std::vector<bool> bExtras(Last);
	for (FJsonIndex Value = 0; Value < Last;)
	{
		if (bExtras[Value])
		{
			Value = Json.End(Value);
			continue;
		}
		if (Json.IsObject(Value))
		{
			if (const std::optional<FJsonIndex> Key = Json.DuplicateKey(Value))
			{
				return Reader.FailMember(Value, *Json.String(*Key), "stands there twice");
			}
			const FJsonIndex Extras = Json.Find(Value, "extras");
			if (Extras != NoJson)
			{
				bExtras[Extras] = true;
			}
		}
		++Value;
	}
	return true;
}

bool CheckVersion(FGltfReader& Reader, FJsonIndex Asset)
{
	std::string Version;
	if (!Reader.Required(Asset, "version") || !Reader.String(Asset, "version", Version))
	{
		return false;
	}
	const std::size_t Dot = Version.find('.');
	const std::string_view Minor = Dot == std::string::npos ? "" : std::string_view(Version).substr(Dot + 1);
	const bool bWellFormed = Dot != std::string::npos && Dot > 0 && !Minor.empty() &&
							 Version.find_first_not_of("0123456789.") == std::string::npos &&
							 Minor.find('.') == std::string_view::npos;
	if (!bWellFormed)
	{
		return Reader.FailMember(Asset, "version", "is \"" + PrintableText(Version) + "\", which is no version");
	}
	// Minor versions are compatible both ways by the format's own rule.
	return Version.substr(0, Dot) == "2" ||
		   Reader.FailMember(Asset, "version", "is " + Version + ", but only version 2 can be read");
}

bool CheckRequiredExtensions(FGltfReader& Reader)
{
	const FJsonIndex Root = Reader.Json.Root();
	if (!Reader.Strings(Root, "extensionsUsed", Reader.Model.ExtensionsUsed) ||
		!Reader.Strings(Root, "extensionsRequired", Reader.Model.ExtensionsRequired))
	{
		return false;
	}
	for (const std::string& Name : Reader.Model.ExtensionsRequired)
	{
		if (!GltfExtensions::CanBeRequired(Name))
		{
			return Reader.FailMember(Root, "extensionsRequired",
				"asks for the extension " + PrintableText(Name) + ", which is not supported");
		}
	}
	Reader.Model.RootExtensionNames = Reader.ExtensionNames(Root);
	return true;
}
}

bool ReadGltfAsset(FGltfReader& Reader)
{
	const FJsonIndex Root = Reader.Json.Root();
	if (!Reader.Json.IsObject(Root))
	{
		return Reader.Fail(Root, "is not an object");
	}
	FJsonIndex Asset = NoJson;
	if (!CheckKeysAreUnique(Reader) || !Reader.Required(Root, "asset") || !Reader.ObjectMember(Root, "asset", Asset) ||
		!CheckVersion(Reader, Asset))
	{
		return false;
	}
	Reader.Model.Generator = Reader.Json.String(Reader.Json.Find(Asset, "generator")).value_or(std::string());
	return CheckRequiredExtensions(Reader);
}

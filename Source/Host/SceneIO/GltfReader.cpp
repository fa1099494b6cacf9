// SPDX-License-Identifier: MIT
#include "SceneIO/GltfReader.h"

#include "SceneIO/PrintableText.h"

FGltfReader::FGltfReader(const FJsonText& InJson, std::string InFileName, FGltfModel& InModel)
	: Json(InJson)
	, Model(InModel)
	, FileName(std::move(InFileName))
{
}

FSceneError FGltfReader::MakeError(const std::string& Pointer, const std::string& Why) const
{
	return FSceneError{"Cannot read \"" + PrintableText(FileName) +
					   "\": " + (Pointer.empty() ? "/" : PrintableText(Pointer)) + " " + Why + "."};
}

bool FGltfReader::Fail(FJsonIndex At, const std::string& Why)
{
	if (!FirstError)
	{
		FirstError = MakeError(Json.Pointer(At), Why);
	}
	return false;
}

bool FGltfReader::FailMember(FJsonIndex Object, std::string_view Key, const std::string& Why)
{
	if (!FirstError)
	{
		FirstError = MakeError(Json.Pointer(Object) + "/" + JsonPointerToken(Key), Why);
	}
	return false;
}

FSceneError FGltfReader::TakeError()
{
	return FirstError.value_or(MakeError("", "could not be read"));
}

bool FGltfReader::Required(FJsonIndex Object, std::string_view Key)
{
	return Json.Find(Object, Key) != NoJson || FailMember(Object, Key, "is missing");
}

bool FGltfReader::Bool(FJsonIndex Object, std::string_view Key, bool& Out)
{
	const FJsonIndex Value = Json.Find(Object, Key);
	if (Value == NoJson)
	{
		return true;
	}
	const std::optional<bool> Read = Json.Bool(Value);
	Out = Read.value_or(Out);
	return Read.has_value() || Fail(Value, "is neither true nor false");
}

bool FGltfReader::Unsigned(FJsonIndex Object, std::string_view Key, std::uint64_t& Out)
{
	const FJsonIndex Value = Json.Find(Object, Key);
	if (Value == NoJson)
	{
		return true;
	}
	const std::optional<std::uint64_t> Read = Json.Unsigned(Value);
	Out = Read.value_or(Out);
	return Read.has_value() || Fail(Value, "is not a whole number from 0 to 2^53");
}

bool FGltfReader::Number(FJsonIndex Object, std::string_view Key, double& Out)
{
	const FJsonIndex Value = Json.Find(Object, Key);
	if (Value == NoJson)
	{
		return true;
	}
	const std::optional<double> Read = Json.Number(Value);
	Out = Read.value_or(Out);
	return Read.has_value() || Fail(Value, Json.IsNumber(Value) ? "is too large a number" : "is not a number");
}

bool FGltfReader::Numbers(FJsonIndex Object, std::string_view Key, std::span<double> Out)
{
	const FJsonIndex Array = Json.Find(Object, Key);
	if (Array == NoJson)
	{
		return true;
	}
	if (!Json.IsArray(Array) || Json.Count(Array) != Out.size())
	{
		return Fail(Array, "is not an array of " + std::to_string(Out.size()) + " numbers");
	}
	std::size_t I = 0;
	for (const FJsonIndex Element : Json.Elements(Array))
	{
		const std::optional<double> Read = Json.Number(Element);
		if (!Read)
		{
			return Fail(Element, Json.IsNumber(Element) ? "is too large a number" : "is not a number");
		}
		Out[I++] = *Read;
	}
	return true;
}

bool FGltfReader::String(FJsonIndex Object, std::string_view Key, std::string& Out)
{
	const FJsonIndex Value = Json.Find(Object, Key);
	if (Value == NoJson)
	{
		return true;
	}
	std::optional<std::string> Read = Json.String(Value);
	if (!Read)
	{
		return Fail(Value, "is not a string");
	}
	Out = std::move(*Read);
	return true;
}

std::string FGltfReader::Name(FJsonIndex Object) const
{
	return Json.String(Json.Find(Object, "name")).value_or(std::string());
}

bool FGltfReader::Index(
	FJsonIndex Object, std::string_view Key, std::size_t Count, std::string_view Of, FGltfIndex& Out)
{
	const FJsonIndex Value = Json.Find(Object, Key);
	return Value == NoJson || IndexValue(Value, Count, Of, Out);
}

bool FGltfReader::IndexValue(FJsonIndex Value, std::size_t Count, std::string_view Of, FGltfIndex& Out)
{
	const std::optional<std::uint64_t> Read = Json.Unsigned(Value);
	if (!Read)
	{
		return Fail(Value, "is not an index");
	}
	if (*Read >= Count)
	{
		return Fail(
			Value, "is " + std::to_string(*Read) + ", but there are " + std::to_string(Count) + " " + std::string(Of));
	}
	Out = static_cast<FGltfIndex>(*Read);
	return true;
}

bool FGltfReader::Indices(
	FJsonIndex Object, std::string_view Key, std::size_t Count, std::string_view Of, std::vector<FGltfIndex>& Out)
{
	FJsonIndex Array = NoJson;
	if (!ArrayMember(Object, Key, Array))
	{
		return false;
	}
	for (const FJsonIndex Element : Json.Elements(Array))
	{
		if (!IndexValue(Element, Count, Of, Out.emplace_back(NoIndex)))
		{
			return false;
		}
	}
	return true;
}

bool FGltfReader::Strings(FJsonIndex Object, std::string_view Key, std::vector<std::string>& Out)
{
	FJsonIndex Array = NoJson;
	if (!ArrayMember(Object, Key, Array))
	{
		return false;
	}
	for (const FJsonIndex Element : Json.Elements(Array))
	{
		std::optional<std::string> Read = Json.String(Element);
		if (!Read)
		{
			return Fail(Element, "is not a string");
		}
		Out.push_back(std::move(*Read));
	}
	return true;
}

bool FGltfReader::ObjectMember(FJsonIndex Object, std::string_view Key, FJsonIndex& Out)
{
	Out = Json.Find(Object, Key);
	return Out == NoJson || Json.IsObject(Out) || Fail(Out, "is not an object");
}

bool FGltfReader::ArrayMember(FJsonIndex Object, std::string_view Key, FJsonIndex& Out)
{
	Out = Json.Find(Object, Key);
	return Out == NoJson || Json.IsArray(Out) || Fail(Out, "is not an array");
}

bool FGltfReader::Objects(FJsonIndex Object, std::string_view Key, std::vector<FJsonIndex>& Out)
{
	FJsonIndex Array = NoJson;
	if (!ArrayMember(Object, Key, Array))
	{
		return false;
	}
	Out = Json.Elements(Array);
	for (const FJsonIndex Element : Out)
	{
		if (!Json.IsObject(Element))
		{
			return Fail(Element, "is not an object");
		}
	}
	return true;
}

bool FGltfReader::Extension(FJsonIndex Object, std::string_view Name, FJsonIndex& Out)
{
	FJsonIndex Extensions = NoJson;
	Out = NoJson;
	return ObjectMember(Object, "extensions", Extensions) &&
		   (Extensions == NoJson || ObjectMember(Extensions, Name, Out));
}

std::vector<std::string> FGltfReader::ExtensionNames(FJsonIndex Object) const
{
	std::vector<std::string> Out;
	for (const FJsonMember& Member : Json.Members(Json.Find(Object, "extensions")))
	{
		Out.push_back(*Json.String(Member.Key));
	}
	return Out;
}

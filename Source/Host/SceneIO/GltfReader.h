// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfModel.h"
#include "SceneIO/JsonText.h"
#include "SceneIO/SceneResult.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Takes typed values out of a JSON text. Every function returns false, and remembers the first reason as a sentence
/// with the file and the JSON pointer, where a value is not what it must be. An absent member leaves the output as it
/// was.
class FGltfReader
{
public:
	FGltfReader(const FJsonText& InJson, std::string InFileName, FGltfModel& InModel);

	const FJsonText& Json;
	FGltfModel& Model;

	/// Remembers that what stands at `At` is wrong; returns false. `Why` ends a sentence.
	bool Fail(FJsonIndex At, const std::string& Why);
	/// As Fail, for the member `Key` of `Object`, present or not.
	bool FailMember(FJsonIndex Object, std::string_view Key, const std::string& Why);
	FSceneError TakeError();

	bool Required(FJsonIndex Object, std::string_view Key);
	bool Bool(FJsonIndex Object, std::string_view Key, bool& Out);
	bool Unsigned(FJsonIndex Object, std::string_view Key, std::uint64_t& Out);
	bool Number(FJsonIndex Object, std::string_view Key, double& Out);
	/// An array of exactly Out.size() numbers.
	bool Numbers(FJsonIndex Object, std::string_view Key, std::span<double> Out);
	bool String(FJsonIndex Object, std::string_view Key, std::string& Out);
	/// A name that is no string counts as absent: it is shown, never relied on.
	std::string Name(FJsonIndex Object) const;
	/// An index below `Count`; `Of` names the list in the plural ("meshes").
	bool Index(FJsonIndex Object, std::string_view Key, std::size_t Count, std::string_view Of, FGltfIndex& Out);
	bool IndexValue(FJsonIndex Value, std::size_t Count, std::string_view Of, FGltfIndex& Out);
	bool Indices(
		FJsonIndex Object, std::string_view Key, std::size_t Count, std::string_view Of, std::vector<FGltfIndex>& Out);
	bool Strings(FJsonIndex Object, std::string_view Key, std::vector<std::string>& Out);

	/// The member as an object (or array); NoJson where it is absent. False where it is something else.
	bool ObjectMember(FJsonIndex Object, std::string_view Key, FJsonIndex& Out);
	bool ArrayMember(FJsonIndex Object, std::string_view Key, FJsonIndex& Out);
	/// The elements of an array of objects under `Key`; none where it is absent.
	bool Objects(FJsonIndex Object, std::string_view Key, std::vector<FJsonIndex>& Out);

	/// The object of one extension; NoJson where it is absent. False where it is no object.
	bool Extension(FJsonIndex Object, std::string_view Name, FJsonIndex& Out);
	std::vector<std::string> ExtensionNames(FJsonIndex Object) const;

private:
	FSceneError MakeError(const std::string& Pointer, const std::string& Why) const;

	std::string FileName;
	std::optional<FSceneError> FirstError;
};

/// The parts of a document, in the order in which they may be read: each checks its indices against what was read
/// before.
bool ReadGltfAsset(FGltfReader& Reader);
bool ReadGltfStorage(FGltfReader& Reader, bool bHasChunk);
bool ReadGltfNamed(FGltfReader& Reader);
bool ReadGltfMeshes(FGltfReader& Reader);
bool ReadGltfShapes(FGltfReader& Reader);
bool ReadGltfNodes(FGltfReader& Reader);
bool ReadGltfRigidBody(FGltfReader& Reader, FJsonIndex Object, FGltfRigidBody& Out);
bool ReadGltfAnimations(FGltfReader& Reader);
/// Notes external files, and what extensions that are not understood may refer to.
bool ReadGltfReferences(FGltfReader& Reader);

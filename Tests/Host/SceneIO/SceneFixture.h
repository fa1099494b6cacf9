// SPDX-License-Identifier: MIT
#pragma once

#include "Support/EditorFixture.h"

#include "SceneIO/Scene.h"

#include <filesystem>
#include <memory>
#include <string>

/// An editor, and a folder for scene files, for the length of one test.
class FSceneFixture : public FEditorFixture
{
protected:
	FSceneFixture();
	~FSceneFixture() override;

	std::string Path(const char* Name) const { return (Folder / Name).string(); }

	/// Writes a scene of the members at the root beside "asset", and loads it; fails the test where that is refused.
	std::unique_ptr<FScene> Load(const std::string& Members);

	/// Loads a file of the folder; fails the test where that is refused.
	std::unique_ptr<FScene> LoadFile(const char* Name);

	/// The sentence with which such a scene is refused; empty where it is not.
	std::string LoadError(const std::string& Members);

	/// Saves as "copy.gltf" and returns the members at the root beside "asset"; fails the test where that is refused.
	std::string Save(const FScene& Scene);

	/// The sentence with which a save is refused; empty where it is not.
	std::string SaveError(const FScene& Scene);

	static std::string ReadAll(const std::string& FilePath);

private:
	std::filesystem::path Folder;
};

/// A mesh whose accessor has no buffer view: three vertices at the origin. For the start of `Members`.
extern const std::string ThreeVertices;
extern const std::string OneMesh;

// SPDX-License-Identifier: MIT
#include "SceneFixture.h"

#include "SceneIO/SceneWriter.h"

#include <fstream>
#include <sstream>
#include <unistd.h>

const std::string ThreeVertices =
	R"("accessors":[{"componentType":5126,"count":3,"type":"VEC3","min":[0,0,0],"max":[0,0,0]}],)";
const std::string OneMesh =
	ThreeVertices + R"("meshes":[{"name":"Rock","primitives":[{"attributes":{"POSITION":0}}]}],)";

namespace
{
const std::string Begin = R"({"asset":{"version":"2.0"},)";
}

FSceneFixture::FSceneFixture()
	: Folder(std::filesystem::temp_directory_path() / ("tarvin-scene-" + std::to_string(getpid())))
{
	std::filesystem::create_directories(Folder);
}

FSceneFixture::~FSceneFixture()
{
	std::filesystem::remove_all(Folder);
}

std::unique_ptr<FScene> FSceneFixture::Load(const std::string& Members)
{
	std::ofstream(Path("scene.gltf")) << Begin << Members << "}";
	return LoadFile("scene.gltf");
}

std::unique_ptr<FScene> FSceneFixture::LoadFile(const char* Name)
{
	TSceneResult<std::unique_ptr<FScene>> Scene = FScene::Load(Path(Name), World());
	EXPECT_TRUE(Scene.IsOk()) << (Scene ? "" : Scene.Error().Message);
	return Scene ? Scene.Take() : nullptr;
}

std::string FSceneFixture::LoadError(const std::string& Members)
{
	std::ofstream(Path("scene.gltf")) << Begin << Members << "}";
	TSceneResult<std::unique_ptr<FScene>> Scene = FScene::Load(Path("scene.gltf"), World());
	return Scene ? std::string() : Scene.Error().Message;
}

std::string FSceneFixture::Save(const FScene& Scene)
{
	const TSceneResult<FSaveReport> Saved = SaveScene(Scene, Path("copy.gltf"));
	EXPECT_TRUE(Saved.IsOk()) << (Saved ? "" : Saved.Error().Message);
	const std::string Text = ReadAll(Path("copy.gltf"));
	EXPECT_TRUE(Text.starts_with(Begin)) << Text;
	return Saved ? Text.substr(Begin.size(), Text.size() - Begin.size() - 1) : std::string();
}

std::string FSceneFixture::SaveError(const FScene& Scene)
{
	const TSceneResult<FSaveReport> Saved = SaveScene(Scene, Path("copy.gltf"));
	return Saved ? std::string() : Saved.Error().Message;
}

std::string FSceneFixture::ReadAll(const std::string& FilePath)
{
	std::ostringstream Content;
	Content << std::ifstream(FilePath).rdbuf();
	return Content.str();
}

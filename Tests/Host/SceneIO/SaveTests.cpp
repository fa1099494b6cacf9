// SPDX-License-Identifier: MIT
#include "SceneIO/GltfSave.h"

#include "SceneIO/AtomicFile.h"
#include "SceneText.h"

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;

namespace
{
FSaveReport Saved(const FGltfPatch& Patch, const std::string& Path)
{
	const TSceneResult<FSaveReport> Report = SaveGltf(Patch, Path);
	if (!Report)
	{
		ADD_FAILURE() << Report.Error().Message;
		return {};
	}
	return *Report;
}

std::string SaveRefusal(const FGltfPatch& Patch, const std::string& Path)
{
	const TSceneResult<FSaveReport> Report = SaveGltf(Patch, Path);
	return Report ? "saved" : Report.Error().Message;
}

std::string Replaced(std::string Text, const std::string& Old, const std::string& New)
{
	return Text.replace(Text.find(Old), Old.size(), New);
}
}

TEST(Save, WithoutEditsGivesTheSameBytes)
{
	const FTempFolder Folder;
	const FTempFolder Other;
	const FSceneText Scene = TriangleScene();
	Scene.WriteText(Folder, "a.gltf");
	Scene.WriteEmbedded(Folder, "b.gltf");
	Scene.WriteBinary(Folder, "c.glb");
	Folder.Write("d.glb", BinaryScene("{\"asset\":{\"version\":\"2.0\"}}", "") + "bytes behind the end");
	Folder.Write("e.gltf", "\xEF\xBB\xBF {\"asset\":\r\n{\"version\":\"2.0\"},\"extras\":1.50e+3} \n");
	for (const std::string Name : {"a.gltf", "b.gltf", "c.glb", "d.glb", "e.gltf"})
	{
		Saved(FGltfPatch(MustLoad(Folder.Path(Name))), Other.Path(Name));
		EXPECT_EQ(Other.Read(Name), Folder.Read(Name)) << Name;
	}
	EXPECT_EQ(Other.Read("scene.bin"), Folder.Read("scene.bin"));
}

TEST(Save, WithoutEditsLeavesTheSameFileAlone)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteText(Folder);
	const std::optional<FFileState> Before = ReadFileState(Path);
	EXPECT_FALSE(Saved(FGltfPatch(MustLoad(Path)), Path).bWritten);
	EXPECT_EQ(ReadFileState(Path), Before);
}

TEST(Save, ChunksThatAreNotUnderstoodAndBytesBehindTheEndAreKept)
{
	const FTempFolder Folder;
	FSceneText Scene = TriangleScene();
	std::string Bytes = BinaryScene(Scene.Text("chunk"), Scene.Bytes) + std::string("\x04\0\0\0XYZWxyzw", 12);
	const auto Length = static_cast<std::uint32_t>(Bytes.size());
	Bytes.replace(8, 4, reinterpret_cast<const char*>(&Length), 4);
	const std::string Path = Folder.Write("scene.glb", Bytes + "tail");
	Saved(MovedTriangle(Path), Path);
	const std::string After = Folder.Read("scene.glb");
	EXPECT_EQ(After.substr(After.size() - 16), std::string("\x04\0\0\0XYZWxyzwtail", 16));
	EXPECT_EQ(MustLoad(Path)->File().Chunks.size(), 2u);
}

TEST(Save, IntoAnotherFolderTakesTheNamedFilesAlong)
{
	const FTempFolder Folder;
	const FTempFolder Other;
	FSceneText Scene = TriangleScene();
	Scene.Root = ",\"images\":[{\"uri\":\"textures/a%20b.png\"},{\"uri\":\"gone.png\"}]";
	Folder.Write("textures/a b.png", "picture");
	const std::string Path = Scene.WriteText(Folder);
	const FSaveReport Report = Saved(FGltfPatch(MustLoad(Path)), Other.Path("scene.gltf"));
	EXPECT_THAT(Other.Names(), ElementsAre("scene.bin", "scene.gltf", "textures/a b.png"));
	EXPECT_EQ(Other.Read("textures/a b.png"), "picture");
	EXPECT_EQ(Other.Read("scene.gltf"), Folder.Read("scene.gltf"));
	EXPECT_THAT(Report.FilesMissing, ElementsAre("gone.png"));
}

TEST(Save, NeverWritesOverAFileWithOtherContent)
{
	const FTempFolder Folder;
	const FTempFolder Other;
	FSceneText Scene = TriangleScene();
	Scene.Root = ",\"images\":[{\"uri\":\"a.png\"}]";
	Folder.Write("a.png", "picture");
	Other.Write("a.png", "another picture");
	Other.Write("scene.bin", "another buffer");
	const std::string Path = Scene.WriteText(Folder);
	Saved(FGltfPatch(MustLoad(Path)), Other.Path("scene.gltf"));
	EXPECT_EQ(Other.Read("a.png"), "another picture");
	EXPECT_EQ(Other.Read("scene.bin"), "another buffer");
	EXPECT_EQ(Other.Read("a-1.png"), "picture");
	EXPECT_EQ(Other.Read("scene-1.bin"), Scene.Bytes);
	EXPECT_EQ(Other.Read("scene.gltf"),
		Replaced(Replaced(Folder.Read("scene.gltf"), "\"a.png\"", "\"a-1.png\""), "\"scene.bin\"", "\"scene-1.bin\""));
}

TEST(Save, TheSameSaveTwiceWritesTheSameFiles)
{
	const FTempFolder Folder;
	const FTempFolder Other;
	const std::string Path = TriangleScene().WriteText(Folder);
	Saved(MovedTriangle(Path), Other.Path("out.gltf"));
	const std::vector<std::string> Names = Other.Names();
	EXPECT_TRUE(Saved(MovedTriangle(Path), Other.Path("out.gltf")).FilesWritten.empty());
	EXPECT_EQ(Other.Names(), Names);
}

TEST(Save, KeepsPermissionsAndSymbolicLinks)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteBinary(Folder);
	std::filesystem::permissions(Path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
	std::filesystem::create_symlink("scene.glb", Folder.Path("link.glb"));
	Saved(MovedTriangle(Folder.Path("link.glb")), Folder.Path("link.glb"));
	EXPECT_TRUE(std::filesystem::is_symlink(Folder.Path("link.glb")));
	EXPECT_FALSE(std::filesystem::is_symlink(Path));
	EXPECT_EQ(std::filesystem::status(Path).permissions(),
		std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST(Save, DoesNotChangeTheContainer)
{
	const FTempFolder Folder;
	const FGltfPatch Patch(MustLoad(TriangleScene().WriteText(Folder)));
	EXPECT_THAT(SaveRefusal(Patch, Folder.Path("scene.glb")), HasSubstr("a save does not change the container"));
	EXPECT_THAT(Folder.Names(), ElementsAre("scene.bin", "scene.gltf"));
}

TEST(Save, IntoAFolderThatIsNotThereFails)
{
	const FTempFolder Folder;
	const FGltfPatch Patch(MustLoad(TriangleScene().WriteText(Folder)));
	EXPECT_THAT(SaveRefusal(Patch, Folder.Path("none/scene.gltf")), HasSubstr("its folder does not exist"));
}

TEST(Save, ASourceThatChangedOnDiskIsNotSaved)
{
	const FTempFolder Folder;
	const std::string Path = TriangleScene().WriteText(Folder);
	const FGltfPatch Patch = MovedTriangle(Path);
	Folder.Write("scene.bin", "shorter");
	EXPECT_THAT(SaveRefusal(Patch, Path), HasSubstr("the file changed on disk since it was read"));
	EXPECT_THAT(Folder.Names(), ElementsAre("scene.bin", "scene.gltf"));
}

TEST(Save, FoldersThatAreSymbolicLinksAreNotWrittenThrough)
{
	const FTempFolder Folder;
	const FTempFolder Other;
	const FTempFolder Elsewhere;
	FSceneText Scene = TriangleScene();
	Scene.Root = ",\"images\":[{\"uri\":\"textures/a.png\"}]";
	Folder.Write("textures/a.png", "picture");
	std::filesystem::create_directory_symlink(Elsewhere.Path(), Other.Path("textures"));
	const FGltfPatch Patch(MustLoad(Scene.WriteText(Folder)));
	EXPECT_THAT(
		SaveRefusal(Patch, Other.Path("scene.gltf")), HasSubstr("a folder on the way is no folder or a symbolic link"));
	EXPECT_TRUE(Elsewhere.Names().empty());
	EXPECT_TRUE(std::filesystem::is_empty(Elsewhere.Path()));
	EXPECT_FALSE(std::filesystem::exists(Other.Path("scene.gltf")));
	EXPECT_FALSE(std::filesystem::exists(Other.Path("scene.bin")));
}

TEST(Save, ADiskThatTakesNoMoreLeavesTheOldFileAndNothingElse)
{
	const FTempFolder Folder;
	FSceneText Scene = TriangleScene();
	Scene.AddView(std::string(200'000, 'x'));
	const std::string Path = Scene.WriteText(Folder);
	const std::string Before = Folder.Read("scene.gltf");
	const FGltfPatch Patch = MovedTriangle(Path);
	// A limit on the size of files stands in for a full disk: writing fails in the same way.
	rlimit Old = {};
	getrlimit(RLIMIT_FSIZE, &Old);
	const rlimit Small = {100'000, Old.rlim_max};
	signal(SIGXFSZ, SIG_IGN);
	setrlimit(RLIMIT_FSIZE, &Small);
	const std::string Refusal = SaveRefusal(Patch, Path);
	setrlimit(RLIMIT_FSIZE, &Old);
	EXPECT_EQ(Refusal, "Cannot write \"" + Folder.Path("scene-1.bin") + "\": File too large.");
	EXPECT_EQ(Folder.Read("scene.gltf"), Before);
	EXPECT_THAT(Folder.Names(), ElementsAre("scene.bin", "scene.gltf"));
}

TEST(AtomicFile, ReplacesOnlyWhenTold)
{
	const FTempFolder Folder;
	Folder.Write("a", "old");
	{
		FAtomicFile File;
		ASSERT_TRUE(File.Create(Folder.Path(), "a", 3).IsOk());
		ASSERT_TRUE(File.Write(AsBytes("new")).IsOk());
	}
	EXPECT_EQ(Folder.Read("a"), "old");
	FAtomicFile File;
	ASSERT_TRUE(File.Create(Folder.Path(), "a", 3).IsOk());
	ASSERT_TRUE(File.Write(AsBytes("new")).IsOk());
	ASSERT_TRUE(File.Replace().IsOk());
	EXPECT_EQ(Folder.Read("a"), "new");
	EXPECT_THAT(Folder.Names(), ElementsAre("a"));
}

TEST(AtomicFile, ANewFileNeverTakesThePlaceOfAnother)
{
	const FTempFolder Folder;
	Folder.Write("a", "old");
	FAtomicFile File;
	bool bExists = false;
	ASSERT_TRUE(File.Create(Folder.Path(), "a", 0).IsOk());
	ASSERT_TRUE(File.Write(AsBytes("new")).IsOk());
	ASSERT_TRUE(File.PutNew(bExists).IsOk());
	EXPECT_TRUE(bExists);
	EXPECT_EQ(Folder.Read("a"), "old");
	FAtomicFile Free;
	ASSERT_TRUE(Free.Create(Folder.Path(), "b", 0).IsOk());
	ASSERT_TRUE(Free.PutNew(bExists).IsOk());
	EXPECT_FALSE(bExists);
	EXPECT_THAT(Folder.Names(), ElementsAre("a", "b"));
}

TEST(AtomicFile, WhatAnInterruptedSaveLeftIsRemoved)
{
	const FTempFolder Folder;
	Folder.Write(".a.tarvin-save-0123456789abcdef", "half");
	Folder.Write(".b.tarvin-save-0123456789abcdef", "of another file");
	FAtomicFile File;
	ASSERT_TRUE(File.Create(Folder.Path(), "a", 0).IsOk());
	EXPECT_THAT(Folder.Names(), ElementsAre(".b.tarvin-save-0123456789abcdef"));
}

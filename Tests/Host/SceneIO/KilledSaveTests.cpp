// SPDX-License-Identifier: MIT
// Saves that are killed at each system call in turn: what a file system sees of a save changes nowhere else.
#include "SceneIO/GltfSave.h"
#include "SceneText.h"

#include <csignal>
#include <filesystem>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;

namespace
{
enum class EEnd
{
	Killed,
	Saved,
	Failed,
	NotTraceable,
};

/// Saves in a process of its own, which is killed as soon as it has entered or left that many system calls.
EEnd SaveAndKill(const std::function<bool()>& Save, int Calls)
{
	const pid_t Child = fork();
	if (Child == 0)
	{
		if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0)
		{
			_exit(99);
		}
		raise(SIGSTOP);
		const bool bSaved = Save();
		_exit(bSaved ? 0 : 1);
	}
	int Status = 0;
	waitpid(Child, &Status, 0);
	for (int Call = 0; Call < Calls && WIFSTOPPED(Status); ++Call)
	{
		ptrace(PTRACE_SYSCALL, Child, nullptr, nullptr);
		waitpid(Child, &Status, 0);
	}
	if (WIFSTOPPED(Status))
	{
		kill(Child, SIGKILL);
		waitpid(Child, &Status, 0);
		return EEnd::Killed;
	}
	const int Code = WIFEXITED(Status) ? WEXITSTATUS(Status) : -1;
	return Code == 0 ? EEnd::Saved : Code == 99 ? EEnd::NotTraceable : EEnd::Failed;
}

class KilledSave : public testing::Test
{
protected:
	/// Saves over the scene of that name again and again, killed a little later each time, until a save gets through.
	/// After each, `Check` is told whether the scene is the new one.
	void KillAtEveryCall(const std::string& Name, const std::function<void(bool)>& Check)
	{
		const std::string Path = Folder.Path(Name);
		const std::string Old = Folder.Read(Name);
		ASSERT_TRUE(SaveGltf(MovedTriangle(Path), Path).IsOk());
		const std::string New = Folder.Read(Name);
		ASSERT_NE(Old, New);
		int NumOld = 0;
		int NumNew = 0;
		for (EEnd End = EEnd::Killed; End == EEnd::Killed;)
		{
			Folder.Write(Name, Old);
			std::filesystem::remove(Folder.Path("scene-1.bin"));
			const FGltfPatch Patch = MovedTriangle(Path);
			End = SaveAndKill([&] { return SaveGltf(Patch, Path).IsOk(); }, NumOld + NumNew + 1);
			if (End == EEnd::NotTraceable)
			{
				GTEST_SKIP() << "no process can be traced here";
			}
			ASSERT_NE(End, EEnd::Failed);
			const std::string Found = Folder.Read(Name);
			ASSERT_TRUE(Found == Old || Found == New) << "after " << NumOld + NumNew + 1 << " calls";
			ASSERT_TRUE(Found == New || (NumNew == 0 && End == EEnd::Killed)) << "the new scene does not go away again";
			(Found == New ? NumNew : NumOld) += 1;
			Check(Found == New);
		}
		EXPECT_GT(NumOld, 10);
		EXPECT_GT(NumNew, 1) << "killed when the new scene had taken its place, too";
	}

	FTempFolder Folder;
};
} // namespace

TEST_F(KilledSave, LeavesTheOldTextOrTheNewOneWithTheBufferThatItNames)
{
	FSceneText Scene = TriangleScene();
	Scene.AddView(std::string(3'000'000, 'x')); // so much that it is written in several goes
	const std::string Path = Scene.WriteText(Folder);
	KillAtEveryCall("scene.gltf",
		[&](bool bNew)
		{
			const auto Document = MustLoad(Path);
			EXPECT_EQ(Document->Buffer(0).Path, bNew ? "scene-1.bin" : "scene.bin");
			EXPECT_EQ(Document->BufferBytes(0)->size(), Scene.Bytes.size());
			EXPECT_EQ(Folder.Read("scene.bin"), Scene.Bytes);
		});
	EXPECT_THAT(Folder.Names(), ElementsAre("scene-1.bin", "scene.bin", "scene.gltf"))
		<< "the last save takes away what the killed ones left";
}

TEST_F(KilledSave, LeavesTheOldBinarySceneOrTheNewOne)
{
	TriangleScene().WriteBinary(Folder);
	KillAtEveryCall("scene.glb", [&](bool) { EXPECT_TRUE(MustLoad(Folder.Path("scene.glb"))->BufferBytes(0).IsOk()); });
	EXPECT_THAT(Folder.Names(), ElementsAre("scene.glb"));
}

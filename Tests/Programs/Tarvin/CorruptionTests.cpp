// SPDX-License-Identifier: MIT
// Damaged scenes: whatever is wrong with one, each command ends with one sentence that names the file, or with a
// correct result. TARVIN_CORRUPTIONS=n tries n damages in each case, in place of the usual number.
#include "BakeJob.h"
#include "CoreUObject/GarbageCollector.h"
#include "Editor/EditorEngine.h"
#include "Host/SceneIO/TempFolder.h"
#include "HostSession.h"
#include "SceneDamage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace
{
bool IsSentence(const std::string& Text)
{
	const bool bControls = std::any_of(
		Text.begin(), Text.end(), [](char Character) { return static_cast<unsigned char>(Character) < 0x20; });
	return Text.starts_with("Cannot ") && Text.ends_with('.') && !bControls;
}

/// Saves wait until the disk has what they wrote; in memory that takes no time.
std::filesystem::path FolderForThousandsOfSaves()
{
	const std::filesystem::path Memory = "/dev/shm";
	return access(Memory.c_str(), W_OK) == 0 ? Memory : std::filesystem::temp_directory_path();
}

/// A folder with one scene, which is put through what the program does with scenes.
class FSceneTrial
{
public:
	explicit FSceneTrial(const FSmallScene& Scene)
		: Folder(FolderForThousandsOfSaves())
		, Name(Scene.FileName())
		, Ending(Name.substr(Name.find('.')))
	{
	}

	/// Writes the scene and its buffer, as new files: some file systems wait for the disk where one is written over.
	void Put(const std::string& SceneBytes, const std::string& Buffer)
	{
		for (const std::string& Old : Folder.Names())
		{
			std::filesystem::remove(Folder.Path(Old));
		}
		Folder.Write(Name, SceneBytes);
		Folder.Write("scene.bin", Buffer);
	}

	/// True where the scene was accepted and could be decoded.
	bool Run()
	{
		const bool bRead = ReadAndSave();
		Bake(bRead);
		CollectGarbage();
		return bRead;
	}

	/// What `info` and a save without changes do. Returns whether all of the scene could be read.
	bool ReadAndSave()
	{
		const FHostSession Session;
		TSceneResult<std::unique_ptr<FScene>> Scene =
			FScene::Load(Folder.Path(Name), GEditor->GetEditorWorldContext().World());
		if (!Scene)
		{
			ExpectSentence(Scene.Error().Message);
			return false;
		}
		Judge(**Scene);
		const TSceneResult<FSaveReport> Saved = SaveScene(**Scene, Folder.Path("copy" + Ending));
		EXPECT_TRUE(Saved.IsOk()) << Saved.Error().Message;
		EXPECT_TRUE(Folder.Read("copy" + Ending) == Folder.Read(Name));
		return Decode(**Scene);
	}

	/// What `bake --all --shared duplicate --verify -o` does.
	void Bake(bool bReadable)
	{
		FBakeOptions Options;
		Options.bVerify = true;
		const FBakeReport Report = RunBakeJob(Options, Folder.Path(Name), Folder.Path("baked" + Ending));
		if (!Report.Error.empty())
		{
			ExpectSentence(Report.Error);
			EXPECT_EQ(Report.Exit, ExitUnreadable) << Report.Error;
			EXPECT_FALSE(bReadable) << Report.Error;
			return;
		}
		EXPECT_THAT(Report.Exit, testing::AnyOf(ExitDone, ExitIncomplete));
		Baked += Report.Count(ENodeOutcome::Baked);
		for (const FNodeReport& Node : Report.Nodes)
		{
			Reasons.push_back(Node.Reason);
		}
	}

	/// Copies everything to a folder that stays, and returns its path.
	std::string Keep(const std::string& As) const
	{
		const std::filesystem::path Kept = std::filesystem::temp_directory_path() / ("tarvin-corruption-" + As);
		std::filesystem::remove_all(Kept);
		std::filesystem::copy(Folder.Path(), Kept);
		return Kept.string();
	}

	/// How many nodes were baked so far.
	int NumBaked() const { return Baked; }

	/// Why nodes were left out so far.
	const std::vector<std::string>& LeftOut() const { return Reasons; }

private:
	void ExpectSentence(const std::string& Text)
	{
		EXPECT_TRUE(IsSentence(Text)) << Text;
		EXPECT_THAT(Text, testing::HasSubstr(Folder.Path("scene"))) << "the file has no name";
	}

	void Judge(const FScene& Scene)
	{
		const FSceneJudge Judge(Scene);
		const std::vector<bool> bAll(static_cast<std::size_t>(Scene.NumNodes()), true);
		EXPECT_EQ(Judge.Judge(ESceneCommand::BakeTransform, bAll).size(), bAll.size());
		EXPECT_EQ(Judge.Judge(ESceneCommand::SetPivot, bAll).size(), bAll.size());
		EXPECT_EQ(Judge.WorldMatrices().size(), bAll.size());
	}

	bool Decode(const FScene& Scene)
	{
		bool bAll = true;
		const auto Take = [this, &bAll](const auto& Result)
		{
			bAll = bAll && Result.IsOk();
			if (!Result)
			{
				ExpectSentence(Result.Error().Message);
			}
		};
		for (std::size_t Mesh = 0; Mesh < Scene.Document()->Model().Meshes.size(); ++Mesh)
		{
			Take(Scene.MeshData(static_cast<FGltfIndex>(Mesh))->TryDecode());
		}
		for (FGltfIndex Node = 0; Node < Scene.NumNodes(); ++Node)
		{
			Take(ReadSceneInstances(Scene.Document(), Node));
		}
		return bAll;
	}

	FTempFolder Folder;
	std::string Name;
	std::string Ending;
	int Baked = 0;
	std::vector<std::string> Reasons;
};

/// A kind of scene, and what of it is damaged.
struct FCorruption
{
	const char* Name;
	FSmallScene (*Make)();
	void (*Damage)(FSceneDamage&, FSmallScene&, std::string& SceneBytes);
	int Tries = 1000;
};

FSmallScene Binary()
{
	return SmallScenes::Everything(ESceneContainer::Binary);
}

FSmallScene External()
{
	return SmallScenes::Everything(ESceneContainer::External);
}

FSmallScene Embedded()
{
	return SmallScenes::Everything(ESceneContainer::Embedded);
}

void DamageParts(FSceneDamage& Damage, FSmallScene& Scene, std::string& SceneBytes)
{
	Damage.DamageParts(Scene);
	SceneBytes = Scene.SceneBytes();
}

void DamageBytes(FSceneDamage& Damage, FSmallScene&, std::string& SceneBytes)
{
	Damage.DamageBytes(SceneBytes);
}

const FCorruption Corruptions[] = {
	{"PartsOfBinary", Binary, DamageParts, 1000},
	{"BytesOfBinary", Binary, DamageBytes, 1500},
	{"PartsOfText", External, DamageParts, 1000},
	{"BytesOfText", External, DamageBytes, 1500},
	{"PartsOfEmbedded", Embedded, DamageParts, 1000},
	{"BytesOfEmbedded", Embedded, DamageBytes, 1000},
	{"PartsOfMeshopt", SmallScenes::Meshopt, DamageParts, 1500},
	{"BytesOfMeshopt", SmallScenes::Meshopt, DamageBytes, 1000},
	{"PartsOfDraco", SmallScenes::Draco, DamageParts, 500},
	{"BytesOfDraco", SmallScenes::Draco, DamageBytes, 500},
};

void PrintTo(const FCorruption& Case, std::ostream* Out)
{
	*Out << Case.Name;
}

int TriesOf(const FCorruption& Case)
{
	const char* const Wanted = std::getenv("TARVIN_CORRUPTIONS");
	return Wanted ? std::atoi(Wanted) : Case.Tries;
}

class Corruption : public testing::TestWithParam<FCorruption>
{
};

struct FKind
{
	const char* Name;
	FSmallScene (*Make)();
};

void PrintTo(const FKind& Kind, std::ostream* Out)
{
	*Out << Kind.Name;
}

const FKind Kinds[] = {{"Binary", Binary}, {"External", External}, {"Embedded", Embedded},
	{"Meshopt", SmallScenes::Meshopt}, {"Draco", SmallScenes::Draco}};

class SmallScene : public testing::TestWithParam<FKind>
{
};
} // namespace

TEST_P(SmallScene, IsReadAndBakedAsItStands)
{
	const FSmallScene Scene = GetParam().Make();
	FSceneTrial Trial(Scene);
	Trial.Put(Scene.SceneBytes(), Scene.Buffer);
	EXPECT_TRUE(Trial.Run());
	EXPECT_GT(Trial.NumBaked(), 0);
}

TEST_P(SmallScene, IsRefusedWhereItEndsTooSoon)
{
	const FSmallScene Scene = GetParam().Make();
	std::string Whole = Scene.SceneBytes();
	// Blanks at the end are no part of a text.
	Whole.erase(Whole.find_last_not_of(Scene.Container == ESceneContainer::Binary ? "" : " \n") + 1);
	FSceneTrial Trial(Scene);
	for (std::size_t Length = 0; Length < Whole.size(); ++Length)
	{
		Trial.Put(Whole.substr(0, Length), Scene.Buffer);
		ASSERT_FALSE(Trial.ReadAndSave()) << Length;
	}
}

TEST(SmallSceneBuffer, IsRefusedWhereItEndsTooSoon)
{
	const FSmallScene Scene = External();
	FSceneTrial Trial(Scene);
	for (std::size_t Length = 0; Length < Scene.Buffer.size(); ++Length)
	{
		Trial.Put(Scene.Json, Scene.Buffer.substr(0, Length));
		ASSERT_FALSE(Trial.ReadAndSave()) << Length;
	}
}

INSTANTIATE_TEST_SUITE_P(Any, SmallScene, testing::ValuesIn(Kinds),
	[](const testing::TestParamInfo<FKind>& Info) { return Info.param.Name; });

TEST_P(Corruption, IsRefusedWithASentenceOrHandledRightly)
{
	const FSmallScene Whole = GetParam().Make();
	FSceneTrial Trial(Whole);
	const int Tries = TriesOf(GetParam());
	int Accepted = 0;
	for (int Seed = 1; Seed <= Tries; ++Seed)
	{
		FSceneDamage Damage(static_cast<std::uint64_t>(Seed));
		FSmallScene Scene = Whole;
		std::string SceneBytes = Scene.SceneBytes();
		GetParam().Damage(Damage, Scene, SceneBytes);
		Trial.Put(SceneBytes, Scene.Buffer);
		Accepted += Trial.Run() ? 1 : 0;
		ASSERT_FALSE(HasFailure()) << "see " << Trial.Keep(GetParam().Name + ("-" + std::to_string(Seed)));
	}
	std::printf("%d of %d accepted\n", Accepted, Tries);
	EXPECT_GT(Accepted, 0);
	EXPECT_LT(Accepted, Tries);
}

INSTANTIATE_TEST_SUITE_P(Any, Corruption, testing::ValuesIn(Corruptions),
	[](const testing::TestParamInfo<FCorruption>& Info) { return Info.param.Name; });

// SPDX-License-Identifier: MIT
#include "Core/Log.h"
#include "Slate/InputBindingManager.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace
{
using EMultipleKeyBindingIndex::Primary;
using EMultipleKeyBindingIndex::Secondary;

const FInputChord CtrlB(EModifierKey::Control, EKeys::B);
const FInputChord CtrlP(EModifierKey::Control, EKeys::P);

/// Two contexts with one command each, and a folder for the settings file.
class UserChords : public testing::Test
{
protected:
	UserChords()
	{
		std::string Pattern = testing::TempDir() + "user-chords-XXXXXX";
		Folder = ::mkdtemp(Pattern.data());
		Path = Folder / "deep" / "key-chords.txt";
		RegisterBake();
		RegisterPivot();
	}
	~UserChords() override
	{
		Manager.SetUserChordsFile(FString());
		Manager.RemoveContextByName(TEXT("Meshes"));
		Manager.RemoveContextByName(TEXT("Pivots"));
		std::error_code Ignored;
		std::filesystem::permissions(Folder, std::filesystem::perms::owner_all, Ignored);
		std::filesystem::remove_all(Folder, Ignored);
	}

	static TSharedPtr<FUICommandInfo> Register(const TCHAR* Context, const TCHAR* Name, const FInputChord& Chord)
	{
		TSharedPtr<FBindingContext> Owner = FInputBindingManager::Get().GetContextByName(Context);
		if (!Owner.IsValid())
		{
			Owner = MakeShared<FBindingContext>(Context, FText(), NAME_None, NAME_None);
		}
		TSharedPtr<FUICommandInfo> Command;
		FUICommandInfo::MakeCommandInfo(Owner.ToSharedRef(), Command, Name, FText::FromString(Name), FText(),
			EUserInterfaceActionType::Button, Chord);
		return Command;
	}
	void RegisterBake() { Bake = Register(TEXT("Meshes"), TEXT("Bake"), CtrlB); }
	void RegisterPivot() { Pivot = Register(TEXT("Pivots"), TEXT("Pivot"), CtrlP); }

	FString File() const { return FString::FromUtf8(Path.string()); }
	void UseFile() { Manager.SetUserChordsFile(File()); }

	/// Starts over as a new process would: commands with their defaults, then the file.
	void Restart()
	{
		Manager.SetUserChordsFile(FString());
		Manager.RemoveContextByName(TEXT("Meshes"));
		Manager.RemoveContextByName(TEXT("Pivots"));
		RegisterBake();
		RegisterPivot();
		UseFile();
	}

	std::string Content() const
	{
		std::ifstream Stream(Path, std::ios::binary);
		return {std::istreambuf_iterator<char>(Stream), std::istreambuf_iterator<char>()};
	}
	void WriteContent(const std::string& Bytes) const
	{
		std::filesystem::create_directories(Path.parent_path());
		std::ofstream(Path, std::ios::binary) << Bytes;
	}

	FInputBindingManager& Manager = FInputBindingManager::Get();
	std::filesystem::path Folder;
	std::filesystem::path Path;
	TSharedPtr<FUICommandInfo> Bake;
	TSharedPtr<FUICommandInfo> Pivot;
};

TEST_F(UserChords, WithoutAFileChangesLastForTheProcessOnly)
{
	Bake->SetActiveChord(EKeys::F5, Secondary);
	EXPECT_TRUE(Bake->HasActiveChord(EKeys::F5));
	EXPECT_TRUE(std::filesystem::is_empty(Folder));
}

TEST_F(UserChords, MissingFileMeansDefaultsAndIsNotWritten)
{
	FCaptureLogSink Log;
	UseFile();
	EXPECT_TRUE(Bake->HasDefaultChords());
	EXPECT_TRUE(Log.Records().IsEmpty());
	EXPECT_TRUE(std::filesystem::is_empty(Folder));
}

TEST_F(UserChords, ChangesAreThereAfterARestart)
{
	UseFile();
	Bake->SetActiveChord(FInputChord(EModifierKey::Alt, EKeys::NumPadFive), Primary);
	Pivot->SetActiveChord(EKeys::F5, Secondary);
	Restart();
	EXPECT_EQ(Bake->GetActiveChord(Primary), FInputChord(EModifierKey::Alt, EKeys::NumPadFive));
	EXPECT_EQ(Pivot->GetActiveChord(Primary), CtrlP);
	EXPECT_EQ(Pivot->GetActiveChord(Secondary), FInputChord(EKeys::F5));
}

TEST_F(UserChords, ChordTakenAwayStaysAway)
{
	UseFile();
	Bake->RemoveActiveChord(Primary);
	Restart();
	EXPECT_FALSE(Bake->GetActiveChord(Primary).IsValidChord());
	EXPECT_EQ(Bake->GetDefaultChord(Primary), CtrlB);
}

TEST_F(UserChords, OnlyWhatDiffersFromTheDefaultIsKept)
{
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	EXPECT_EQ(Content(), "tarvin key chords 1\nMeshes\tBake\tprimary\tF5\n");
	Bake->SetActiveChord(CtrlB, Primary);
	EXPECT_EQ(Content(), "tarvin key chords 1\n");
}

TEST_F(UserChords, ChangesOfAbsentContextsAreKept)
{
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	Manager.RemoveContextByName(TEXT("Meshes"));
	Pivot->SetActiveChord(EKeys::F6, Primary);
	RegisterBake();
	EXPECT_EQ(Bake->GetActiveChord(Primary), FInputChord(EKeys::F5));
	Restart();
	EXPECT_EQ(Bake->GetActiveChord(Primary), FInputChord(EKeys::F5));
}

TEST_F(UserChords, ResettingForgetsAllChanges)
{
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	Manager.RemoveContextByName(TEXT("Pivots"));
	Manager.ResetUserChords();
	EXPECT_TRUE(Bake->HasDefaultChords());
	EXPECT_EQ(Content(), "tarvin key chords 1\n");
}

TEST_F(UserChords, NamesWithTabsAndLineBreaksAreReadBack)
{
	const TSharedPtr<FUICommandInfo> Odd = Register(TEXT("Pivots"), TEXT("a\tb\nc\\d \x00E9"), FInputChord());
	UseFile();
	Odd->SetActiveChord(EKeys::F5, Primary);
	Manager.SetUserChordsFile(FString());
	EXPECT_TRUE(Odd->HasDefaultChords());
	UseFile();
	EXPECT_EQ(Odd->GetActiveChord(Primary), FInputChord(EKeys::F5));
}

TEST_F(UserChords, EachChangeIsToldOnce)
{
	TArray<FName> Told;
	const FDelegateHandle Handle = Manager.OnActiveChordChanged().AddLambda(
		[&Told](const FUICommandInfo& Command) { Told.Add(Command.GetCommandName()); });
	Bake->SetActiveChord(EKeys::F5, Primary);
	Bake->SetActiveChord(EKeys::F5, Primary);
	Bake->ResetActiveChords();
	Manager.OnActiveChordChanged().Remove(Handle);
	EXPECT_THAT(Told, testing::ElementsAre(FName(TEXT("Bake")), FName(TEXT("Bake"))));
}

TEST_F(UserChords, BrokenFileIsKeptAsideWithOneWarning)
{
	const char* const Broken[] = {
		"",
		"something else\n",
		"tarvin key chords 2\n",
		"tarvin key chords 1\nMeshes\tBake\tprimary\n",
		"tarvin key chords 1\nMeshes\tBake\ttertiary\tF5\n",
		"tarvin key chords 1\nMeshes\tBake\tprimary\tTurbo\n",
		"tarvin key chords 1\nMeshes\tBake\tprimary\t\n",
		"tarvin key chords 1\nMeshes\tBa\\ke\tprimary\tF5\n",
		"tarvin key chords 1\nMeshes\tBake\tprimary\tF5\nMeshes\tBake\tprimary\tF6\n",
		"tarvin key chords 1\nMeshes\tBake\tprimary\tF5\n\xFF\xFE\n",
	};
	int32 Number = 0;
	for (const char* Bytes : Broken)
	{
		++Number;
		WriteContent(Bytes);
		FCaptureLogSink Log;
		UseFile();
		EXPECT_TRUE(Bake->HasDefaultChords()) << Bytes;
		ASSERT_EQ(Log.Records().Num(), 1) << Bytes;
		EXPECT_EQ(Log.Records()[0].Verbosity, ELogVerbosity::Warning);
		EXPECT_TRUE(Log.Records()[0].Message.StartsWith(TEXT("Cannot read key chords from '") + File()));
		EXPECT_FALSE(std::filesystem::exists(Path));
		const std::string Aside = Path.string() + (Number == 1 ? ".broken" : ".broken-" + std::to_string(Number));
		ASSERT_TRUE(std::filesystem::exists(Aside)) << Aside;
		EXPECT_EQ(std::filesystem::file_size(Aside), std::string(Bytes).size());
	}
}

TEST_F(UserChords, WarningSaysWhatIsWrongAndWhere)
{
	WriteContent("tarvin key chords 1\n\nMeshes\tBake\tprimary\tTurbo\n");
	FCaptureLogSink Log;
	UseFile();
	ASSERT_EQ(Log.Records().Num(), 1);
	EXPECT_EQ(Log.Records()[0].Message, TEXT("Cannot read key chords from '") + File() +
											TEXT("': line 3: there is no such chord; kept as '") + File() +
											TEXT(".broken', default chords are used"));
}

TEST_F(UserChords, AfterABrokenFileChangesAreSavedAgain)
{
	WriteContent("rubbish");
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	EXPECT_EQ(Content(), "tarvin key chords 1\nMeshes\tBake\tprimary\tF5\n");
}

TEST_F(UserChords, FolderInPlaceOfTheFileIsBroken)
{
	std::filesystem::create_directories(Path);
	FCaptureLogSink Log;
	UseFile();
	EXPECT_EQ(Log.Records().Num(), 1);
	EXPECT_TRUE(std::filesystem::is_directory(Path.string() + ".broken"));
}

TEST_F(UserChords, FileThatCannotBeWrittenIsWarnedAboutAndLeftAlone)
{
	// A plain file where the folder should be: fails for every user, root included.
	std::ofstream(Folder / "deep") << "in the way";
	Manager.SetUserChordsFile(File());
	FCaptureLogSink Log;
	Bake->SetActiveChord(EKeys::F5, Primary);
	ASSERT_GE(Log.Records().Num(), 1);
	EXPECT_TRUE(Log.Records().Last().Message.StartsWith(TEXT("Cannot save key chords to '") + File() + TEXT("': ")));
	EXPECT_TRUE(Bake->HasActiveChord(EKeys::F5));
}

TEST_F(UserChords, SavingLeavesNoOtherFileBehind)
{
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	Bake->SetActiveChord(EKeys::F6, Primary);
	int32 Files = 0;
	for (const auto& Entry : std::filesystem::directory_iterator(Path.parent_path()))
	{
		EXPECT_EQ(Entry.path(), Path);
		++Files;
	}
	EXPECT_EQ(Files, 1);
}

TEST_F(UserChords, LinkedFileIsReplacedBehindItsLink)
{
	const std::filesystem::path Target = Folder / "dotfiles.txt";
	std::ofstream(Target) << "tarvin key chords 1\n";
	std::filesystem::create_directories(Path.parent_path());
	std::filesystem::create_symlink(Target, Path);
	UseFile();
	Bake->SetActiveChord(EKeys::F5, Primary);
	EXPECT_TRUE(std::filesystem::is_symlink(Path));
	EXPECT_FALSE(std::filesystem::is_symlink(Target));
	EXPECT_EQ(Content(), "tarvin key chords 1\nMeshes\tBake\tprimary\tF5\n");
}

TEST_F(UserChords, DefaultFileIsInTheConfigurationFolder)
{
	::setenv("XDG_CONFIG_HOME", "/somewhere/config", 1);
	EXPECT_EQ(FInputBindingManager::DefaultUserChordsFile(), TEXT("/somewhere/config/tarvin/key-chords.txt"));
	::setenv("HOME", "/people/someone", 1);
	::setenv("XDG_CONFIG_HOME", "relative", 1);
	EXPECT_EQ(FInputBindingManager::DefaultUserChordsFile(), TEXT("/people/someone/.config/tarvin/key-chords.txt"));
	::unsetenv("XDG_CONFIG_HOME");
	EXPECT_EQ(FInputBindingManager::DefaultUserChordsFile(), TEXT("/people/someone/.config/tarvin/key-chords.txt"));
	::unsetenv("HOME");
	EXPECT_TRUE(FInputBindingManager::DefaultUserChordsFile().IsEmpty());
}

TEST_F(UserChords, ConflictNamesTheCommandThatHasTheChord)
{
	EXPECT_THAT(Manager.FindConflicts(*Bake, CtrlP), testing::ElementsAre(Pivot.ToSharedRef()));
	EXPECT_TRUE(Manager.FindConflicts(*Bake, CtrlB).IsEmpty());
	EXPECT_TRUE(Manager.FindConflicts(*Bake, EKeys::F5).IsEmpty());
	EXPECT_TRUE(Manager.FindConflicts(*Bake, FInputChord()).IsEmpty());
}

TEST_F(UserChords, DuplicatesAreListedWithAllTheirCommands)
{
	EXPECT_TRUE(Manager.CheckForDuplicates().IsEmpty());
	Bake->SetActiveChord(CtrlB, Secondary);
	EXPECT_TRUE(Manager.CheckForDuplicates().IsEmpty());
	Pivot->SetActiveChord(CtrlB, Secondary);
	const TArray<FInputBindingManager::FChordConflict> Conflicts = Manager.CheckForDuplicates();
	ASSERT_EQ(Conflicts.Num(), 1);
	EXPECT_EQ(Conflicts[0].Chord, CtrlB);
	EXPECT_THAT(Conflicts[0].Commands, testing::ElementsAre(Bake.ToSharedRef(), Pivot.ToSharedRef()));
}
}

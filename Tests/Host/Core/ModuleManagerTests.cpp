// SPDX-License-Identifier: MIT
#include "Core/ModuleManager.h"
#include "Modules/ProbeInterface.h"
#include "Support/ThrowingAssertions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{
/// A module that is linked into the program.
class FLinkedProbe : public IModuleInterface
{
public:
	FLinkedProbe() { ++NumAlive; }
	~FLinkedProbe() override { --NumAlive; }
	void StartupModule() override { ++NumStarts; }
	void ShutdownModule() override { ++NumStops; }

	static int32 NumAlive;
	static int32 NumStarts;
	static int32 NumStops;
};

int32 FLinkedProbe::NumAlive = 0;
int32 FLinkedProbe::NumStarts = 0;
int32 FLinkedProbe::NumStops = 0;
} // namespace

IMPLEMENT_MODULE(FLinkedProbe, LinkedProbe)

namespace
{
/// Whether the process has any memory of that library mapped.
bool IsMapped(const std::string& Library)
{
	std::ifstream Maps("/proc/self/maps");
	EXPECT_TRUE(Maps.is_open());
	for (std::string Line; std::getline(Maps, Line);)
	{
		if (Line.ends_with("/" + Library))
		{
			return true;
		}
	}
	return false;
}

std::string OutputOf(const std::string& Command)
{
	std::string Output;
	std::FILE* const Pipe = popen(Command.c_str(), "r");
	std::array<char, 4096> Buffer;
	while (std::fgets(Buffer.data(), static_cast<int>(Buffer.size()), Pipe) != nullptr)
	{
		Output += Buffer.data();
	}
	EXPECT_EQ(pclose(Pipe), 0) << Command;
	return Output;
}

class ModuleManager : public testing::Test
{
protected:
	ModuleManager() { Manager.AddSearchPath(FString::FromUtf8(TARVIN_TEST_MODULES)); }
	~ModuleManager() override { Manager.UnloadModulesAtShutdown(); }

	TArray<FString> ProbeLines() const { return Capture.Messages(TEXT("LogProbe")); }
	TArray<FString> Complaints() const { return Capture.Messages(TEXT("LogModuleManager")); }

	FModuleManager& Manager = FModuleManager::Get();
	FCaptureLogSink Capture;
};
} // namespace

TEST_F(ModuleManager, LoadsALibraryByItsNameAndStartsTheModule)
{
	ASSERT_FALSE(IsMapped("libProbe.so"));
	EXPECT_FALSE(Manager.IsModuleLoaded(TEXT("Probe")));
	IModuleInterface* const Module = Manager.LoadModule(TEXT("Probe"));
	ASSERT_NE(Module, nullptr);
	EXPECT_TRUE(IsMapped("libProbe.so"));
	EXPECT_TRUE(Manager.IsModuleLoaded(TEXT("Probe")));
	EXPECT_EQ(Manager.GetModulePtr<IProbe>(TEXT("Probe")), Module);
	EXPECT_EQ(&Manager.GetModuleChecked<IProbe>(TEXT("Probe")), Module);
	EXPECT_EQ(Manager.LoadModule(TEXT("Probe")), Module) << "a second load gives the running module";
}

TEST_F(ModuleManager, ModuleIsKnownBeforeItsStartAndLivesInOrder)
{
	Manager.LoadModule(TEXT("Probe"));
	Manager.UnloadModule(TEXT("Probe"));
	EXPECT_EQ(
		ProbeLines(), (TArray<FString>{TEXT("Probe starts, known"), TEXT("Probe keeps itself"), TEXT("Probe loaded"),
						  TEXT("Probe will be unloaded"), TEXT("Probe stops"), TEXT("Probe destroyed")}));
}

TEST_F(ModuleManager, UnloadingRemovesTheLibraryFromTheProcess)
{
	Manager.LoadModule(TEXT("Probe"));
	EXPECT_TRUE(Manager.UnloadModule(TEXT("Probe")));
	EXPECT_FALSE(IsMapped("libProbe.so"));
	EXPECT_FALSE(Manager.IsModuleLoaded(TEXT("Probe")));
	EXPECT_EQ(Manager.GetModule(TEXT("Probe")), nullptr);
	EXPECT_FALSE(Manager.UnloadModule(TEXT("Probe"))) << "it is gone already";
}

TEST_F(ModuleManager, LoadingAgainStartsAfresh)
{
	for (int32 Round = 0; Round < 3; ++Round)
	{
		IProbe& Probe = Manager.LoadModuleChecked<IProbe>(TEXT("Probe"));
		EXPECT_EQ(Probe.CountCall(), 1) << "statics of the library are new";
		EXPECT_EQ(Probe.CountCall(), 2);
		ASSERT_TRUE(Manager.UnloadModule(TEXT("Probe")));
		ASSERT_FALSE(IsMapped("libProbe.so"));
	}
}

TEST_F(ModuleManager, NamesAndTextsOutliveTheLibraryThatMadeThem)
{
	const IProbe& Probe = Manager.LoadModuleChecked<IProbe>(TEXT("Probe"));
	const FName Name = Probe.MakeName();
	const FText Text = Probe.MakeText();
	ASSERT_TRUE(Manager.UnloadModule(TEXT("Probe")));
	ASSERT_FALSE(IsMapped("libProbe.so"));
	EXPECT_EQ(Name.ToString(), TEXT("A name from the library"));
	EXPECT_EQ(Text.ToString(), TEXT("a literal of 1,234"));
	EXPECT_EQ(Text.GetSourceString(), TEXT("a literal of 1234"));
}

TEST_F(ModuleManager, EventOfTheHostOutlivesTheModuleThatBoundFirst)
{
	int32 NumCalls = 0;
	{
		FSimpleMulticastDelegate Event;
		Manager.LoadModuleChecked<IProbe>(TEXT("Probe")).Join(Event, NumCalls);
		Event.Broadcast();
		ASSERT_TRUE(Manager.UnloadModule(TEXT("Probe")));
		ASSERT_FALSE(IsMapped("libProbe.so"));
		Event.Broadcast();
		EXPECT_FALSE(Event.IsBound());
		Event.AddLambda([&NumCalls] { NumCalls += 10; });
		Event.Broadcast();
	}
	EXPECT_EQ(NumCalls, 11) << "and the event was destroyed without the library";
}

TEST_F(ModuleManager, MissingModuleIsNullWithTheReasonInTheLog)
{
	EXPECT_EQ(Manager.LoadModule(TEXT("ProbeMissing")), nullptr);
	EXPECT_FALSE(Manager.IsModuleLoaded(TEXT("ProbeMissing")));
	EXPECT_EQ(Complaints(),
		(TArray<FString>{
			TEXT("Cannot load module 'ProbeMissing': there is no such module in the program and no library of "
				 "that name in the module folders")}));
}

TEST_F(ModuleManager, MissingModuleInACheckedLoadIsFatalAndNamed)
{
	const FThrowingAssertions Throwing;
	try
	{
		Manager.LoadModuleChecked(TEXT("ProbeMissing"));
		FAIL() << "a missing module was loaded";
	}
	catch (const FAssertionFailed& Failure)
	{
		EXPECT_TRUE(Failure.Message().StartsWith(TEXT("Cannot load module 'ProbeMissing': "))) << Failure.Message();
	}
	EXPECT_THROW(Manager.GetModuleChecked<IProbe>(TEXT("ProbeMissing")), FAssertionFailed);
}

TEST_F(ModuleManager, FatalStartLeavesNothingBehind)
{
	const FThrowingAssertions Throwing;
	try
	{
		Manager.LoadModule(TEXT("ProbeHungry"));
		FAIL() << "its start must have failed";
	}
	catch (const FAssertionFailed& Failure)
	{
		EXPECT_TRUE(Failure.Message().Contains(TEXT("'ProbeMissing'"))) << Failure.Message();
	}
	EXPECT_FALSE(Manager.IsModuleLoaded(TEXT("ProbeHungry")));
	EXPECT_FALSE(IsMapped("libProbeHungry.so"));
}

TEST_F(ModuleManager, LibraryWithoutTheModuleIsRefusedAndClosed)
{
	EXPECT_EQ(Manager.LoadModule(TEXT("ProbeMislabelled")), nullptr);
	EXPECT_FALSE(IsMapped("libProbeMislabelled.so"));
	EXPECT_FALSE(Manager.IsModuleLoaded(TEXT("ProbeOfAnotherName")));
	ASSERT_EQ(Complaints().Num(), 1);
	EXPECT_TRUE(Complaints()[0].EndsWith(TEXT("libProbeMislabelled.so carries no module of that name")))
		<< Complaints()[0];
}

TEST_F(ModuleManager, LibraryWithoutTheMarkerIsRefusedAndClosed)
{
	EXPECT_EQ(Manager.LoadModule(TEXT("ProbeUnmarked")), nullptr);
	EXPECT_FALSE(IsMapped("libProbeUnmarked.so"));
	EXPECT_EQ(Complaints().Num(), 1);
}

TEST_F(ModuleManager, FileThatIsNoLibraryIsRefusedInOneLine)
{
	const std::filesystem::path Folder = std::filesystem::path(testing::TempDir()) / "ModuleManagerTests";
	std::filesystem::create_directories(Folder);
	std::ofstream(Folder / "libProbeBroken.so") << "no library\n";
	Manager.AddSearchPath(FString::FromUtf8(Folder.string()));
	EXPECT_EQ(Manager.LoadModule(TEXT("ProbeBroken")), nullptr);
	ASSERT_EQ(Complaints().Num(), 1);
	EXPECT_TRUE(Complaints()[0].StartsWith(TEXT("Cannot load module 'ProbeBroken': "))) << Complaints()[0];
	EXPECT_FALSE(Complaints()[0].Contains(TEXT("\n")));
	std::filesystem::remove_all(Folder);
}

TEST_F(ModuleManager, NameCannotLeadOutOfTheModuleFolders)
{
	EXPECT_EQ(Manager.LoadModule(TEXT("/../modules/libProbe")), nullptr);
	EXPECT_EQ(Manager.LoadModule(NAME_None), nullptr);
	EXPECT_FALSE(IsMapped("libProbe.so"));
}

TEST_F(ModuleManager, StartMayLoadAnotherModule)
{
	ASSERT_NE(Manager.LoadModule(TEXT("ProbeNesting")), nullptr);
	EXPECT_TRUE(Manager.IsModuleLoaded(TEXT("Probe")));
	EXPECT_EQ(Manager.GetModuleChecked<IProbe>(TEXT("Probe")).CountCall(), 2) << "the same instance";
}

TEST_F(ModuleManager, ShutsDownInReverseOrderDependentsFirst)
{
	Manager.LoadModule(TEXT("ProbeNesting"));
	Capture.Clear();
	Manager.UnloadModulesAtShutdown();
	EXPECT_EQ(ProbeLines(), (TArray<FString>{TEXT("ProbeNesting stops before Probe"), TEXT("Probe will be unloaded"),
								TEXT("Probe stops"), TEXT("Probe destroyed")}));
	EXPECT_FALSE(IsMapped("libProbe.so"));
	EXPECT_FALSE(IsMapped("libProbeNesting.so"));
}

TEST_F(ModuleManager, ModuleThatForbidsItIsNeitherUnloadedNorShutDown)
{
	IModuleInterface* const Module = Manager.LoadModule(TEXT("ProbeStubborn"));
	ASSERT_NE(Module, nullptr);
	EXPECT_FALSE(Manager.UnloadModule(TEXT("ProbeStubborn")));
	Manager.UnloadModulesAtShutdown();
	EXPECT_EQ(Manager.GetModule(TEXT("ProbeStubborn")), Module);
	EXPECT_TRUE(ProbeLines().IsEmpty());
}

TEST_F(ModuleManager, InterfaceHasItsDefaults)
{
	IModuleInterface& Module = Manager.LoadModuleChecked(TEXT("LinkedProbe"));
	EXPECT_TRUE(Module.SupportsDynamicReloading());
	EXPECT_TRUE(Module.SupportsAutomaticShutdown());
	EXPECT_FALSE(Module.IsGameModule());
}

TEST_F(ModuleManager, LinkedModuleIsStartedStoppedAndMadeAnew)
{
	const int32 StartsBefore = FLinkedProbe::NumStarts;
	for (int32 Round = 1; Round <= 2; ++Round)
	{
		ASSERT_NE(Manager.LoadModule(TEXT("LinkedProbe")), nullptr);
		EXPECT_EQ(FLinkedProbe::NumStarts, StartsBefore + Round);
		EXPECT_EQ(FLinkedProbe::NumAlive, 1);
		EXPECT_TRUE(Manager.UnloadModule(TEXT("LinkedProbe")));
		EXPECT_EQ(FLinkedProbe::NumStops, FLinkedProbe::NumStarts);
		EXPECT_EQ(FLinkedProbe::NumAlive, 0);
	}
}

TEST(ModuleManagerAtExit, ModulesAreShutDownHoweverTheProgramEnds)
{
	const std::string Start = "LogProbe: Log: Probe starts, known\n"
							  "LogProbe: Log: Probe keeps itself\n"
							  "LogProbe: Log: Probe loaded\n"
							  "LogProbe: Log: ProbeNesting started\n"
							  "-- end of main\n";
	const std::string Stop = "LogProbe: Log: ProbeNesting stops before Probe\n"
							 "LogProbe: Log: Probe will be unloaded\n"
							 "LogProbe: Log: Probe stops\n"
							 "LogProbe: Log: Probe destroyed\n";
	const std::string Program = std::string(TARVIN_MODULE_EXIT_PROGRAM) + " " + TARVIN_TEST_MODULES + " ";
	EXPECT_EQ(OutputOf(Program + "return"), Start + Stop);
	EXPECT_EQ(OutputOf(Program + "exit"), Start + Stop);
	EXPECT_EQ(OutputOf(Program + "unload"), Start + Stop + "-- all unloaded\n");
}

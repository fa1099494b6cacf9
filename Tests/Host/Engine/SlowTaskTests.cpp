// SPDX-License-Identifier: MIT
#include "Engine/SlowTask.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using testing::ElementsAre;

FText Text(const TCHAR* Source)
{
	return FText::FromString(Source);
}

/// Feedback under a clock that tests set, shown by a list of lines.
class FSlowTasks : public testing::Test, public ISlowTaskDisplay
{
protected:
	FSlowTasks()
	{
		Context.Display = this;
		Context.Clock = [this]() { return Now; };
		Context.IsPlaying = [this]() { return bPlaying; };
	}

	void OnTaskShown(const FSlowTask& Task) override { Write("shown ", Task); }
	void OnTaskProgress(const FSlowTask& Task) override { Write("progress ", Task); }
	void OnTaskClosed(const FSlowTask& Task) override { Write("closed ", Task); }

	void Write(const char* What, const FSlowTask& Task)
	{
		Lines.push_back(What + Task.GetMessage().ToString().ToUtf8() + " " +
						std::to_string(int(Task.GetFraction() * 100.0 + 0.5)) + "%");
	}

	FFeedbackContext Context;
	double Now = 1000.0;
	bool bPlaying = false;
	std::vector<std::string> Lines;
};

TEST_F(FSlowTasks, AreShownOnceTheirDelayIsOverAndNotBefore)
{
	FSlowTask Task(4.f, Text(TEXT("Build")), true, Context);
	Task.Initialize();
	Task.MakeDialogDelayed(0.5f);
	Now += 0.49;
	Task.EnterProgressFrame(1.f);
	EXPECT_FALSE(Task.IsShown());
	Now += 0.01;
	Task.EnterProgressFrame(1.f);
	EXPECT_TRUE(Task.IsShown());
	Now += 1.0;
	Task.EnterProgressFrame(1.f, Text(TEXT("Sides")));
	Task.Destroy();
	EXPECT_FALSE(Task.IsShown());
	EXPECT_THAT(Lines, ElementsAre("shown Build 25%", "progress Sides 50%", "closed Sides 50%"));
}

TEST_F(FSlowTasks, AreNotShownWhenTheyEndBeforeTheirDelay)
{
	{
		FSlowTask Task(1.f, Text(TEXT("Quick")), true, Context);
		Task.Initialize();
		Task.MakeDialogDelayed(0.5f);
		Now += 0.4;
		Task.EnterProgressFrame(1.f);
	}
	EXPECT_TRUE(Lines.empty());
}

TEST_F(FSlowTasks, AreNotShownWithoutADialogOrWithoutADisplay)
{
	FSlowTask Silent(1.f, Text(TEXT("Silent")), true, Context);
	Silent.Initialize();
	Now += 10.0;
	Silent.EnterProgressFrame(1.f);
	EXPECT_FALSE(Silent.IsShown());
	FSlowTask Unseen(1.f, Text(TEXT("Unseen")), true, Context);
	Unseen.Initialize();
	Unseen.MakeDialogDelayed(0.f);
	Context.Display = nullptr;
	Context.Tick();
	EXPECT_FALSE(Unseen.IsShown());
	EXPECT_TRUE(Lines.empty());
}

TEST_F(FSlowTasks, AreShownByTicksInsideOneLongFrame)
{
	FSlowTask Task(1.f, Text(TEXT("Long")), true, Context);
	Task.Initialize();
	Task.MakeDialogDelayed(0.5f);
	Task.EnterProgressFrame(1.f);
	Now += 0.6;
	Context.Tick();
	EXPECT_THAT(Lines, ElementsAre("shown Long 0%"));
}

TEST_F(FSlowTasks, AreNotShownInAPlaySessionUnlessTheyMay)
{
	bPlaying = true;
	FSlowTask Polite(1.f, Text(TEXT("Polite")), true, Context);
	Polite.Initialize();
	Polite.MakeDialogDelayed(0.f);
	FSlowTask Urgent(1.f, Text(TEXT("Urgent")), true, Context);
	Urgent.Initialize();
	Urgent.MakeDialogDelayed(0.f, true, true);
	Context.Tick();
	EXPECT_FALSE(Polite.IsShown());
	EXPECT_TRUE(Urgent.IsShown());
	EXPECT_TRUE(Urgent.HasCancelButton());
	EXPECT_FALSE(Polite.HasCancelButton());
	bPlaying = false;
	Context.Tick();
	EXPECT_TRUE(Polite.IsShown());
}

TEST_F(FSlowTasks, CountFinishedFramesAndNotTheOneThatRuns)
{
	FSlowTask Task(8.f, Text(TEXT("Work")), true, Context);
	Task.Initialize();
	EXPECT_EQ(Task.GetFraction(), 0.0);
	Task.EnterProgressFrame(2.f);
	EXPECT_EQ(Task.GetFraction(), 0.0);
	Task.EnterProgressFrame(6.f);
	EXPECT_EQ(Task.GetFraction(), 0.25);
	Task.EnterProgressFrame(100.f);
	Task.EnterProgressFrame(100.f);
	EXPECT_EQ(Task.GetFraction(), 1.0);
}

TEST_F(FSlowTasks, NestSoThatAnInnerOneFillsTheFrameOfTheOuterOne)
{
	FSlowTask Outer(4.f, Text(TEXT("Outer")), true, Context);
	Outer.Initialize();
	Outer.EnterProgressFrame(1.f);
	Outer.EnterProgressFrame(2.f);
	{
		FSlowTask Inner(10.f, Text(TEXT("Inner")), true, Context);
		Inner.Initialize();
		EXPECT_THAT(Context.GetTasks(), ElementsAre(&Outer, &Inner));
		Inner.EnterProgressFrame(5.f);
		Inner.EnterProgressFrame(5.f);
		EXPECT_EQ(Inner.GetFraction(), 0.5);
		EXPECT_EQ(Outer.GetFraction(), 0.5);
	}
	EXPECT_THAT(Context.GetTasks(), ElementsAre(&Outer));
	EXPECT_EQ(Outer.GetFraction(), 0.25);
	Outer.EnterProgressFrame(1.f);
	EXPECT_EQ(Outer.GetFraction(), 0.75);
}

TEST_F(FSlowTasks, OfNoWorkAreDone)
{
	FSlowTask Task(0.f, Text(TEXT("Nothing")), true, Context);
	Task.Initialize();
	EXPECT_EQ(Task.GetFraction(), 1.0);
}

TEST_F(FSlowTasks, ThatAreOffDoNothing)
{
	FSlowTask Task(1.f, Text(TEXT("Off")), false, Context);
	Task.Initialize();
	Task.MakeDialogDelayed(0.f);
	Task.EnterProgressFrame(1.f);
	EXPECT_FALSE(Task.IsOpen());
	EXPECT_FALSE(FCollectionLock::IsLocked());
	EXPECT_EQ(Context.GetNumTasksOpened(), 0);
	EXPECT_TRUE(Lines.empty());
}

TEST_F(FSlowTasks, LetNothingBeCollectedWhileTheyAreOpen)
{
	FSlowTask Outer(1.f, Text(TEXT("Outer")), true, Context);
	Outer.Initialize();
	{
		FSlowTask Inner(1.f, Text(TEXT("Inner")), true, Context);
		Inner.Initialize();
	}
	EXPECT_FALSE(CollectGarbage());
	Outer.Destroy();
	Outer.Destroy();
	EXPECT_TRUE(CollectGarbage());
	EXPECT_EQ(Context.GetNumTasksOpened(), 2);
}

TEST_F(FSlowTasks, KeepTheirMessageInFramesWithoutOne)
{
	FSlowTask Task(2.f, Text(TEXT("Build")), true, Context);
	Task.Initialize();
	Task.EnterProgressFrame(1.f, Text(TEXT("Level 0")));
	EXPECT_EQ(Task.GetMessage().ToString(), TEXT("Level 0"));
	Task.EnterProgressFrame(1.f);
	EXPECT_EQ(Task.GetMessage().ToString(), TEXT("Build"));
}
} // namespace

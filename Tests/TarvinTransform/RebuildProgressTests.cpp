// SPDX-License-Identifier: MIT
// What a user sees while a baked mesh is built.
#include "ModuleFixture.h"

#include "Core/Text.h"
#include "Engine/SlowTask.h"
#include "TarvinTransformOp.h"

#include <utility>

namespace
{
using FLines = std::vector<std::string>;

/// Writes down the slow tasks that a user gets to see.
class FWatchingDisplay final : public ISlowTaskDisplay
{
public:
	FWatchingDisplay() { GWarn->Display = this; }
	~FWatchingDisplay() override { GWarn->Display = nullptr; }

	void OnTaskShown(const FSlowTask& Task) override
	{
		Shown.push_back(Utf8(Task.GetMessage().ToString()));
		bHadCancelButton = bHadCancelButton || Task.HasCancelButton();
	}
	void OnTaskProgress(const FSlowTask&) override {}
	void OnTaskClosed(const FSlowTask&) override { ++NumClosed; }

	FLines Shown;
	int32 NumClosed = 0;
	bool bHadCancelButton = false;
};

class RebuildProgress : public FModuleTest
{
protected:
	~RebuildProgress() override
	{
		GWarn->Clock = OldClock;
		GWarn->IsPlaying = OldIsPlaying;
	}

	/// Makes every look at the clock find it this much later.
	static void LetTimePass(double SecondsPerLook)
	{
		GWarn->Clock = [SecondsPerLook, Now = 0.0]() mutable { return Now += SecondsPerLook; };
	}

	/// Makes everything after the first look at the clock happen this much later.
	static void LetTheRestBeLater(double Seconds)
	{
		GWarn->Clock = [Now = 100.0, Seconds]() mutable { return std::exchange(Now, 100.0 + Seconds); };
	}

	static bool Bake(bool bRebuild = true)
	{
		FTarvinTransformStats Stats;
		return FTarvinTransformOp::BakeIntoMesh(
			MakeMesh(TEXT("Rock")), FTransform(FVector(1, 2, 3)), {bRebuild, true, true}, Stats);
	}

	const std::function<double()> OldClock = GWarn->Clock;
	const std::function<bool()> OldIsPlaying = GWarn->IsPlaying;
	FWatchingDisplay Display;
};

TEST_F(RebuildProgress, BuildThatTakesHalfASecondIsShownByTheMeshsNameAndCannotBeCancelled)
{
	LetTimePass(0.5);
	EXPECT_TRUE(Bake());
	EXPECT_EQ(Display.Shown, (FLines{"Tarvin: building Rock"}));
	EXPECT_EQ(Display.NumClosed, 1);
	EXPECT_FALSE(Display.bHadCancelButton);
	EXPECT_TRUE(GWarn->GetTasks().empty());
}

TEST_F(RebuildProgress, ShorterBuildIsNotShown)
{
	const int32 TasksBefore = GWarn->GetNumTasksOpened();
	LetTimePass(0.05);
	EXPECT_TRUE(Bake());
	EXPECT_TRUE(Display.Shown.empty());
	EXPECT_EQ(GWarn->GetNumTasksOpened(), TasksBefore + 1);
	EXPECT_TRUE(GWarn->GetTasks().empty());
}

TEST_F(RebuildProgress, HalfASecondIsWhereTheShowingBegins)
{
	LetTheRestBeLater(0.49);
	EXPECT_TRUE(Bake());
	EXPECT_TRUE(Display.Shown.empty());
	LetTheRestBeLater(0.51);
	EXPECT_TRUE(Bake());
	EXPECT_EQ(Display.Shown.size(), 1u);
}

TEST_F(RebuildProgress, WorkInsideTheBuildFillsTheWholeTask)
{
	double Fraction = -1.0;
	const FDelegateHandle Handle = UStaticMesh::OnMeshEdited().AddLambda(
		[&Fraction](UStaticMesh*)
		{
			FSlowTask Inner(4.0f, FText());
			Inner.Initialize();
			Inner.EnterProgressFrame(1.0f);
			Inner.EnterProgressFrame(3.0f);
			Fraction = GWarn->GetTasks().front()->GetFraction();
		});
	EXPECT_TRUE(Bake());
	UStaticMesh::OnMeshEdited().Remove(Handle);
	EXPECT_EQ(Fraction, 0.25);
}

TEST_F(RebuildProgress, WithoutARebuildNothingIsShownHoweverLongItTakes)
{
	LetTimePass(10.0);
	EXPECT_TRUE(Bake(false));
	EXPECT_TRUE(Display.Shown.empty());
}

TEST_F(RebuildProgress, NothingIsShownDuringAPlaySession)
{
	LetTimePass(10.0);
	GWarn->IsPlaying = [] { return true; };
	EXPECT_TRUE(Bake());
	EXPECT_TRUE(Display.Shown.empty());
}

TEST_F(RebuildProgress, TextCanBeTranslated)
{
	FTextLocalization::Get().AddText(
		TEXT("de"), TEXT("TarvinTransform"), TEXT("TarvinBuilding"), TEXT("{0} wird gebaut"));
	ASSERT_TRUE(FTextLocalization::Get().SetCurrentCulture(TEXT("de")));
	LetTimePass(10.0);
	EXPECT_TRUE(Bake());
	FTextLocalization::Get().SetCurrentCulture(TEXT("en"));
	FTextLocalization::Get().RemoveTexts(TEXT("de"));
	EXPECT_EQ(Display.Shown, (FLines{"Rock wird gebaut"}));
}

TEST_F(RebuildProgress, EveryMeshOfACommandHasItsOwnTask)
{
	const int32 TasksBefore = GWarn->GetNumTasksOpened();
	Bake();
	Bake();
	EXPECT_EQ(GWarn->GetNumTasksOpened(), TasksBefore + 2);
}
}

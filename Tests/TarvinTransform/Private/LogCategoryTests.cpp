// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"
#include "TarvinSelectionAction.h"
#include "TarvinTransformLog.h"

namespace
{
TEST(LogCategories, LetLogLinesThroughAndHaveAllCompiledIn)
{
	for (const FLogCategory* Category :
		{static_cast<const FLogCategory*>(&LogTarvinAction), static_cast<const FLogCategory*>(&LogTarvinOp)})
	{
		EXPECT_EQ(Category->GetDefaultVerbosity(), ELogVerbosity::Log);
		EXPECT_EQ(Category->GetCompileTimeVerbosity(), ELogVerbosity::All);
	}
	EXPECT_EQ(LogTarvinAction.GetName(), FName(TEXT("LogTarvinAction")));
	EXPECT_EQ(LogTarvinOp.GetName(), FName(TEXT("LogTarvinOp")));
}

class QuietLog : public FModuleTest
{
protected:
	~QuietLog() override { LogTarvinAction.SetVerbosity(LogTarvinAction.GetDefaultVerbosity()); }
};

TEST_F(QuietLog, KeepsTheLinesBackAndCountsAndToastsAllTheSame)
{
	PlaceSelected(MakeMesh(TEXT("Rock")))
		->AttachToComponent(PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 45), FVector(), FVector(1, 2, 3))));
	LogTarvinAction.SetVerbosity(ELogVerbosity::Error);
	FTarvinSelectionAction::ExecuteFromEditorSelection();
	EXPECT_TRUE(ActionLines().empty());
	EXPECT_EQ(
		Toasts(), (std::vector<std::string>{"Baked 0 mesh(es) · 1 skipped (rotated, non-uniformly scaled parent)"}));
}

TEST_F(QuietLog, WarningsStayWhereOnlyTheSummaryIsKeptBack)
{
	PlaceSelected(MakeMesh(TEXT("Rock")))
		->AttachToComponent(PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 45), FVector(), FVector(1, 2, 3))));
	LogTarvinAction.SetVerbosity(ELogVerbosity::Warning);
	FTarvinSelectionAction::ExecuteFromEditorSelection();
	ASSERT_EQ(ActionLines().size(), 1u);
	EXPECT_EQ(ActionLines()[0].rfind("Warning: ", 0), 0u);
}
}

// SPDX-License-Identifier: MIT
#include "ModuleFixture.h"

#include "Core/Text.h"
#include "Engine/InstancedStaticMeshComponent.h"
#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/SlateNotificationManager.h"
#include "TarvinSelectionAction.h"

namespace
{
using FLines = std::vector<std::string>;

const FVector Location(500, -200, 30);
const FTransform Doubled(FQuat::Identity, Location, FVector(2, 2, 2));
const FTransform Tripled(FQuat::Identity, Location, FVector(3, 3, 3));
const FTransform Flat(FQuat::Identity, Location, FVector(2, 0, 2));

constexpr int32 CreateNewAsset = 0;
constexpr int32 ApplyToAll = 1;

class Executing : public FModuleTest
{
protected:
	static void BakeSelection() { FTarvinSelectionAction::ExecuteFromEditorSelection(); }

	/// Answers the next question with the button of that index, its box ticked or not.
	void AnswerOnce(int32 Button, bool bTick = false)
	{
		Backend->RespondOnce(
			[Button, bTick](SCustomDialog& Dialog)
			{
				if (bTick)
				{
					FindWidgets<SCheckBox>(Dialog)[0]->ToggleCheckedState();
				}
				Dialog.PressButton(Button);
			});
	}

	int32 NumQuestions() const { return Backend->GetShownDialogs().Num(); }

	/// A selected component whose mesh another one uses as well.
	static UStaticMeshComponent* PlaceSelectedShared(const TCHAR* Name, const FTransform& Where = Doubled)
	{
		UStaticMesh* const Mesh = MakeMesh(Name);
		Place(Mesh);
		return PlaceSelected(Mesh, Where);
	}

	static bool IsBaked(const UStaticMeshComponent* Component)
	{
		return Component->GetComponentTransform() == FTransform(Location);
	}

	/// Fails unless that is the only line of the pipeline and the only toast.
	void ExpectMessage(const std::string& Message) const
	{
		EXPECT_EQ(ActionLines(), (FLines{"Log: " + Message}));
		EXPECT_EQ(Toasts(), (FLines{Message}));
	}
};

TEST_F(Executing, EmptySelectionIsToldAndLeavesTheEditorAlone)
{
	BakeSelection();
	ExpectMessage("No static mesh selected");
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
	EXPECT_EQ(GEditor->GetNumPivotUpdates(), 0);
	EXPECT_EQ(GEditor->GetNumRedraws(), 0);
}

TEST_F(Executing, SelectionWithoutStaticMeshesIsToldTheSame)
{
	GEditor->SelectActor(PlaceFrame(FTransform())->GetOwner(), true);
	FTarvinSelectionAction::ExecuteSetPivot(ETarvinPivotPosition::Top);
	ExpectMessage("No static mesh selected");
}

TEST_F(Executing, WithoutAnEditorTheUserIsToldTheSame)
{
	UEditorEngine::Destroy();
	BakeSelection();
	ExpectMessage("No static mesh selected");
}

TEST_F(Executing, BakeReportsItsMeshesAndPutsThePivotRight)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	PlaceSelected(MakeMesh(TEXT("Stone")), Tripled);
	bool bHitProxies = false;
	GEditor->OnRedraw().AddLambda([&bHitProxies](bool bInvalidateHitProxies) { bHitProxies = bInvalidateHitProxies; });
	BakeSelection();
	ExpectMessage("Baked 2 mesh(es)");
	EXPECT_EQ(GEditor->GetNumPivotUpdates(), 1);
	EXPECT_EQ(GEditor->GetPivotLocation(), Location);
	EXPECT_EQ(GEditor->GetNumRedraws(), 1);
	EXPECT_TRUE(bHitProxies);
	EXPECT_EQ(Transactions().GetQueueLength(), 1);
	EXPECT_EQ(NumQuestions(), 0);
}

TEST_F(Executing, PivotIsShownWhereSetPivotPutIt)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), FTransform(Location));
	FTarvinSelectionAction::ExecuteSetPivot(ETarvinPivotPosition::Top);
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(501.5, -198, 41));
	EXPECT_EQ(Transactions().GetTransaction(0).GetContext().Title.ToString(), TEXT("Set Pivot"));
}

TEST_F(Executing, SetPivotReportsItsPositionAndCount)
{
	for (const TCHAR* Name : {TEXT("A"), TEXT("B"), TEXT("C")})
	{
		PlaceSelected(MakeMesh(Name), Doubled);
	}
	FTarvinSelectionAction::ExecuteSetPivot(ETarvinPivotPosition::Bottom);
	ExpectMessage("Pivot moved to bottom on 3 mesh(es)");
}

TEST_F(Executing, UnusableSelectionIsNotAnEmptyOne)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	Actor->AddComponent<UInstancedStaticMeshComponent>()->SetStaticMesh(MakeMesh(TEXT("Rock")));
	GEditor->SelectActor(Actor, true);
	BakeSelection();
	ExpectMessage("Baked 0 mesh(es) · 1 instanced component(s) skipped");
	EXPECT_EQ(GEditor->GetNumPivotUpdates(), 0);
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
}

TEST_F(Executing, EverySkipIsToldAloneToo)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled)->CreationMethod = EComponentCreationMethod::Instance;
	BakeSelection();
	EXPECT_EQ(Toasts().back(), "Baked 0 mesh(es) · 1 blueprint component(s) skipped");

	GEditor->SelectNone();
	PlaceSelected(nullptr);
	BakeSelection();
	EXPECT_EQ(Toasts().back(), "Baked 0 mesh(es) · 1 component(s) without a mesh skipped");

	GEditor->SelectNone();
	PlaceSelected(MakeMesh(TEXT("Stone")))
		->AttachToComponent(PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 45), FVector(), FVector(1, 2, 3))));
	BakeSelection();
	EXPECT_EQ(Toasts().back(), "Baked 0 mesh(es) · 1 skipped (rotated, non-uniformly scaled parent)");
}

TEST_F(Executing, AllPartsOfTheMessageComeInThisOrder)
{
	AActor* const Actor = World()->SpawnActor<AActor>();
	GEditor->SelectActor(Actor, true);
	Actor->AddComponent<UInstancedStaticMeshComponent>();
	for (int32 Index = 0; Index < 2; ++Index)
	{
		Actor->AddComponent<UStaticMeshComponent>(NAME_None, EComponentCreationMethod::Instance);
	}
	for (int32 Index = 0; Index < 3; ++Index)
	{
		Actor->AddComponent<UStaticMeshComponent>();
	}
	USceneComponent* const Sheared = PlaceFrame(FTransform(Turn(FVector(0, 0, 1), 45), FVector(), FVector(1, 2, 3)));
	for (int32 Index = 0; Index < 4; ++Index)
	{
		PlaceSelected(MakeMesh(TEXT("Rock")))->AttachToComponent(Sheared);
	}
	PlaceSelectedShared(TEXT("A"));
	PlaceSelectedShared(TEXT("B"));
	PlaceSelected(MakeMesh(TEXT("Sheet")), Flat);
	PlaceSelected(MakeMesh(TEXT("Sole")), Doubled);
	AnswerOnce(CreateNewAsset, true);
	BakeSelection();
	const std::string Message =
		"Baked 3 mesh(es) · 1 instanced component(s) skipped · 2 blueprint component(s) skipped"
		" · 3 component(s) without a mesh skipped · 4 skipped (rotated, non-uniformly scaled parent)"
		" · 2 new asset(s) · 1 asset(s) not baked";
	EXPECT_EQ(Toasts(), (FLines{Message}));
	EXPECT_EQ(ActionLines().back(), "Log: " + Message);
}

TEST_F(Executing, TwoDuplicatesAndOneLeftAloneEndTheMessage)
{
	PlaceSelectedShared(TEXT("A"));
	PlaceSelectedShared(TEXT("B"));
	PlaceSelectedShared(TEXT("C"));
	AnswerOnce(CreateNewAsset);
	AnswerOnce(CreateNewAsset);
	AnswerOnce(2);
	BakeSelection();
	ExpectMessage("Baked 2 mesh(es) · 2 new asset(s) · 1 asset(s) not baked");
}

TEST_F(Executing, CancelledCommandLeavesPivotAndUndoHistoryAlone)
{
	PlaceSelectedShared(TEXT("Rock"));
	AnswerOnce(2);
	BakeSelection();
	ExpectMessage("Baked 0 mesh(es) · 1 asset(s) not baked");
	EXPECT_EQ(GEditor->GetNumPivotUpdates(), 0);
	EXPECT_EQ(GEditor->GetNumRedraws(), 0);
	EXPECT_EQ(Transactions().GetQueueLength(), 0);
}

TEST_F(Executing, EachSharedAssetIsAskedAboutByItsNameAndUsers)
{
	PlaceSelectedShared(TEXT("Rock"));
	UStaticMeshComponent* const Stone = PlaceSelectedShared(TEXT("Stone"));
	Place(Stone->GetStaticMesh());
	BakeSelection();
	ASSERT_EQ(NumQuestions(), 2);
	EXPECT_EQ(Backend->GetShownDialogs()[0].Texts[0],
		TEXT("'Rock' is also used by 1 other actor(s).\n\nBaking in place changes those actors too."));
	EXPECT_EQ(Backend->GetShownDialogs()[1].Texts[0],
		TEXT("'Stone' is also used by 2 other actor(s).\n\nBaking in place changes those actors too."));
}

TEST_F(Executing, TickedAnswerHoldsForTheRestOfTheCommand)
{
	UStaticMeshComponent* const First = PlaceSelectedShared(TEXT("Rock"));
	UStaticMeshComponent* const Second = PlaceSelectedShared(TEXT("Stone"));
	AnswerOnce(ApplyToAll, true);
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 1);
	ExpectMessage("Baked 2 mesh(es)");
	EXPECT_TRUE(IsBaked(First));
	EXPECT_TRUE(IsBaked(Second));
	EXPECT_EQ(Second->GetStaticMesh()->GetName(), TEXT("Stone")) << "in place, like the first";
}

TEST_F(Executing, TickedApplyToAllMakesDuplicatesOfAnAssetInTwoShapes)
{
	PlaceSelectedShared(TEXT("Rock"));
	UStaticMesh* const Stone = MakeMesh(TEXT("Stone"));
	UStaticMeshComponent* const Twice = PlaceSelected(Stone, Doubled);
	UStaticMeshComponent* const Thrice = PlaceSelected(Stone, Tripled);
	AnswerOnce(ApplyToAll, true);
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 1);
	ExpectMessage("Baked 3 mesh(es) · 2 new asset(s)");
	EXPECT_NE(Twice->GetStaticMesh(), Stone);
	EXPECT_NE(Thrice->GetStaticMesh(), Stone);
	EXPECT_NE(Twice->GetStaticMesh(), Thrice->GetStaticMesh());
	EXPECT_EQ(LocalPositions(Stone).Last(), FVector(5, 7, 11));
}

TEST_F(Executing, TickedCancelLeavesAllTheRestAlone)
{
	PlaceSelectedShared(TEXT("Rock"));
	PlaceSelectedShared(TEXT("Stone"));
	AnswerOnce(2, true);
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 1);
	ExpectMessage("Baked 0 mesh(es) · 2 asset(s) not baked");
}

TEST_F(Executing, TickedBoxOfAClosedWindowHoldsToo)
{
	PlaceSelectedShared(TEXT("Rock"));
	PlaceSelectedShared(TEXT("Stone"));
	AnswerOnce(-1, true);
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 1);
	ExpectMessage("Baked 0 mesh(es) · 2 asset(s) not baked");
}

TEST_F(Executing, UntickedAnswerHoldsForItsAssetOnly)
{
	UStaticMeshComponent* const First = PlaceSelectedShared(TEXT("Rock"));
	UStaticMeshComponent* const Second = PlaceSelectedShared(TEXT("Stone"));
	AnswerOnce(ApplyToAll);
	AnswerOnce(2);
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 2);
	EXPECT_TRUE(IsBaked(First));
	EXPECT_FALSE(IsBaked(Second));
}

TEST_F(Executing, WithoutAnEditorWorldNobodyElseIsKnownToUseTheAsset)
{
	UStaticMeshComponent* const Component = PlaceSelectedShared(TEXT("Rock"));
	UWorld* const Level = World();
	GEditor->GetEditorWorldContext().SetCurrentWorld(nullptr);
	BakeSelection();
	GEditor->GetEditorWorldContext().SetCurrentWorld(Level);
	EXPECT_EQ(NumQuestions(), 0);
	ExpectMessage("Baked 1 mesh(es)");
	EXPECT_TRUE(IsBaked(Component));
}

TEST_F(Executing, NextCommandAsksAgain)
{
	PlaceSelectedShared(TEXT("Rock"));
	AnswerOnce(2, true);
	BakeSelection();
	BakeSelection();
	EXPECT_EQ(NumQuestions(), 2);
}

TEST_F(Executing, ToastStaysFourSecondsAndIsOtherwisePlain)
{
	BakeSelection();
	ASSERT_EQ(FSlateNotificationManager::Get().GetNotifications().Num(), 1);
	const TSharedRef<SNotificationItem> Toast = FSlateNotificationManager::Get().GetNotifications()[0];
	const FNotificationInfo Plain{FText()};
	EXPECT_EQ(Toast->GetExpireDuration(), 4.0f);
	EXPECT_EQ(Toast->GetFadeInDuration(), Plain.FadeInDuration);
	EXPECT_EQ(Toast->GetFadeOutDuration(), Plain.FadeOutDuration);
	EXPECT_EQ(Toast->GetCompletionState(), SNotificationItem::CS_None);
	EXPECT_EQ(Toast->GetText().GetNamespace(), TEXT("")) << "a literal, the same in every language";
	EXPECT_FALSE(Toast->IsExpired(Toast->GetAddedTime() + 3.9));
	EXPECT_TRUE(Toast->IsExpired(Toast->GetAddedTime() + 20.0));
}

TEST_F(Executing, OperationWithoutASummaryReportsMeshesBaked)
{
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	Operation.FormatSummary = nullptr;
	FTarvinSelectionAction::Execute(Operation);
	ExpectMessage("Baked 1 mesh(es)");
}

TEST_F(Executing, SummaryIsTheOperationsOwn)
{
	PlaceSelected(nullptr);
	FTarvinOperation Operation = FTarvinOperation::RotationScaleBake();
	Operation.FormatSummary = [](int32 Count) { return FString::Printf(TEXT("100%% of %d"), Count); };
	FTarvinSelectionAction::Execute(Operation);
	ExpectMessage("100% of 0 · 1 component(s) without a mesh skipped");
}

TEST_F(Executing, EachCommandTellsItsOwnResult)
{
	BakeSelection();
	PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	BakeSelection();
	EXPECT_EQ(Toasts(), (FLines{"No static mesh selected", "Baked 1 mesh(es)"}));
	EXPECT_EQ(ActionLines(), (FLines{"Log: No static mesh selected", "Log: Baked 1 mesh(es)"}));
}

TEST_F(Executing, OtherTransactionSystemThanTheBufferBakesAllTheSame)
{
	GEditor->Trans = NewObject<UTransactor>(GEditor);
	UStaticMeshComponent* const Component = PlaceSelected(MakeMesh(TEXT("Rock")), Doubled);
	BakeSelection();
	ExpectMessage("Baked 1 mesh(es)");
	EXPECT_TRUE(IsBaked(Component));
	GEditor->Trans = nullptr;
	BakeSelection();
	EXPECT_EQ(Toasts().size(), 2u);
}
}

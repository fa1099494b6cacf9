// SPDX-License-Identifier: MIT
#include "Slate/SlateProgress.h"
#include "SlateTestFixture.h"

#include <cmath>

#include <gmock/gmock.h>

namespace
{
class Notifications : public FSlateTest
{
protected:
	Notifications()
	{
		Manager.SetClock([this] { return Now; });
	}

	TSharedPtr<SNotificationItem> Add(const TCHAR* Text, float Seconds)
	{
		FNotificationInfo Info(FText::FromString(Text));
		Info.ExpireDuration = Seconds;
		return Manager.AddNotification(Info);
	}

	TArray<FString> Listed() const
	{
		TArray<FString> Texts;
		for (const TSharedRef<SNotificationItem>& Item : Manager.GetNotifications())
		{
			Texts.Add(Item->GetText().ToString());
		}
		return Texts;
	}

	FSlateNotificationManager& Manager = FSlateNotificationManager::Get();
	double Now = 1000.0;
};

TEST_F(Notifications, StayForTheirTimeAndGo)
{
	Add(TEXT("short"), 4.0f);
	Now += 1.0;
	Add(TEXT("long"), 7.0f);
	Now += 2.9;
	App().Tick(0.0f);
	EXPECT_THAT(Listed(), testing::ElementsAre(FString(TEXT("short")), FString(TEXT("long"))));
	Now += 0.1;
	App().Tick(0.0f);
	EXPECT_THAT(Listed(), testing::ElementsAre(FString(TEXT("long"))));
	Now += 4.0;
	App().Tick(0.0f);
	EXPECT_TRUE(Listed().IsEmpty());
}

TEST_F(Notifications, BackEndSeesThemComeAndGo)
{
	Add(TEXT("first"), 4.0f);
	Add(TEXT("second"), 5.0f);
	EXPECT_THAT(
		Backend->GetAddedNotifications(), testing::ElementsAre(FString(TEXT("first")), FString(TEXT("second"))));
	EXPECT_TRUE(Backend->GetRemovedNotifications().IsEmpty());
	Now += 4.5;
	App().Tick(0.0f);
	EXPECT_THAT(Backend->GetRemovedNotifications(), testing::ElementsAre(FString(TEXT("first"))));
}

TEST_F(Notifications, ExpiredOnesGoWhenAnotherComesEvenIfNobodyTicks)
{
	Add(TEXT("old"), 4.0f);
	Now += 5.0;
	Add(TEXT("new"), 4.0f);
	EXPECT_THAT(Listed(), testing::ElementsAre(FString(TEXT("new"))));
}

TEST_F(Notifications, DefaultsHoldForWhatIsNotSaid)
{
	const FNotificationInfo Info(FText::FromString(TEXT("text")));
	EXPECT_EQ(Info.Text.ToString(), TEXT("text"));
	EXPECT_TRUE(Info.bFireAndForget);
	EXPECT_GT(Info.ExpireDuration, 0.0f);
	const TSharedPtr<SNotificationItem> Item = Manager.AddNotification(Info);
	EXPECT_EQ(Item->GetCompletionState(), SNotificationItem::CS_None);
	EXPECT_EQ(Item->GetFadeInDuration(), Info.FadeInDuration);
	EXPECT_EQ(Item->GetAddedTime(), Now);
}

TEST_F(Notifications, ThoseThatDoNotExpireByThemselvesWaitToBeTold)
{
	FNotificationInfo Info(FText::FromString(TEXT("working")));
	Info.bFireAndForget = false;
	Info.ExpireDuration = 3.0f;
	const TSharedPtr<SNotificationItem> Item = Manager.AddNotification(Info);
	Now += 100.0;
	Manager.Tick();
	EXPECT_EQ(Listed().Num(), 1);
	Item->ExpireAndFadeout();
	Now += 2.0;
	Manager.Tick();
	EXPECT_EQ(Listed().Num(), 1);
	Now += 1.0;
	Manager.Tick();
	EXPECT_TRUE(Listed().IsEmpty());
}

TEST_F(Notifications, FadingOutTakesOneAwayAtOnce)
{
	const TSharedPtr<SNotificationItem> Item = Add(TEXT("gone"), 10.0f);
	Add(TEXT("stays"), 10.0f);
	Item->Fadeout();
	EXPECT_THAT(Listed(), testing::ElementsAre(FString(TEXT("stays"))));
}

TEST_F(Notifications, ChangesAreTold)
{
	TArray<FString> Told;
	const FDelegateHandle Handle = Manager.OnItemChanged().AddLambda(
		[&Told](const TSharedRef<SNotificationItem>& Item) { Told.Add(Item->GetText().ToString()); });
	const TSharedPtr<SNotificationItem> Item = Add(TEXT("saving"), 10.0f);
	Item->SetText(FText::FromString(TEXT("saved")));
	Item->SetCompletionState(SNotificationItem::CS_Success);
	Manager.OnItemChanged().Remove(Handle);
	EXPECT_THAT(Told, testing::ElementsAre(FString(TEXT("saved")), FString(TEXT("saved"))));
	EXPECT_EQ(Item->GetCompletionState(), SNotificationItem::CS_Success);
}

TEST_F(Notifications, AreHeldWithoutAnApplicationToo)
{
	FSlateApplication::Shutdown();
	Add(TEXT("nobody looks"), 4.0f);
	EXPECT_THAT(Listed(), testing::ElementsAre(FString(TEXT("nobody looks"))));
	EXPECT_TRUE(Backend->GetAddedNotifications().IsEmpty());
}

using Progress = FSlateTest;

TEST_F(Progress, BackEndSeesItOpenMoveAndClose)
{
	const TSharedRef<FSlateProgress> Work = App().OpenProgress(FText::FromString(TEXT("Building")), false);
	EXPECT_EQ(App().GetActiveProgress(), Work.ToSharedPtr());
	EXPECT_TRUE(App().IsModalOrProgressOpen());
	Work->Update(0.25, FText::FromString(TEXT("Crate")));
	Work->Close();
	Work->Close();
	EXPECT_THAT(Backend->GetProgressEvents(), testing::ElementsAre(FString(TEXT("open Building")),
												  FString(TEXT("0.25 Crate")), FString(TEXT("close Building"))));
	EXPECT_FALSE(App().GetActiveProgress().IsValid());
	EXPECT_FALSE(App().IsModalOrProgressOpen());
}

TEST_F(Progress, OneOpenedWithinAnotherIsOnTop)
{
	const TSharedRef<FSlateProgress> Outer = App().OpenProgress(FText::FromString(TEXT("Outer")), false);
	const TSharedRef<FSlateProgress> Inner = App().OpenProgress(FText::FromString(TEXT("Inner")), false);
	EXPECT_EQ(App().GetActiveProgress(), Inner.ToSharedPtr());
	Inner->Close();
	EXPECT_EQ(App().GetActiveProgress(), Outer.ToSharedPtr());
	Outer->Close();
}

TEST_F(Progress, FractionStaysBetweenNothingAndAll)
{
	const TSharedRef<FSlateProgress> Work = App().OpenProgress(FText::FromString(TEXT("Building")), false);
	const double Given[] = {-0.5, 1.5, std::nan(""), 0.75};
	const double Kept[] = {0.0, 1.0, 0.0, 0.75};
	for (int32 Index = 0; Index < 4; ++Index)
	{
		Work->Update(Given[Index], FText());
		EXPECT_EQ(Work->GetFraction(), Kept[Index]);
	}
	Work->Close();
}

TEST_F(Progress, OnlyWorkThatAllowsItIsCancelled)
{
	const TSharedRef<FSlateProgress> Work = App().OpenProgress(FText::FromString(TEXT("Building")), false);
	Work->RequestCancel();
	EXPECT_FALSE(Work->WantsCancel());
	Work->Close();
}

TEST_F(Progress, MayOutliveTheApplication)
{
	const TSharedRef<FSlateProgress> Work = App().OpenProgress(FText::FromString(TEXT("Building")), false);
	FSlateApplication::Shutdown();
	Work->Update(0.5, FText());
	Work->Close();
	EXPECT_FALSE(Work->IsOpen());
}
}

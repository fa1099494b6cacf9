// SPDX-License-Identifier: MIT
#include "Slate/CustomDialog.h"
#include "SlateQt/QtToasts.h"
#include "SlateQtTestFixture.h"

#include <QImage>

using testing::DoubleNear;
using testing::IsEmpty;
using testing::SizeIs;

namespace
{
class QtToast : public FSlateQtTest
{
protected:
	/// Shows a notification that stays for 4 seconds.
	static TSharedPtr<SNotificationItem> Add(const TCHAR* Text)
	{
		FNotificationInfo Info(FText::FromString(Text));
		Info.ExpireDuration = 4.0f;
		return FSlateNotificationManager::Get().AddNotification(Info);
	}

	void Advance(double Seconds)
	{
		Time += Seconds;
		Backend->Tick(static_cast<float>(Seconds));
	}

	/// The toasts over the window, oldest first.
	std::vector<FQtToast*> Toasts() const
	{
		std::vector<FQtToast*> Result;
		for (QWidget* Widget : Window.findChildren<QWidget*>(QStringLiteral("Toast")))
		{
			Result.push_back(static_cast<FQtToast*>(Widget));
		}
		return Result;
	}
};

TEST_F(QtToast, StandsInTheLowerRightCornerWithItsText)
{
	Add(TEXT("Baked 3 mesh(es)"));
	ASSERT_THAT(Toasts(), SizeIs(1));
	const FQtToast& Toast = *Toasts()[0];
	EXPECT_EQ(Toast.GetText(), QStringLiteral("Baked 3 mesh(es)"));
	EXPECT_TRUE(Toast.isVisible());
	EXPECT_EQ(Toast.geometry().right(), Window.width() - 16 - 1);
	EXPECT_EQ(Toast.geometry().bottom(), Window.height() - 16 - 1);
}

TEST_F(QtToast, FadesInStaysFadesOutAndGoes)
{
	Add(TEXT("Hello"));
	EXPECT_EQ(Toasts()[0]->GetOpacity(), 0.0);
	Advance(0.25);
	EXPECT_THAT(Toasts()[0]->GetOpacity(), DoubleNear(0.5, 1e-6));
	Advance(0.5);
	EXPECT_EQ(Toasts()[0]->GetOpacity(), 1.0);
	Advance(3.0);
	EXPECT_FALSE(Toasts()[0]->IsFadingOut());
	Advance(0.25);
	EXPECT_TRUE(Toasts()[0]->IsFadingOut());
	EXPECT_EQ(Toasts()[0]->GetOpacity(), 1.0);
	Advance(0.5);
	EXPECT_THAT(Toasts()[0]->GetOpacity(), DoubleNear(0.75, 1e-6));
	Advance(1.6);
	EXPECT_THAT(Toasts(), IsEmpty());
}

TEST_F(QtToast, OneThatEndsEarlyFadesFromWhatWasSeen)
{
	const TSharedPtr<SNotificationItem> Item = Add(TEXT("Hello"));
	Advance(0.125);
	Item->Fadeout();
	Advance(1.0);
	EXPECT_THAT(Toasts()[0]->GetOpacity(), DoubleNear(0.125, 1e-6));
}

TEST_F(QtToast, SeveralAreStackedWithTheNewestAtTheBottom)
{
	Add(TEXT("One"));
	Advance(1.0);
	Add(TEXT("Two,\nof two lines"));
	Advance(1.0);
	Add(TEXT("Three"));
	const std::vector<FQtToast*> All = Toasts();
	ASSERT_THAT(All, SizeIs(3));
	EXPECT_EQ(All[2]->geometry().bottom(), Window.height() - 17);
	EXPECT_EQ(All[1]->geometry().bottom() + 8, All[2]->geometry().top() - 1);
	EXPECT_EQ(All[0]->geometry().bottom() + 8, All[1]->geometry().top() - 1);
	EXPECT_GT(All[1]->height(), All[0]->height());
	Advance(2.5);
	Advance(2.5);
	ASSERT_THAT(Toasts(), SizeIs(2));
	EXPECT_EQ(Toasts()[0]->GetText(), QStringLiteral("Two,\nof two lines"));
}

TEST_F(QtToast, LongTextIsWrappedAndSeenInFull)
{
	Add(TEXT("Baked 12 mesh(es) · 3 instanced component(s) skipped · 2 blueprint component(s) skipped · 4 component(s) "
			 "without a mesh skipped · 5 new asset(s)"));
	const FQtToast& Toast = *Toasts()[0];
	EXPECT_LE(Toast.width(), 420 + 2 * 16 + 1);
	EXPECT_GT(Toast.height(), 2 * Toast.fontMetrics().lineSpacing());
}

TEST_F(QtToast, FollowsTheWindowsSize)
{
	Add(TEXT("Hello"));
	Window.resize(640, 480);
	EXPECT_EQ(Toasts()[0]->geometry().bottomRight(), QPoint(640 - 17, 480 - 17));
}

TEST_F(QtToast, NeverTakesAClickOrTheFocus)
{
	Line->setFocus();
	Add(TEXT("Hello"));
	EXPECT_TRUE(Line->hasFocus());
	Toasts()[0]->move(Line->mapTo(&Window, QPoint()));
	Line->clearFocus();
	ClickOn(*Line);
	EXPECT_TRUE(Line->hasFocus());
}

TEST_F(QtToast, ChangedTextAndStateAreShown)
{
	const TSharedPtr<SNotificationItem> Item = Add(TEXT("Working"));
	Advance(1.0);
	const QImage Before = Toasts()[0]->grab().toImage();
	Item->SetCompletionState(SNotificationItem::CS_Fail);
	EXPECT_NE(Toasts()[0]->grab().toImage(), Before);
	const int Width = Toasts()[0]->width();
	Item->SetText(FText::FromString(TEXT("Working on something that takes long")));
	EXPECT_GT(Toasts()[0]->width(), Width);
	EXPECT_EQ(Toasts()[0]->geometry().right(), Window.width() - 17);
}

TEST_F(QtToast, PictureFollowsTheOpacity)
{
	Add(TEXT("Hello"));
	const QImage Unseen = Window.grab().toImage();
	Advance(1.0);
	const QImage Seen = Window.grab().toImage();
	EXPECT_NE(Unseen, Seen);
	Advance(4.0);
	Advance(2.5);
	EXPECT_EQ(Window.grab().toImage(), Unseen);
}

TEST_F(QtToast, WaitsForAWindow)
{
	Backend->SetMainWindow(nullptr);
	Add(TEXT("Early"));
	EXPECT_THAT(Toasts(), IsEmpty());
	Backend->SetMainWindow(&Window);
	ASSERT_THAT(Toasts(), SizeIs(1));
	EXPECT_EQ(Toasts()[0]->GetText(), QStringLiteral("Early"));
}

TEST_F(QtToast, FadesWhileADialogIsUp)
{
	Add(TEXT("Hello"));
	const TSharedRef<SCustomDialog> Dialog =
		SNew(SCustomDialog).Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Go")))});
	WhenModalOpens(
		[this](QWidget& Modal)
		{
			Advance(0.5);
			EXPECT_EQ(Toasts()[0]->GetOpacity(), 1.0);
			Modal.close();
		});
	Dialog->ShowModal();
}

TEST_F(QtToast, TimerOfTheBackEndTicksPreProcessors)
{
	const int Before = Processor->Ticks;
	EXPECT_TRUE(QTest::qWaitFor([&] { return Processor->Ticks > Before; }));
}
}

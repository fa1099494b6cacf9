// SPDX-License-Identifier: MIT
#include "Slate/CustomDialog.h"
#include "Slate/SlateProgress.h"
#include "SlateQtTestFixture.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

using testing::IsEmpty;

namespace
{
/// Counts how often a widget is painted.
class FPaintCounter : public QObject
{
public:
	explicit FPaintCounter(QWidget& Widget) { Widget.installEventFilter(this); }
	int Paints = 0;

	bool eventFilter(QObject*, QEvent* Event) override
	{
		Paints += Event->type() == QEvent::Paint ? 1 : 0;
		return false;
	}
};

class QtProgress : public FSlateQtTest
{
protected:
	static TSharedRef<FSlateProgress> Open(const TCHAR* Title, bool bCanCancel = false)
	{
		return App().OpenProgress(FText::FromString(Title), bCanCancel);
	}

	static QWidget& Dialog()
	{
		QWidget* Modal = QApplication::activeModalWidget();
		EXPECT_NE(Modal, nullptr);
		EXPECT_EQ(Modal->objectName(), QStringLiteral("SlateProgress"));
		return *Modal;
	}

	template <typename TWidget>
	static TWidget& Find(const char* Name)
	{
		auto* Found = Dialog().findChild<TWidget*>(QLatin1String(Name));
		EXPECT_NE(Found, nullptr);
		return *Found;
	}
};

TEST_F(QtProgress, ShowsTitleMessageAndFraction)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	EXPECT_TRUE(Dialog().isVisible());
	EXPECT_EQ(Find<QLabel>("Title").text(), QStringLiteral("Baking"));
	Work->Update(0.37, FText::FromString(TEXT("<Crate> & Co")));
	EXPECT_EQ(Find<QProgressBar>("Bar").value(), 370);
	EXPECT_EQ(Find<QProgressBar>("Bar").maximum(), 1000);
	EXPECT_EQ(Find<QLabel>("Message").text(), QStringLiteral("<Crate> & Co"));
	Work->Close();
	EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(QtProgress, IsPaintedWhileTheWorkRuns)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	FPaintCounter Bar(Find<QProgressBar>("Bar"));
	for (int Step = 1; Step <= 5; ++Step)
	{
		Work->Update(0.1 * Step, FText());
		EXPECT_GE(Bar.Paints, Step);
	}
	Work->Close();
}

TEST_F(QtProgress, WindowBehindIsPaintedToo)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	FPaintCounter Behind(*Panel);
	Panel->update();
	Work->Update(0.5, FText());
	EXPECT_GE(Behind.Paints, 1);
	Work->Close();
}

TEST_F(QtProgress, NestedWorkIsShownBelowAndGoesFirst)
{
	const TSharedRef<FSlateProgress> Outer = Open(TEXT("Saving"));
	const TSharedRef<FSlateProgress> Inner = Open(TEXT("Building"));
	QList<QLabel*> Titles = Dialog().findChildren<QLabel*>(QStringLiteral("Title"));
	ASSERT_EQ(Titles.size(), 2);
	EXPECT_EQ(Titles[0]->text(), QStringLiteral("Saving"));
	EXPECT_EQ(Titles[1]->text(), QStringLiteral("Building"));
	EXPECT_LT(Titles[0]->mapTo(&Dialog(), QPoint()).y(), Titles[1]->mapTo(&Dialog(), QPoint()).y());
	Inner->Close();
	Titles = Dialog().findChildren<QLabel*>(QStringLiteral("Title"));
	ASSERT_EQ(Titles.size(), 1);
	EXPECT_EQ(Titles[0]->text(), QStringLiteral("Saving"));
	Outer->Close();
}

TEST_F(QtProgress, CancelButtonAsksTheWorkToStop)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"), true);
	ASSERT_TRUE(Find<QPushButton>("Cancel").isVisible());
	EXPECT_EQ(Find<QPushButton>("Cancel").text(), QStringLiteral("Cancel"));
	ClickOn(Find<QPushButton>("Cancel"));
	EXPECT_TRUE(Work->WantsCancel());
	EXPECT_FALSE(Find<QPushButton>("Cancel").isEnabled());
	EXPECT_EQ(Find<QPushButton>("Cancel").text(), QStringLiteral("Cancelling"));
	EXPECT_TRUE(Dialog().isVisible());
	Work->Close();
}

TEST_F(QtProgress, WorkThatCannotBeCancelledHasNoButtonAndIgnoresEscape)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	EXPECT_FALSE(Find<QPushButton>("Cancel").isVisible());
	Click(Qt::Key_Escape);
	EXPECT_FALSE(Work->WantsCancel());
	EXPECT_TRUE(Dialog().isVisible());
	Dialog().close();
	EXPECT_TRUE(Dialog().isVisible());
	Work->Close();
}

TEST_F(QtProgress, EscapeCancels)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"), true);
	Click(Qt::Key_Escape);
	EXPECT_TRUE(Work->WantsCancel());
	EXPECT_TRUE(Dialog().isVisible());
	Work->Close();
}

TEST_F(QtProgress, KeysGoToItAlone)
{
	FOneCommand One;
	Line->setFocus();
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	QTest::keyClick(Window.windowHandle(), Qt::Key_Q);
	QTest::keyClick(Window.windowHandle(), Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	Work->Update(0.5, FText());
	Work->Close();
	EXPECT_THAT(Processor->Chords(), IsEmpty());
	EXPECT_EQ(One.Runs, 0);
	EXPECT_EQ(Line->text(), QString());
	Activate(Window);
	Click(Qt::Key_B, Qt::ControlModifier | Qt::ShiftModifier);
	EXPECT_EQ(One.Runs, 1);
}

TEST_F(QtProgress, KeysPressedBeforeAndDuringTheWorkReachNothingBehindIt)
{
	Line->setFocus();
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	// Posted, as input of a user is while nobody looks; the work lets it through.
	QTimer::singleShot(0, [this] { QTest::keyClick(Window.windowHandle(), Qt::Key_Q); });
	Work->Update(0.5, FText());
	Work->Close();
	EXPECT_EQ(Line->text(), QString());
}

TEST_F(QtProgress, ManySmallStepsDoNotRepaintEachTime)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	int Ticks = 0;
	QTimer Timer;
	QObject::connect(&Timer, &QTimer::timeout, [&Ticks] { ++Ticks; });
	Timer.start(0);
	// Far fewer looks at the event queue than steps, however slow the machine is.
	constexpr int Steps = 200000;
	for (int Step = 0; Step < Steps; ++Step)
	{
		Work->Update(static_cast<double>(Step) / Steps, FText());
	}
	EXPECT_LT(Ticks, Steps / 10);
	EXPECT_GE(Ticks, 50);
	Work->Close();
}

TEST_F(QtProgress, QuestionInTheMiddleOfTheWorkIsAnsweredAboveIt)
{
	const TSharedRef<FSlateProgress> Work = Open(TEXT("Baking"));
	const TSharedRef<SCustomDialog> Question =
		SNew(SCustomDialog).Buttons({SCustomDialog::FButton(FText::FromString(TEXT("Go")))});
	WhenModalOpens(
		[](QWidget& Modal)
		{
			EXPECT_EQ(Modal.objectName(), QStringLiteral("SCustomDialog"));
			Click(Qt::Key_Tab);
			ClickOn(*Modal.findChild<QPushButton*>(QStringLiteral("Button0")));
		});
	EXPECT_EQ(Question->ShowModal(), 0);
	EXPECT_TRUE(Dialog().isVisible());
	Work->Close();
}

TEST_F(QtProgress, OpensAgainAfterItWasClosed)
{
	Open(TEXT("First"))->Close();
	const TSharedRef<FSlateProgress> Second = Open(TEXT("Second"));
	EXPECT_EQ(Find<QLabel>("Title").text(), QStringLiteral("Second"));
	Second->Close();
}
}

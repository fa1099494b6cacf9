// SPDX-License-Identifier: MIT
#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/Button.h"
#include "Slate/CheckBox.h"
#include "Slate/TextBlock.h"
#include "SlateQt/QtWidgetBuilder.h"
#include "SlateQt/QtWidgetLink.h"
#include "SlateQtTestFixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

namespace
{
class QtWidget : public FSlateQtTest
{
protected:
	/// Shows a host widget in a window of its own.
	QWidget& Show(const TSharedRef<SWidget>& Widget)
	{
		Made.reset(MakeQtWidget(Widget));
		Made->show();
		EXPECT_TRUE(QTest::qWaitForWindowExposed(Made.get()));
		return *Made;
	}

	static TSharedRef<STextBlock> Text(const TCHAR* In) { return SNew(STextBlock).Text(FText::FromString(In)); }

	static QRect In(const QWidget& Root, const QWidget& Widget)
	{
		return {Widget.mapTo(&Root, QPoint()), Widget.size()};
	}

	std::unique_ptr<QWidget> Made;
};

TEST_F(QtWidget, ChildrenStandInARowOrAColumnWithTheirPadding)
{
	const TSharedRef<STextBlock> First = Text(TEXT("First"));
	const TSharedRef<STextBlock> Second = Text(TEXT("Second"));
	QWidget& Row =
		Show(SNew(SHorizontalBox) + SHorizontalBox::Slot().AutoWidth().Padding(2.0f, 3.0f, 5.0f, 7.0f)[First] +
			 SHorizontalBox::Slot().AutoWidth()[Second]);
	const QRect Left = In(Row, *FQtWidgetLink::QtWidgetOf(*First));
	const QRect Right = In(Row, *FQtWidgetLink::QtWidgetOf(*Second));
	EXPECT_EQ(Left.topLeft(), QPoint(2, 3));
	EXPECT_EQ(Right.left() - Left.right() - 1, 5);
	EXPECT_EQ(Row.height() - Left.bottom() - 1, 7);
}

TEST_F(QtWidget, WeightsShareWhatIsLeft)
{
	const TSharedRef<SButton> Narrow = SNew(SButton).Text(FText::FromString(TEXT("a")));
	const TSharedRef<SButton> Wide = SNew(SButton).Text(FText::FromString(TEXT("b")));
	QWidget& Row = Show(SNew(SHorizontalBox) + SHorizontalBox::Slot().FillWidth(1.0f)[Narrow] +
						SHorizontalBox::Slot().FillWidth(3.0f)[Wide]);
	Row.resize(800, 60);
	EXPECT_EQ(FQtWidgetLink::QtWidgetOf(*Narrow)->width(), 200);
	EXPECT_EQ(FQtWidgetLink::QtWidgetOf(*Wide)->width(), 600);
}

TEST_F(QtWidget, BoxLimitsTheWidthOfWhatItHolds)
{
	const TSharedRef<STextBlock> Long =
		SNew(STextBlock)
			.AutoWrapText(true)
			.Text(FText::FromString(
				TEXT("A text that is a good deal wider than three hundred units, as anyone can see")));
	Show(SNew(SBox).MaxDesiredWidth(300.0f).Padding(FMargin(10.0f, 0.0f, 20.0f, 0.0f))[Long]);
	const QWidget& Label = *FQtWidgetLink::QtWidgetOf(*Long);
	EXPECT_LE(Label.width(), 270);
	EXPECT_GE(Label.height(), Label.heightForWidth(Label.width()));
	EXPECT_GT(Label.heightForWidth(270), Label.fontMetrics().height());
}

TEST_F(QtWidget, ShortTextIsNoWiderThanItNeeds)
{
	const TSharedRef<STextBlock> Short = SNew(STextBlock).AutoWrapText(true).Text(FText::FromString(TEXT("Short")));
	Show(SNew(SBox).MaxDesiredWidth(460.0f)[Short]);
	const QWidget& Label = *FQtWidgetLink::QtWidgetOf(*Short);
	EXPECT_LT(Label.sizeHint().width(), 200);
	EXPECT_EQ(Label.sizeHint().height(), Label.heightForWidth(Label.sizeHint().width()));
}

TEST_F(QtWidget, VisibilityKeepsOrGivesUpTheRoom)
{
	const TSharedRef<STextBlock> First = Text(TEXT("First"));
	const TSharedRef<STextBlock> Second = Text(TEXT("Second"));
	QWidget& Column =
		Show(SNew(SVerticalBox) + SVerticalBox::Slot().AutoHeight()[First] + SVerticalBox::Slot().AutoHeight()[Second]);
	const auto Height = [&Column]
	{
		// Layouts take changes in when control is back in the event loop.
		QCoreApplication::sendPostedEvents();
		return Column.sizeHint().height();
	};
	const int Full = Height();
	First->SetVisibility(EVisibility::Hidden);
	EXPECT_FALSE(FQtWidgetLink::QtWidgetOf(*First)->isVisible());
	EXPECT_EQ(Height(), Full);
	First->SetVisibility(EVisibility::Collapsed);
	EXPECT_LT(Height(), Full);
	First->SetVisibility(EVisibility::Visible);
	EXPECT_TRUE(FQtWidgetLink::QtWidgetOf(*First)->isVisible());
	EXPECT_EQ(Height(), Full);
}

TEST_F(QtWidget, DisablingAPanelDisablesWhatItHoldsUntilItIsEnabledAgain)
{
	const TSharedRef<SCheckBox> Check = SNew(SCheckBox)[Text(TEXT("Check"))];
	const TSharedRef<SButton> Button = SNew(SButton).IsEnabled(false).Text(FText::FromString(TEXT("Off")));
	const TSharedRef<SVerticalBox> Column =
		SNew(SVerticalBox).IsEnabled(false) + SVerticalBox::Slot()[Check] + SVerticalBox::Slot()[Button];
	Show(Column);
	EXPECT_FALSE(FQtWidgetLink::QtWidgetOf(*Check)->isEnabled());
	Column->SetEnabled(true);
	EXPECT_TRUE(FQtWidgetLink::QtWidgetOf(*Check)->isEnabled());
	EXPECT_FALSE(FQtWidgetLink::QtWidgetOf(*Button)->isEnabled());
}

TEST_F(QtWidget, PanelThatGetsAndLosesChildrenIsShownAnew)
{
	const TSharedRef<SVerticalBox> Column = SNew(SVerticalBox) + SVerticalBox::Slot()[Text(TEXT("Old"))];
	QWidget& Shown = Show(Column);
	Column->AddSlot(SVerticalBox::Slot()[Text(TEXT("New"))]);
	EXPECT_EQ(FindWidgets<STextBlock>(*Column).Num(), 2);
	QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
	QList<QLabel*> Labels = Shown.findChildren<QLabel*>();
	ASSERT_EQ(Labels.size(), 2);
	EXPECT_EQ(Labels[1]->text(), QStringLiteral("New"));
	EXPECT_TRUE(Labels[1]->isVisible());
	Column->ClearChildren();
	QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
	EXPECT_TRUE(Shown.findChildren<QLabel*>().isEmpty());
}

TEST_F(QtWidget, ClickedButtonRunsWhatItStandsFor)
{
	int Clicks = 0;
	const TSharedRef<SButton> Button = SNew(SButton)
										   .Text(FText::FromString(TEXT("Go")))
										   .ToolTipText(FText::FromString(TEXT("<i>Goes</i>")))
										   .OnClicked(FOnClicked::CreateLambda(
											   [&Clicks]
											   {
												   ++Clicks;
												   return FReply::Handled();
											   }));
	QWidget& Shown = Show(Button);
	ClickOn(Shown);
	EXPECT_EQ(Clicks, 1);
	EXPECT_TRUE(Shown.toolTip().contains(QStringLiteral("&lt;i&gt;")));
}

TEST_F(QtWidget, UndeterminedCheckBoxIsShownAndACheckFollows)
{
	const TSharedRef<SCheckBox> Check = SNew(SCheckBox).IsChecked(ECheckBoxState::Undetermined)[Text(TEXT("Mixed"))];
	auto* Box = qobject_cast<QCheckBox*>(&Show(Check));
	ASSERT_NE(Box, nullptr);
	EXPECT_EQ(Box->checkState(), Qt::PartiallyChecked);
	QTest::mouseClick(Box->windowHandle(), Qt::LeftButton, Qt::NoModifier, QPoint(8, Box->height() / 2));
	EXPECT_EQ(Check->GetCheckedState(), ECheckBoxState::Checked);
	EXPECT_EQ(Box->checkState(), Qt::Checked);
}

TEST_F(QtWidget, TagIsTheObjectName)
{
	EXPECT_EQ(Show(SNew(STextBlock).Tag(TEXT("Body"))).objectName(), QStringLiteral("Body"));
}

TEST_F(QtWidget, HostWidgetOutlivesItsQtWidget)
{
	const TSharedRef<STextBlock> Block = Text(TEXT("Before"));
	Show(Block);
	Made.reset();
	Block->SetText(FText::FromString(TEXT("After")));
	EXPECT_EQ(Block->GetText().ToString(), TEXT("After"));
	EXPECT_EQ(FQtWidgetLink::QtWidgetOf(*Block), nullptr);
}
}

// SPDX-License-Identifier: MIT
#include "SlateQt/QtTheme.h"
#include "SlateQtTestFixture.h"

#include <QPalette>

#include <algorithm>
#include <cmath>

namespace
{
class QtTheme : public FSlateQtTest
{
protected:
	~QtTheme() override { ApplyQtTheme(EQtTheme::System); }

	static double Contrast(QColor First, QColor Second)
	{
		const auto Luminance = [](const QColor& Colour)
		{
			const auto Linear = [](double Value)
			{ return Value <= 0.04045 ? Value / 12.92 : std::pow((Value + 0.055) / 1.055, 2.4); };
			return 0.2126 * Linear(static_cast<double>(Colour.redF())) +
				   0.7152 * Linear(static_cast<double>(Colour.greenF())) +
				   0.0722 * Linear(static_cast<double>(Colour.blueF()));
		};
		const double A = Luminance(First) + 0.05;
		const double B = Luminance(Second) + 0.05;
		return std::max(A, B) / std::min(A, B);
	}
};

TEST_F(QtTheme, ChangesTheColoursOfOpenWindows)
{
	ApplyQtTheme(EQtTheme::Light);
	EXPECT_FALSE(IsQtThemeDark());
	QCoreApplication::processEvents();
	const QImage Light = Window.grab().toImage();
	ApplyQtTheme(EQtTheme::Dark);
	EXPECT_TRUE(IsQtThemeDark());
	EXPECT_EQ(GetQtTheme(), EQtTheme::Dark);
	QCoreApplication::processEvents();
	const QImage Dark = Window.grab().toImage();
	EXPECT_GT(Light.pixelColor(790, 590).lightness(), 200);
	EXPECT_LT(Dark.pixelColor(790, 590).lightness(), 80);
}

TEST_F(QtTheme, SystemThemeIsThatOfTheDesktop)
{
	ApplyQtTheme(EQtTheme::Dark);
	ApplyQtTheme(EQtTheme::System);
	// The desktop that tests run on has no colours of its own, which Qt draws light.
	EXPECT_FALSE(IsQtThemeDark());
	QEvent Changed(QEvent::ThemeChange);
	QCoreApplication::sendEvent(&Window, &Changed);
	EXPECT_FALSE(IsQtThemeDark());
	EXPECT_EQ(GetQtTheme(), EQtTheme::System);
}

TEST_F(QtTheme, TextIsReadableInBothThemes)
{
	for (const bool bDark : {false, true})
	{
		const QPalette Palette = MakeQtPalette(bDark);
		EXPECT_GE(Contrast(Palette.color(QPalette::Window), Palette.color(QPalette::WindowText)), 7.0);
		EXPECT_GE(Contrast(Palette.color(QPalette::Base), Palette.color(QPalette::Text)), 7.0);
		EXPECT_GE(Contrast(Palette.color(QPalette::Button), Palette.color(QPalette::ButtonText)), 7.0);
		EXPECT_GE(Contrast(Palette.color(QPalette::Highlight), Palette.color(QPalette::HighlightedText)), 4.5);
		EXPECT_GE(Contrast(Palette.color(QPalette::ToolTipBase), Palette.color(QPalette::ToolTipText)), 7.0);
	}
}
}

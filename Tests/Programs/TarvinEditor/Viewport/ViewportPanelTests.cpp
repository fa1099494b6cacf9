// SPDX-License-Identifier: MIT
#include "SlateQt/QtPrelude.h"

#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Viewport/OpenGlSupport.h"
#include "Viewport/ViewportPanel.h"
#include "ViewportTestApplication.h"

#include <QLabel>
#include <QTest>

namespace
{
class ViewportPlainPanel : public FEditorFixture
{
protected:
	ViewportPlainPanel() { EnsureViewportTestApplication(); }
	~ViewportPlainPanel() override { qunsetenv("TARVIN_NO_OPENGL"); }
};
}

TEST_F(ViewportPlainPanel, SaysThatThePlatformHasNoOpenGl)
{
	FViewportPanel Panel;
	EXPECT_FALSE(Panel.HasPicture());
	EXPECT_EQ(Panel.WhyNoPicture().toStdString(),
		"There is no 3D view because the display platform \"offscreen\" has no OpenGL for windows.");
	const auto* const Label = Panel.findChild<QLabel*>(QStringLiteral("WhyNoPicture"));
	ASSERT_NE(Label, nullptr);
	EXPECT_EQ(Label->text(), Panel.WhyNoPicture());
	EXPECT_EQ(Label->alignment(), Qt::AlignCenter);
	Panel.resize(300, 400);
	Panel.show();
	ASSERT_TRUE(QTest::qWaitForWindowExposed(&Panel));
	// All of the text has room, and is told apart from what is behind it.
	EXPECT_GE(Label->height(), Label->heightForWidth(Label->width()));
	const QPalette& Palette = Panel.palette();
	EXPECT_GT(
		std::abs(Palette.color(QPalette::WindowText).lightness() - Palette.color(QPalette::Base).lightness()), 100);
}

TEST_F(ViewportPlainPanel, SaysThatTheUserWantsNoOpenGl)
{
	qputenv("TARVIN_NO_OPENGL", "1");
	EXPECT_EQ(WhyNoOpenGl().toStdString(), "There is no 3D view because TARVIN_NO_OPENGL is set.");
	const FViewportPanel Panel;
	EXPECT_EQ(Panel.WhyNoPicture(), WhyNoOpenGl());
}

TEST_F(ViewportPlainPanel, TakesEveryCallAndShowsNothing)
{
	FViewportPanel Panel;
	GEditor->SelectActor(MakeActor(World(), MakeUnevenMesh())->GetOwner(), true);
	Panel.SetWorldChanged();
	Panel.FrameAll();
	Panel.FrameSelection();
	EXPECT_TRUE(Panel.GrabPicture().isNull());
	EXPECT_EQ(Panel.PlaceOf(FVector::ZeroVector), QPoint(-1, -1));
	EXPECT_EQ(Panel.focusPolicy(), Qt::StrongFocus);
}

TEST_F(ViewportPlainPanel, ListensToNothing)
{
	const FViewportPanel Panel;
	EXPECT_FALSE(GEditor->OnRedraw().IsBound());
	EXPECT_FALSE(UWorld::OnActorListChanged().IsBound());
}

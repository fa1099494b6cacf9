// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Viewport/ViewportPanel.h"
#include "Viewport/ViewportSurface.h"

#include <QApplication>
#include <QImage>
#include <QTest>

#include <memory>

/// An editor, and a viewport on a screen that has OpenGL. Pictures go to the folder that the environment variable
/// TARVIN_TEST_PICTURES names, if it names one, to be looked at.
class FPictureTest : public FEditorFixture
{
protected:
	FPictureTest();
	~FPictureTest() override;

	/// Shows the panel, at 800 by 600 pixels, and waits until it is on the screen.
	void Show();

	/// Takes the picture, with all events delivered before.
	QImage Grab();

	/// The same, with the whole world framed.
	QImage GrabAll();

	/// Writes the picture down for whoever wants to look at it.
	static void Keep(const QImage& Picture, const char* Name);

	/// The middle of an actor's mesh, in the picture.
	QPoint PlaceOf(const USceneComponent* Component, const FVector& Local = FVector::ZeroVector) const;

	/// How far apart two colours are: the largest difference of a channel.
	static int Difference(QRgb A, QRgb B);

	/// How many pixels of two pictures differ by more than `Tolerance`.
	static int NumDifferent(const QImage& A, const QImage& B, int Tolerance = 2);

	FViewportSurface& Surface() { return *Panel->GetSurface(); }
	FViewportCamera& Camera() { return Surface().GetModel().GetCamera(); }

	std::unique_ptr<FViewportPanel> Panel;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Vector.h"
#include "SlateQt/QtPrelude.h"

#include <QImage>
#include <QWidget>

#include <functional>

class FViewportSurface;

/// The level editor's view of the world: of the play session's while one runs, else of the edited one. It repaints by
/// itself when the editor, a world or a mesh says that something has changed. Where no OpenGL is to be had, a plain
/// panel that says why.
class FViewportPanel : public QWidget
{
public:
	explicit FViewportPanel(QWidget* Parent = nullptr);

	/// False for the plain panel.
	bool HasPicture() const { return Surface != nullptr; }

	/// What the plain panel says; empty with a picture.
	QString WhyNoPicture() const { return WhyNot; }

	/// The selected actors fill the view; everything does where nothing is selected. Nothing on the plain panel.
	void FrameSelection();
	void FrameAll();

	/// The scene was replaced: collects anew, and frames all at the next picture.
	void SetWorldChanged();

	/// What is shown now, drawn for the occasion, in pixels of the screen; null without a picture.
	QImage GrabPicture();

	/// Where a place in the world is shown, in pixels of the panel. (-1, -1) without a picture, and for what is behind
	/// the eye.
	QPoint PlaceOf(const FVector& World) const;

	/// A right click without a drag, after what is under it was selected alone, if it was not selected already.
	std::function<void(const QPoint& GlobalPosition)> OnContextMenu;

	/// The widget of the picture; null on the plain panel.
	FViewportSurface* GetSurface() const { return Surface; }

private:
	void ShowWhyNot(const QString& InWhyNot);

	FViewportSurface* Surface = nullptr;
	QString WhyNot;
};

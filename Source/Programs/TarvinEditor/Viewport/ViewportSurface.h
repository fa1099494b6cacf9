// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "ViewportInput.h"
#include "ViewportModel.h"
#include "ViewportRenderer.h"

#include <QOpenGLWidget>
#include <QTimer>

#include <functional>

/// The widget that shows the picture. To be made only where `WhyNoOpenGl` is empty.
class FViewportSurface : public QOpenGLWidget
{
public:
	explicit FViewportSurface(QWidget* Parent = nullptr);
	~FViewportSurface() override;

	FViewportModel& GetModel() { return Model; }
	FViewportInput& GetInput() { return Input; }
	const FViewportRenderer& GetRenderer() const { return Renderer; }

	/// How many pictures were drawn.
	int32 GetNumPictures() const { return NumPictures; }

	/// The graphics card refused after all, and this is why. Called from within painting.
	std::function<void(const QString& WhyNot)> OnFailed;

protected:
	void initializeGL() override;
	void paintGL() override;
	bool event(QEvent* Event) override;

private:
	void ReleaseGl();

	FViewportModel Model;
	FViewportInput Input;
	FViewportRenderer Renderer;
	QTimer NextPicture;
	QMetaObject::Connection ContextEnds;
	double PictureMilliseconds = 0.0;
	int32 NumPictures = 0;
	bool bCanDraw = false;
};

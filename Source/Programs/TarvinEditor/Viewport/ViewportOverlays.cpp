// SPDX-License-Identifier: MIT
// What the renderer draws over the meshes: the ground, the pivots, the outline, the axes, the selection rectangle.
#include "ViewportRenderer.h"

#include "ViewportAxes.h"
#include "ViewportUniforms.h"

#include <algorithm>
#include <cmath>

namespace
{
/// Half the picture's width and height at depth 1.
double HalfHeight(const FViewportCamera& Camera)
{
	return Camera.GetHeight() / (2.0 * Camera.GetPixelsPerUnit(1.0));
}
double HalfWidth(const FViewportCamera& Camera)
{
	return Camera.GetWidth() / (2.0 * Camera.GetPixelsPerUnit(1.0));
}

/// One metre of the scenes.
constexpr double Metre = 128.0;
/// The outline goes no farther than this, in pixels of the widget.
constexpr double OutlineReach = 5.0;
constexpr float PivotSize = 15.f;
constexpr float ActorPivotSize = 9.f;
/// More crosses than this would hide what they stand on: only the selection's own is drawn then.
constexpr std::size_t MostActorPivots = 500;
}

void FViewportRenderer::UploadPivots(const FViewportModel& Model)
{
	Pivots.clear();
	const auto Add = [&](const FVector& World, float Size)
	{
		const FVector Place = World - Origin;
		Pivots.push_back({float(Place.X), float(Place.Y), float(Place.Z), Size});
	};
	for (const FViewportActor& Actor : Model.GetScene().GetActors())
	{
		if (Actor.bSelected)
		{
			Add(Actor.Pivot, ActorPivotSize);
		}
	}
	if (Pivots.size() > MostActorPivots)
	{
		Pivots.clear();
	}
	FVector Pivot;
	if (FViewportModel::FindPivot(Pivot))
	{
		Add(Pivot, PivotSize);
	}
	Gl->glBindBuffer(GL_ARRAY_BUFFER, PivotBuffer);
	Gl->glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(Pivots.size() * sizeof(FVector4f)), Pivots.data(), GL_STREAM_DRAW);
}

void FViewportRenderer::DrawGrid(const FViewportCamera& Camera, const FViewportColours& Colours)
{
	const FVector Eye = Camera.GetEye();
	// The closest lines are about a tenth of what is looked at apart.
	const double Seen = std::max(Camera.GetDistance(), std::abs(Eye.Z)) / Metre;
	const double Spacing = Metre * std::pow(10.0, std::floor(std::log10(std::max(Seen, 1e-3) / 2.5)));
	const auto Modulo = [&](double Value) { return float(std::fmod(Value / Spacing, 100.0)); };
	QOpenGLShaderProgram& Program = Programs->Grid;
	Program.bind();
	Program.setUniformValue("Forward", ToQt(Camera.GetForward()));
	Program.setUniformValue("Across", ToQt(Camera.GetRight() * HalfWidth(Camera)));
	Program.setUniformValue("Upwards", ToQt(Camera.GetUp() * HalfHeight(Camera)));
	Program.setUniformValue("EyeHeight", float(Eye.Z));
	Program.setUniformValue("EyePlace", Modulo(Eye.X), Modulo(Eye.Y));
	Program.setUniformValue("EyeFromAxes", float(Eye.X / Spacing), float(Eye.Y / Spacing));
	Program.setUniformValue("Spacing", float(Spacing));
	Program.setUniformValue("FadeDepth", float(Seen * Metre * 14.0));
	Program.setUniformValue("DepthRange", float(Camera.GetNear()), float(Camera.GetFar()));
	Program.setUniformValue("LineColour", ToQt(Colours.Line));
	// Along the host's X lies the Z of scene files, along its Y their X; see DrawViewportAxes.
	Program.setUniformValue("AxisXColour", ToQt(Colours.AxisZ));
	Program.setUniformValue("AxisYColour", ToQt(Colours.AxisX));
	Gl->glEnable(GL_BLEND);
	Gl->glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
	Gl->glDepthMask(GL_FALSE);
	DrawWholePicture(Program);
	Gl->glDepthMask(GL_TRUE);
	Gl->glDisable(GL_BLEND);
}

void FViewportRenderer::DrawPivots(const FViewportCamera& Camera, const FViewportColours& Colours, double PixelRatio)
{
	if (Pivots.empty())
	{
		return;
	}
	QOpenGLShaderProgram& Program = Programs->Pivot;
	Program.bind();
	Program.setUniformValue("ViewProjection", ToQt(Camera.GetViewProjection(Origin)));
	Program.setUniformValue("PivotColour", ToQt(Colours.Pivot));
	Program.setUniformValue("PixelRatio", float(PixelRatio));
	Gl->glDisable(GL_DEPTH_TEST);
	Gl->glEnable(GL_BLEND);
	Gl->glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
	Gl->glEnable(GL_PROGRAM_POINT_SIZE);
	Gl->glBindVertexArray(PivotArray);
	Gl->glDrawArrays(GL_POINTS, 0, GLsizei(Pivots.size()));
	Gl->glDisable(GL_PROGRAM_POINT_SIZE);
	Gl->glDisable(GL_BLEND);
}

/// In pixels of the screen: left, lower edge, right, upper edge. The outline is sought nowhere else.
QVector4D FViewportRenderer::PlaceOfOutline(const FViewportCamera& Camera, double PixelRatio) const
{
	if (!SelectedBounds.IsValid || Selected.Instances.GetPlaces().empty())
	{
		return {};
	}
	QRectF Place;
	for (int32 Index = 0; Index < 8; ++Index)
	{
		const FBox& Box = SelectedBounds;
		FViewportPoint Point;
		if (!Camera.Project({Index & 1 ? Box.Max.X : Box.Min.X, Index & 2 ? Box.Max.Y : Box.Min.Y,
								Index & 4 ? Box.Max.Z : Box.Min.Z},
				Point))
		{
			return {0.f, 0.f, float(Width), float(Height)};
		}
		const QRectF Around(Point.X - OutlineReach, Point.Y - OutlineReach, 2.0 * OutlineReach, 2.0 * OutlineReach);
		Place = Index == 0 ? Around : Place.united(Around);
	}
	return {float(Place.left() * PixelRatio), float(Height - Place.bottom() * PixelRatio),
		float(Place.right() * PixelRatio), float(Height - Place.top() * PixelRatio)};
}

void FViewportRenderer::Compose(
	const FViewportCamera& Camera, const FViewportColours& Colours, const FViewportPicture& Picture)
{
	const double Ratio = Picture.PixelRatio;
	const QImage Axes = DrawViewportAxes(Camera, Colours, Ratio);
	Gl->glBindFramebuffer(GL_FRAMEBUFFER, Picture.Framebuffer);
	Gl->glDisable(GL_DEPTH_TEST);
	const GLuint Textures[] = {Targets.GetSceneTexture(), Targets.GetMaskTexture(), CornerTexture};
	for (GLenum Unit = 0; Unit < 3; ++Unit)
	{
		Gl->glActiveTexture(GL_TEXTURE0 + Unit);
		Gl->glBindTexture(GL_TEXTURE_2D, Textures[Unit]);
	}
	Gl->glTexImage2D(
		GL_TEXTURE_2D, 0, GL_RGBA8, Axes.width(), Axes.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE, Axes.constBits());
	Gl->glActiveTexture(GL_TEXTURE0);
	QOpenGLShaderProgram& Program = Programs->Compose;
	Program.bind();
	Program.setUniformValue("Scene", 0);
	Program.setUniformValue("Mask", 1);
	Program.setUniformValue("Corner", 2);
	Program.setUniformValue("CornerPlace", 6.f, 6.f, float(Axes.width()), float(Axes.height()));
	const QRectF Band = QRectF(Picture.RubberBand);
	Program.setUniformValue("Band", float(Band.left() * Ratio), float(Height - Band.bottom() * Ratio),
		float(Band.right() * Ratio), float(Height - Band.top() * Ratio));
	Program.setUniformValue("OutlinePlace", PlaceOfOutline(Camera, Picture.PixelRatio));
	Program.setUniformValue("PixelRatio", float(Ratio));
	Program.setUniformValue("OutlineColour", ToQt(Colours.Outline));
	Program.setUniformValue("BandColour", ToQt(Colours.Band));
	DrawWholePicture(Program);
	Program.release();
	Gl->glBindVertexArray(0);
}

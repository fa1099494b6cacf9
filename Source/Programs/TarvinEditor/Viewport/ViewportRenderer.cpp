// SPDX-License-Identifier: MIT
#include "ViewportRenderer.h"

#include "ViewportAxes.h"
#include "ViewportShaders.h"

#include <QMatrix4x4>
#include <QVector3D>
#include <QVector4D>

#include <algorithm>
#include <cmath>

namespace
{
QVector3D ToQt(const FVector& Vector)
{
	return {float(Vector.X), float(Vector.Y), float(Vector.Z)};
}

QVector3D ToQt(const QColor& Colour)
{
	return {Colour.redF(), Colour.greenF(), Colour.blueF()};
}

QMatrix4x4 ToQt(const FMatrix& Matrix)
{
	QMatrix4x4 Result;
	for (int Row = 0; Row < 4; ++Row)
	{
		for (int Column = 0; Column < 4; ++Column)
		{
			// Row vectors here, column vectors there.
			Result(Column, Row) = float(Matrix.M[Row][Column]);
		}
	}
	return Result;
}

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

QString FViewportRenderer::Initialize()
{
	Gl = std::make_unique<QOpenGLExtraFunctions>(QOpenGLContext::currentContext());
	Gl->initializeOpenGLFunctions();
	Programs = std::make_unique<FPrograms>();
	QString WhyNot;
	using namespace ViewportShaders;
	const bool bBuilt = Build(Programs->Background, PictureVertex, BackgroundFragment, WhyNot) &&
						Build(Programs->Mesh, MeshVertex, MeshFragment, WhyNot) &&
						Build(Programs->Speck, SpeckVertex, SpeckFragment, WhyNot) &&
						Build(Programs->Mask, MeshVertex, MaskFragment, WhyNot) &&
						Build(Programs->SpeckMask, SpeckVertex, MaskFragment, WhyNot) &&
						Build(Programs->Grid, PictureVertex, GridFragment, WhyNot) &&
						Build(Programs->Pivot, PivotVertex, PivotFragment, WhyNot) &&
						Build(Programs->Compose, PictureVertex, ComposeFragment, WhyNot);
	if (!bBuilt)
	{
		return WhyNot;
	}
	for (GLuint* Buffer : {&All.Buffer, &Selected.Buffer, &PivotBuffer})
	{
		Gl->glGenBuffers(1, Buffer);
	}
	Gl->glGenVertexArrays(1, &NoArray);
	Gl->glGenVertexArrays(1, &PivotArray);
	Gl->glBindVertexArray(PivotArray);
	Gl->glBindBuffer(GL_ARRAY_BUFFER, PivotBuffer);
	Gl->glEnableVertexAttribArray(0);
	Gl->glVertexAttribPointer(0, 4, GL_FLOAT, GL_FALSE, sizeof(FVector4f), nullptr);
	Gl->glBindVertexArray(0);
	Gl->glGenTextures(1, &CornerTexture);
	Gl->glBindTexture(GL_TEXTURE_2D, CornerTexture);
	for (const int Filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
	{
		Gl->glTexParameteri(GL_TEXTURE_2D, GLenum(Filter), GL_LINEAR);
	}
	return {};
}

bool FViewportRenderer::Build(
	QOpenGLShaderProgram& Program, const char* Vertex, const char* Fragment, QString& OutWhyNot)
{
	if (Program.addShaderFromSourceCode(QOpenGLShader::Vertex, Vertex) &&
		Program.addShaderFromSourceCode(QOpenGLShader::Fragment, Fragment) && Program.link())
	{
		return true;
	}
	OutWhyNot = QStringLiteral("OpenGL refuses a shader: %1").arg(Program.log().simplified());
	return false;
}

void FViewportRenderer::Release()
{
	if (!Gl)
	{
		return;
	}
	Meshes.Release(*Gl);
	Targets.Release(*Gl);
	for (GLuint* Buffer : {&All.Buffer, &Selected.Buffer, &PivotBuffer})
	{
		Gl->glDeleteBuffers(1, Buffer);
		*Buffer = 0;
	}
	for (GLuint* Array : {&NoArray, &PivotArray})
	{
		Gl->glDeleteVertexArrays(1, Array);
		*Array = 0;
	}
	Gl->glDeleteTextures(1, &CornerTexture);
	CornerTexture = 0;
	Programs.reset();
	Gl.reset();
	Revision = 0;
	SelectionRevision = 0;
}

void FViewportRenderer::Synchronize(const FViewportModel& Model)
{
	const FViewportScene& Scene = Model.GetScene();
	const bool bScene = Scene.GetRevision() != Revision;
	if (bScene)
	{
		Origin = Scene.GetBounds().GetCenter();
		Meshes.Synchronize(*Gl, Scene);
		Upload(All, Scene, false);
	}
	if (bScene || Scene.GetSelectionRevision() != SelectionRevision)
	{
		Upload(Selected, Scene, true);
		SelectedBounds = Scene.GetSelectionBounds();
	}
	Revision = Scene.GetRevision();
	SelectionRevision = Scene.GetSelectionRevision();
	UploadPivots(Model);
}

void FViewportRenderer::Upload(FBufferedInstances& List, const FViewportScene& Scene, bool bSelectedOnly)
{
	List.Instances.Build(Scene, Origin, bSelectedOnly);
	const std::vector<FInstancePlace>& Places = List.Instances.GetPlaces();
	Gl->glBindBuffer(GL_ARRAY_BUFFER, List.Buffer);
	Gl->glBufferData(
		GL_ARRAY_BUFFER, GLsizeiptr(Places.size() * sizeof(FInstancePlace)), Places.data(), GL_STATIC_DRAW);
	++NumUploads;
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

void FViewportRenderer::Draw(FViewportModel& Model, const FViewportPicture& Picture)
{
	FViewportCamera& Camera = Model.GetCamera();
	const FViewportColours Colours = FViewportColours::Of(Picture.bDark);
	Width = std::max(1, int(std::lround(Camera.GetWidth() * Picture.PixelRatio)));
	Height = std::max(1, int(std::lround(Camera.GetHeight() * Picture.PixelRatio)));
	if (!Targets.Resize(*Gl, Width, Height))
	{
		return;
	}
	Synchronize(Model);
	Camera.FitDepthRange(Model.GetScene().GetBounds());
	Gl->glViewport(0, 0, Width, Height);
	for (const int Feature : {GL_SCISSOR_TEST, GL_STENCIL_TEST, GL_CULL_FACE, GL_BLEND})
	{
		Gl->glDisable(GLenum(Feature));
	}
	Targets.BindScene(*Gl);
	Gl->glDepthMask(GL_TRUE);
	Gl->glClear(GL_DEPTH_BUFFER_BIT);
	DrawBackground(Colours);
	DrawScene(Camera);
	DrawGrid(Camera, Colours);
	DrawPivots(Camera, Colours, Picture.PixelRatio);
	Targets.ResolveScene(*Gl);
	DrawMask(Camera);
	Compose(Camera, Colours, Picture);
}

void FViewportRenderer::DrawWholePicture(QOpenGLShaderProgram& Program)
{
	Program.bind();
	Gl->glBindVertexArray(NoArray);
	Gl->glDrawArrays(GL_TRIANGLES, 0, 3);
}

void FViewportRenderer::DrawBackground(const FViewportColours& Colours)
{
	Gl->glDisable(GL_DEPTH_TEST);
	QOpenGLShaderProgram& Program = Programs->Background;
	Program.bind();
	Program.setUniformValue("UpperColour", ToQt(Colours.Upper));
	Program.setUniformValue("LowerColour", ToQt(Colours.Lower));
	DrawWholePicture(Program);
}

void FViewportRenderer::DrawInstances(QOpenGLShaderProgram& Program, QOpenGLShaderProgram& SpeckProgram,
	const FBufferedInstances& List, const FViewportCamera& Camera)
{
	const std::vector<FInstanceRun> Runs = List.Instances.FindVisible(Camera);
	const QMatrix4x4 ViewProjection = ToQt(Camera.GetViewProjection(Origin));
	const auto SetTint = [&](QOpenGLShaderProgram& Used, int32 Mesh)
	{
		const FVector3f& Colour = Meshes.GetTint(Mesh);
		Used.setUniformValue("Tint", QVector3D(Colour.X, Colour.Y, Colour.Z));
	};
	Program.bind();
	Program.setUniformValue("ViewProjection", ViewProjection);
	Program.setUniformValue("Eye", ToQt(Camera.GetEye() - Origin));
	for (const FInstanceRun& Run : Runs)
	{
		if (!Run.bSpecks)
		{
			SetTint(Program, Run.Mesh);
			Meshes.Draw(*Gl, Run, List.Buffer);
		}
	}
	SpeckProgram.bind();
	SpeckProgram.setUniformValue("ViewProjection", ViewProjection);
	SpeckProgram.setUniformValue("PixelsPerUnit", float(Camera.GetPixelsPerUnit(1.0) * Height / Camera.GetHeight()));
	Gl->glEnable(GL_PROGRAM_POINT_SIZE);
	for (const FInstanceRun& Run : Runs)
	{
		if (Run.bSpecks)
		{
			SetTint(SpeckProgram, Run.Mesh);
			SpeckProgram.setUniformValue("Center", ToQt(Meshes.GetBounds(Run.Mesh).GetCenter()));
			SpeckProgram.setUniformValue("Extent", ToQt(Meshes.GetBounds(Run.Mesh).GetExtent()));
			Meshes.DrawSpecks(*Gl, Run, List.Buffer);
		}
	}
	Gl->glDisable(GL_PROGRAM_POINT_SIZE);
}

void FViewportRenderer::DrawScene(const FViewportCamera& Camera)
{
	Gl->glEnable(GL_DEPTH_TEST);
	Gl->glDepthFunc(GL_LESS);
	// From the left of the eye and from above it, so that shapes are seen.
	const FVector Light = Camera.GetUp() * 0.75 - Camera.GetRight() * 0.5 - Camera.GetForward() * 0.6;
	Programs->Mesh.bind();
	Programs->Mesh.setUniformValue("Light", ToQt(Light.GetSafeNormal()));
	DrawInstances(Programs->Mesh, Programs->Speck, All, Camera);
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
	Program.setUniformValue("AxisXColour", ToQt(Colours.AxisX));
	Program.setUniformValue("AxisYColour", ToQt(Colours.AxisY));
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

void FViewportRenderer::DrawMask(const FViewportCamera& Camera)
{
	if (Selected.Instances.GetPlaces().empty())
	{
		return;
	}
	const auto DrawWith = [&](float Green)
	{
		for (QOpenGLShaderProgram* Program : {&Programs->Mask, &Programs->SpeckMask})
		{
			Program->bind();
			Program->setUniformValue("Mask", 1.f, Green);
		}
		DrawInstances(Programs->Mask, Programs->SpeckMask, Selected, Camera);
	};
	Targets.BindMask(*Gl);
	Gl->glClearColor(0.f, 0.f, 0.f, 0.f);
	Gl->glClear(GL_COLOR_BUFFER_BIT);
	Gl->glDepthMask(GL_FALSE);
	Gl->glDisable(GL_DEPTH_TEST);
	DrawWith(0.f);
	// In front of itself by a hair, since it was drawn by another program.
	Gl->glEnable(GL_DEPTH_TEST);
	Gl->glDepthFunc(GL_LEQUAL);
	Gl->glEnable(GL_POLYGON_OFFSET_FILL);
	Gl->glPolygonOffset(-1.f, -2.f);
	DrawWith(1.f);
	Gl->glDisable(GL_POLYGON_OFFSET_FILL);
	Gl->glDepthMask(GL_TRUE);
	Targets.ResolveMask(*Gl);
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

// SPDX-License-Identifier: MIT
#include "ViewportRenderer.h"

#include "ViewportShaders.h"
#include "ViewportUniforms.h"

#include <QMatrix4x4>
#include <QVector3D>
#include <QVector4D>

#include <algorithm>
#include <cmath>

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

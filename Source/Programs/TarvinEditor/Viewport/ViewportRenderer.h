// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "ViewportColours.h"
#include "ViewportGpuMeshes.h"
#include "ViewportInstances.h"
#include "ViewportModel.h"
#include "ViewportTargets.h"

#include <QOpenGLExtraFunctions>
#include <QOpenGLShaderProgram>
#include <QRect>
#include <QVector4D>

#include <memory>
#include <vector>

/// What one picture is to be, beside the scene.
struct FViewportPicture
{
	double PixelRatio = 1.0; ///< pixels of the screen to one of the widget
	bool bDark = false;
	QRect RubberBand;       ///< in pixels of the widget; null for none
	GLuint Framebuffer = 0; ///< that the picture goes to
};

/// Draws a viewport with OpenGL 3.3. All of it is called with the one context current.
class FViewportRenderer
{
public:
	/// Makes the programs. Returns an empty text, or why it cannot draw.
	QString Initialize();

	/// Drops everything on the graphics card. May be initialised again afterwards.
	void Release();

	/// Draws the model as it was last updated. The camera's depth range is set.
	void Draw(FViewportModel& Model, const FViewportPicture& Picture);

	/// For tests: how many meshes the graphics card has, and how often the list of places went to it.
	int32 GetNumMeshes() const { return Meshes.Num(); }
	int32 GetNumUploads() const { return NumUploads; }

private:
	struct FBufferedInstances
	{
		FViewportInstances Instances;
		GLuint Buffer = 0;
	};

	bool Build(QOpenGLShaderProgram& Program, const char* Vertex, const char* Fragment, QString& OutWhyNot);
	void Synchronize(const FViewportModel& Model);
	void Upload(FBufferedInstances& List, const FViewportScene& Scene, bool bSelectedOnly);
	void UploadPivots(const FViewportModel& Model);
	void DrawBackground(const FViewportColours& Colours);
	void DrawInstances(QOpenGLShaderProgram& Program, QOpenGLShaderProgram& SpeckProgram,
		const FBufferedInstances& List, const FViewportCamera& Camera);
	void DrawScene(const FViewportCamera& Camera);
	void DrawGrid(const FViewportCamera& Camera, const FViewportColours& Colours);
	void DrawPivots(const FViewportCamera& Camera, const FViewportColours& Colours, double PixelRatio);
	void DrawMask(const FViewportCamera& Camera);
	QVector4D PlaceOfOutline(const FViewportCamera& Camera, double PixelRatio) const;
	void Compose(const FViewportCamera& Camera, const FViewportColours& Colours, const FViewportPicture& Picture);
	void DrawWholePicture(QOpenGLShaderProgram& Program);

	struct FPrograms
	{
		QOpenGLShaderProgram Background;
		QOpenGLShaderProgram Mesh;
		QOpenGLShaderProgram Speck;
		QOpenGLShaderProgram Mask;
		QOpenGLShaderProgram SpeckMask;
		QOpenGLShaderProgram Grid;
		QOpenGLShaderProgram Pivot;
		QOpenGLShaderProgram Compose;
	};

	std::unique_ptr<QOpenGLExtraFunctions> Gl;
	std::unique_ptr<FPrograms> Programs;
	FViewportTargets Targets;
	FViewportGpuMeshes Meshes;
	FBufferedInstances All;
	FBufferedInstances Selected;
	FVector Origin;
	FBox SelectedBounds;
	std::vector<FVector4f> Pivots;
	GLuint PivotBuffer = 0;
	GLuint PivotArray = 0;
	GLuint NoArray = 0;
	GLuint CornerTexture = 0;
	GLsizei Width = 0;
	GLsizei Height = 0;
	uint32 Revision = 0;
	uint32 SelectionRevision = 0;
	int32 NumUploads = 0;
};

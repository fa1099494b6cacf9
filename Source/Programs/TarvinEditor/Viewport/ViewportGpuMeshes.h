// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"
#include "ViewportInstances.h"
#include "ViewportScene.h"

#include <QOpenGLExtraFunctions>

/// The graphics card's copies of meshes: one for each mesh of a scene, however often it is shown, made from the data
/// that the scene was prepared with. All of it is called with the one context current, `Release` last of all.
class FViewportGpuMeshes
{
public:
	/// Copies what is new or was changed, and drops what the scene does not show any more.
	void Synchronize(QOpenGLExtraFunctions& Gl, const FViewportScene& Scene);

	/// Drops everything.
	void Release(QOpenGLExtraFunctions& Gl);

	/// Draws a run of instances whose places are in `PlacesBuffer`. A mesh without triangles draws nothing.
	void Draw(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer) const;

	/// Draws a run as points, one for each instance.
	void DrawSpecks(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer);

	/// The box of a mesh of the scene in its local space.
	const FBox& GetBounds(int32 Mesh) const { return ByIndex[std::size_t(Mesh)].Bounds; }

	/// The colour of a mesh of the scene: a grey with a touch of a hue that goes with its name.
	const FVector3f& GetTint(int32 Mesh) const { return ByIndex[std::size_t(Mesh)].Tint; }

	/// How many copies there are, for tests.
	int32 Num() const { return int32(Copies.size()); }

private:
	struct FCopy
	{
		TSharedPtr<const FMeshBulkData> Source;
		GLuint VertexArray = 0;
		GLuint Vertices = 0;
		GLuint Indices = 0;
		GLsizei NumIndices = 0;
		FVector3f Tint{1.f, 1.f, 1.f};
		FBox Bounds;
		bool bUsed = false;
	};

	static void Upload(QOpenGLExtraFunctions& Gl, const FStaticMeshLodRenderData& Data, FCopy& Copy);
	static void BindPlaces(QOpenGLExtraFunctions& Gl, const FInstanceRun& Run, GLuint PlacesBuffer);
	static void Drop(QOpenGLExtraFunctions& Gl, FCopy& Copy);

	std::unordered_map<FObjectHandle, FCopy> Copies;
	/// The copies in the order of the scene's meshes.
	std::vector<FCopy> ByIndex;
	GLuint SpeckArray = 0;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Types.h"
#include "SlateQt/QtPrelude.h"

#include <QOpenGLExtraFunctions>

/// The pictures that the finished one is made from: the scene, and the mask of what is selected (red: anywhere, green:
/// where nothing hides it). Both are drawn with several samples a pixel over one depth buffer, then resolved.
class FViewportTargets
{
public:
	/// Makes them of that size, in pixels of the screen, unless they are already. False if that cannot be.
	bool Resize(QOpenGLExtraFunctions& Gl, GLsizei InWidth, GLsizei InHeight);
	void Release(QOpenGLExtraFunctions& Gl);

	/// Draws into the scene, or into the mask, from here on. The two share their depths.
	void BindScene(QOpenGLExtraFunctions& Gl) const { Gl.glBindFramebuffer(GL_FRAMEBUFFER, Scene.Samples); }
	void BindMask(QOpenGLExtraFunctions& Gl) const { Gl.glBindFramebuffer(GL_FRAMEBUFFER, Mask.Samples); }

	/// Makes textures of what was drawn.
	void ResolveScene(QOpenGLExtraFunctions& Gl) const { Resolve(Gl, Scene); }
	void ResolveMask(QOpenGLExtraFunctions& Gl) const { Resolve(Gl, Mask); }
	GLuint GetSceneTexture() const { return Scene.Texture; }
	GLuint GetMaskTexture() const { return Mask.Texture; }

private:
	struct FTarget
	{
		GLuint Samples = 0; ///< framebuffer with several samples a pixel
		GLuint Colour = 0;
		GLuint Resolved = 0; ///< framebuffer of the texture
		GLuint Texture = 0;
	};

	bool Make(QOpenGLExtraFunctions& Gl, FTarget& Target, GLenum Format, GLsizei NumSamples) const;
	void Resolve(QOpenGLExtraFunctions& Gl, const FTarget& Target) const;

	GLsizei Width = 0;
	GLsizei Height = 0;
	GLuint Depth = 0;
	FTarget Scene;
	FTarget Mask;
};

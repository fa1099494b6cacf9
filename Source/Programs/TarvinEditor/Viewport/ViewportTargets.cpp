// SPDX-License-Identifier: MIT
#include "ViewportTargets.h"

#include <algorithm>

namespace
{
/// Smooth enough for edges, and to be had almost everywhere.
constexpr GLint WantedSamples = 4;
}

bool FViewportTargets::Resize(QOpenGLExtraFunctions& Gl, GLsizei InWidth, GLsizei InHeight)
{
	if (InWidth == Width && InHeight == Height)
	{
		return true;
	}
	Release(Gl);
	Width = InWidth;
	Height = InHeight;
	GLint MostSamples = 0;
	Gl.glGetIntegerv(GL_MAX_SAMPLES, &MostSamples);
	const GLsizei NumSamples = std::min(WantedSamples, MostSamples);
	Gl.glGenRenderbuffers(1, &Depth);
	Gl.glBindRenderbuffer(GL_RENDERBUFFER, Depth);
	Gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER, NumSamples, GL_DEPTH_COMPONENT24, Width, Height);
	if (Make(Gl, Scene, GL_RGBA8, NumSamples) && Make(Gl, Mask, GL_RG8, NumSamples))
	{
		return true;
	}
	Release(Gl);
	return false;
}

bool FViewportTargets::Make(QOpenGLExtraFunctions& Gl, FTarget& Target, GLenum Format, GLsizei NumSamples) const
{
	Gl.glGenRenderbuffers(1, &Target.Colour);
	Gl.glBindRenderbuffer(GL_RENDERBUFFER, Target.Colour);
	Gl.glRenderbufferStorageMultisample(GL_RENDERBUFFER, NumSamples, Format, Width, Height);
	Gl.glGenFramebuffers(1, &Target.Samples);
	Gl.glBindFramebuffer(GL_FRAMEBUFFER, Target.Samples);
	Gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, Target.Colour);
	Gl.glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, Depth);
	const bool bSamples = Gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;

	Gl.glGenTextures(1, &Target.Texture);
	Gl.glBindTexture(GL_TEXTURE_2D, Target.Texture);
	Gl.glTexImage2D(GL_TEXTURE_2D, 0, GLint(Format), Width, Height, 0, Format == GL_RG8 ? GL_RG : GL_RGBA,
		GL_UNSIGNED_BYTE, nullptr);
	Gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
	Gl.glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
	Gl.glGenFramebuffers(1, &Target.Resolved);
	Gl.glBindFramebuffer(GL_FRAMEBUFFER, Target.Resolved);
	Gl.glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, Target.Texture, 0);
	return bSamples && Gl.glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

void FViewportTargets::Resolve(QOpenGLExtraFunctions& Gl, const FTarget& Target) const
{
	Gl.glBindFramebuffer(GL_READ_FRAMEBUFFER, Target.Samples);
	Gl.glBindFramebuffer(GL_DRAW_FRAMEBUFFER, Target.Resolved);
	Gl.glBlitFramebuffer(0, 0, Width, Height, 0, 0, Width, Height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
}

void FViewportTargets::Release(QOpenGLExtraFunctions& Gl)
{
	for (FTarget* Target : {&Scene, &Mask})
	{
		Gl.glDeleteFramebuffers(1, &Target->Samples);
		Gl.glDeleteFramebuffers(1, &Target->Resolved);
		Gl.glDeleteRenderbuffers(1, &Target->Colour);
		Gl.glDeleteTextures(1, &Target->Texture);
		*Target = FTarget();
	}
	Gl.glDeleteRenderbuffers(1, &Depth);
	Depth = 0;
	Width = 0;
	Height = 0;
}

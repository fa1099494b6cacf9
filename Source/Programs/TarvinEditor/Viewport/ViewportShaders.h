// SPDX-License-Identifier: MIT
#pragma once

/// The programs of the viewport, in the shading language of OpenGL 3.3.
namespace ViewportShaders
{
/// A triangle that covers the picture; `Place` runs from -1 to 1 across it. Needs no buffers.
extern const char* const PictureVertex;

/// A soft gradient from `UpperColour` to `LowerColour`.
extern const char* const BackgroundFragment;

/// Instances of a mesh; those with a mirror are known by the sign of their determinant.
extern const char* const MeshVertex;
/// Light from the sky and from beside the eye, on both sides; a side that is not meant to be seen is darker.
extern const char* const MeshFragment;
/// A point for each instance of a mesh that is too small to show a shape, as large as its box.
extern const char* const SpeckVertex;
extern const char* const SpeckFragment;
/// Writes `Mask`, for the outline of what is selected.
extern const char* const MaskFragment;

/// The ground: lines of three spacings, and the two axes in it.
extern const char* const GridFragment;

/// Crosses of a size in pixels.
extern const char* const PivotVertex;
extern const char* const PivotFragment;

/// The finished picture: the scene, the outline around the mask, the axes in the corner, the selection rectangle.
extern const char* const ComposeFragment;
}

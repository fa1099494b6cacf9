// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Matrix.h"
#include "Core/Transform.h"

#include <array>
#include <optional>

/// Between the two spaces that a scene lives in.
///
/// A scene file is Y-up and right-handed, in metres. The host is Z-up and counts 128 units to the metre. The point (x,
/// y, z) of the file is
/// (-128 z, -128 x, 128 y) in the host: a proper rotation and a power of two, so that no coordinate is rounded on the
/// way. The file's +Z side is the host's front (-X), its +X side the left (-Y), its +Y side the top (+Z).
namespace SceneSpace
{
/// Host units in one unit of the file.
inline constexpr double UnitsPerMetre = 128.0;

inline FVector3f PointToHost(float X, float Y, float Z)
{
	constexpr float Units = static_cast<float>(UnitsPerMetre);
	return FVector3f(-Units * Z, -Units * X, Units * Y);
}

inline FVector3f DirectionToHost(float X, float Y, float Z)
{
	return FVector3f(-Z, -X, Y);
}

inline std::array<float, 3> PointToFile(const FVector3f& Point)
{
	constexpr float Metres = static_cast<float>(1.0 / UnitsPerMetre);
	return {-Point.Y * Metres, Point.Z * Metres, -Point.X * Metres};
}

inline std::array<float, 3> DirectionToFile(const FVector3f& Direction)
{
	return {-Direction.Y, Direction.Z, -Direction.X};
}

FVector PointToHost(const std::array<double, 3>& Point);
FQuat RotationToHost(const std::array<double, 4>& Rotation);
FVector ScaleToHost(const std::array<double, 3>& Scale);

/// A matrix of the file (column by column, for column vectors) as a matrix of the host (for row vectors).
FMatrix MatrixToHost(const std::array<double, 16>& Matrix);

std::array<double, 3> PointToFile(const FVector& Point);
std::array<double, 4> RotationToFile(const FQuat& Rotation);
std::array<double, 3> ScaleToFile(const FVector& Scale);
} // namespace SceneSpace

/// What can be said of a linear map as rotation and scale.
struct FMatrixParts
{
	FTransform Transform; ///< the nearest that rotation, translation and scale can say
	double Shear = 0.0;   ///< the largest cosine between two of the axes' images: 0 where the map is such a transform
};

/// Takes a matrix apart. A mirroring one gets a negative scale along X. Images of axes shorter than 1e-30 count as zero
/// scale.
FMatrixParts DecomposeMatrix(const FMatrix& Matrix);

/// The largest difference of entries between the two maps, as a share of the largest linear entry (linear part) or of
/// the larger of that and the translation.
double RelativeDifference(const FMatrix& A, const FMatrix& B);

/// The distance of two points, however far they are; NaN where a coordinate is none.
double DistanceOf(const FVector& A, const FVector& B);

// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/GltfStorage.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// Implicit shapes and rigid bodies, in the space of the node that carries them. Lengths are metres along local axes;
/// the axis of capsules and cylinders is Y.

enum class EGltfShapeType : std::uint8_t
{
	Unknown,
	Plane,
	Sphere,
	Box,
	Cylinder,
	Capsule,
};

/// One of the document's implicit shapes. Values that the type does not have are zero.
struct FGltfShape
{
	FJsonIndex Json = NoJson;
	FJsonIndex Parameters = NoJson; ///< the object under the type's own name; NoJson where it is absent
	EGltfShapeType Type = EGltfShapeType::Unknown;
	double Radius = 0;                      ///< Sphere
	std::array<double, 3> Size = {0, 0, 0}; ///< Box; Plane: x and z, zero meaning infinite
	double Height = 0;                      ///< Cylinder; Capsule: between the centres of its two spheres
	double RadiusBottom = 0;
	double RadiusTop = 0;
	bool bDoubleSided = false;
};

/// What a collider or trigger is shaped like.
struct FGltfGeometry
{
	FJsonIndex Json = NoJson;
	FGltfIndex Shape = NoIndex;
	FGltfIndex Node = NoIndex; ///< its mesh, and those of its children, are the geometry
	bool bConvexHull = false;
};

struct FGltfCollider
{
	FJsonIndex Json = NoJson;
	FGltfGeometry Geometry;
	FGltfIndex Material = NoIndex;
	FGltfIndex Filter = NoIndex;
};

struct FGltfTrigger
{
	FJsonIndex Json = NoJson;
	FGltfGeometry Geometry;
	std::vector<FGltfIndex> Nodes;
	FGltfIndex Filter = NoIndex;
};

struct FGltfJoint
{
	FJsonIndex Json = NoJson;
	FGltfIndex ConnectedNode = NoIndex;
	FGltfIndex Joint = NoIndex;
};

/// A node's KHR_physics_rigid_bodies object.
struct FGltfRigidBody
{
	FJsonIndex Json = NoJson;
	FJsonIndex Motion = NoJson; ///< its values are in node space, and are kept as text
	std::optional<FGltfCollider> Collider;
	std::optional<FGltfTrigger> Trigger;
	std::optional<FGltfJoint> Joint;
};

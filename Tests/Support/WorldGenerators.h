// SPDX-License-Identifier: MIT
#pragma once

#include "Support/RapidCheck.h"

#include "Core/Transform.h"
#include "Host/Core/MathGenerators.h"

#include <ostream>
#include <vector>

class UStaticMesh;
class UStaticMeshComponent;
class UWorld;

/// Components as they are to be made: each attached to one of those before it, or to nothing.
struct FTreePlan
{
	struct FNode
	{
		int32 Parent = INDEX_NONE;
		bool bOwnActor = true; ///< else a component of its parent's actor
		int32 Mesh = 0;        ///< which of the meshes it shows, counted round
		FTransform Relative;
	};
	std::vector<FNode> Nodes;
};

void showValue(const FTreePlan& Plan, std::ostream& Out);

/// Generators of worlds for property tests, beside those of transforms in `MathGenerators`.
namespace WorldGenerators
{
/// A number from 0 up to below `Count`, whatever the size of the case.
rc::Gen<int32> Index(int32 Count);

/// Transforms with any rotation and scales of any signs that are even where one in two is asked for, and never zero.
rc::Gen<FTransform> AnyTransform();

/// A random forest of at most `MaxNodes` components.
rc::Gen<FTreePlan> Tree(int32 MaxNodes, rc::Gen<FTransform> Relative = AnyTransform());
}

/// Makes the components of a plan in `World`, in order.
std::vector<UStaticMeshComponent*> BuildTree(
	UWorld* World, const FTreePlan& Plan, const std::vector<UStaticMesh*>& Meshes);

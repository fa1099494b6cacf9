// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/BodySetup.h"
#include "ModuleFixture.h"
#include "TarvinTransformOp.h"

/// Bakes one mesh, "Rock", whose collision the test fills.
class FCollisionTest : public FModuleTest
{
protected:
	using FLines = std::vector<std::string>;

	FKAggregateGeom& Shapes() { return Rock->CreateBodySetup()->AggGeom; }

	bool Bake(const FTransform& Transform, bool bRebuild = true)
	{
		Stats = FTarvinTransformStats();
		return FTarvinTransformOp::BakeIntoMesh(Rock, Transform, {bRebuild, true, true}, Stats);
	}

	static FTransform Scaled(double X, double Y, double Z)
	{
		return FTransform(FQuat::Identity, FVector(), FVector(X, Y, Z));
	}

	/// A slanted tetrahedron.
	static FKConvexElem MakeHull()
	{
		FKConvexElem Hull;
		Hull.VertexData = {FVector(0, 0, 0), FVector(7, 0, 1), FVector(1, 5, 0), FVector(2, 1, 11)};
		Hull.UpdateElemBox();
		return Hull;
	}

	UStaticMesh* Rock = MakeMesh(TEXT("Rock"));
	FTarvinTransformStats Stats;
};

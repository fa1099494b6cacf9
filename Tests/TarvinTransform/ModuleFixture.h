// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Log.h"
#include "Engine/Actor.h"
#include "Engine/StaticMesh.h"
#include "Engine/StaticMeshComponent.h"
#include "Slate/HeadlessBackend.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldState.h"

#include <string>
#include <vector>

/// An editor with an empty world, a widget application without a user, and a record of everything that the module says,
/// for the length of one test.
class FModuleTest : public FEditorFixture
{
protected:
	FModuleTest();
	~FModuleTest() override;

	/// The state of the level and of all assets in it, and of what is named besides.
	static FWorldState State(std::initializer_list<UObject*> Others = {}) { return FWorldState(World(), Others); }

	/// Makes an asset of that name in its own package of the folder "/Yard/Props".
	static UStaticMesh* MakeMesh(const TCHAR* Name, FMeshDescription&& Lod0);
	/// The same with a box between (-2, -3, 0) and (5, 7, 11).
	static UStaticMesh* MakeMesh(const TCHAR* Name);

	/// Makes an actor whose root component shows the mesh at that place.
	static UStaticMeshComponent* Place(UStaticMesh* Mesh, const FTransform& Where = FTransform());
	/// The same, and selects the actor.
	static UStaticMeshComponent* PlaceSelected(UStaticMesh* Mesh, const FTransform& Where = FTransform());
	/// Makes an actor with an empty root component at that place, for others to be attached to.
	static USceneComponent* PlaceFrame(const FTransform& Where);
	static void Select(const UActorComponent* Component) { GEditor->SelectActor(Component->GetOwner(), true); }

	/// The lines of one category since the start of the test (or `Log.Clear()`), each as "Warning: message".
	std::vector<std::string> Lines(const TCHAR* Category) const;
	std::vector<std::string> ActionLines() const { return Lines(TEXT("LogTarvinAction")); }
	std::vector<std::string> OpLines() const { return Lines(TEXT("LogTarvinOp")); }

	/// The texts of all toasts that are shown.
	static std::vector<std::string> Toasts();

	TSharedRef<FHeadlessSlateBackend> Backend;
	FCaptureLogSink Log;
};

/// The positions of all vertices of the HiRes source, in the mesh's own space.
TArray<FVector> HiResPositionsOf(const UStaticMesh* Mesh);
/// Every point through the transform.
TArray<FVector> Transformed(const TArray<FVector>& Points, const FTransform& Transform);

/// Each coordinate within `Tolerance`; tells both where they differ.
testing::AssertionResult Near(const FVector& Actual, const FVector& Expected, double Tolerance = 1.e-4);
testing::AssertionResult Near(const TArray<FVector>& Actual, const TArray<FVector>& Expected, double Tolerance = 1.e-4);
/// Rotation (a quaternion and its negation being one), translation and scale.
testing::AssertionResult Near(const FTransform& Actual, const FTransform& Expected, double Tolerance = 1.e-4);

inline std::string Utf8(const FString& Text)
{
	return Text.ToUtf8();
}

/// A turn by degrees about an axis.
FQuat Turn(const FVector& Axis, double Degrees);

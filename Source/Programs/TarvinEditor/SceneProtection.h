// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Map.h"
#include "Engine/ActorComponent.h"
#include "SceneIO/SceneVerdict.h"

/// Keeps plug-ins from working on what they could not leave looking the same: skinned, animated, sheared nodes, and
/// parents of such.
///
/// What is selected is judged whenever the selection or the level changed. The mesh components of actors that must be
/// left alone are marked as made by a construction script while they are selected, as plug-ins leave such alone; the
/// marks are no change of the scene.
class FSceneProtection
{
public:
	/// Judges the nodes of a scene, which must live longer.
	explicit FSceneProtection(const FScene& InScene);
	~FSceneProtection();
	FSceneProtection(const FSceneProtection&) = delete;
	FSceneProtection& operator=(const FSceneProtection&) = delete;

	/// Judges the selection as it stands now; marks and unmarks.
	void Update();

	/// Why plug-ins leave the actor alone while it is selected: "it is skinned". Empty for others.
	std::string ReasonFor(const AActor* Actor) const;

private:
	struct FMark
	{
		TWeakObjectPtr<AActor> Actor;
		std::string Reason;
	};

	void Mark(AActor& Actor, const std::string& Reason);
	void Unmark(const AActor& Actor);
	void UnmarkAll();
	static std::string ReasonAmong(const AActor& Actor, const FSceneVerdict& Bake, const FSceneVerdict& Pivot);

	const FScene& Scene;
	FSceneJudge Judge;
	/// Of each node, as it was read: an undo may bring a mark back.
	std::vector<EComponentCreationMethod> Methods;
	TMap<const AActor*, FMark> Marks;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Engine/Actor.h"
#include "SceneIO/GltfModel.h"

/// An actor that was made of a node of a scene file, or copied from one that was. A copy carries along what it was
/// copied from, through any number of copies, so that a save can give it what only the file knows of that node.
class ASceneActor : public AActor
{
	DECLARE_CLASS(ASceneActor, AActor)

public:
	/// Which of the scenes that this program has loaded the node belongs to. Zero: none.
	int32 SceneId = 0;
	FGltfIndex SourceNode = NoIndex;

	void Serialize(FArchive& Archive) override;
};

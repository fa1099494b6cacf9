// SPDX-License-Identifier: MIT
// Nothing in a command may look at what it can bake unseen: meshes larger than the memory would have to fit into it.
#include "SceneText.h"

#include "Editor/EditorEngine.h"
#include "Engine/StaticMesh.h"
#include "Engine/StaticMeshComponent.h"
#include "HostSession.h"
#include "MeshDescription/MeshSource.h"
#include "SceneIO/Scene.h"
#include "SceneIO/SceneDiff.h"
#include "SceneIO/SceneWriter.h"
#include "TarvinSelectionAction.h"

#include <gtest/gtest.h>

#include <set>

TEST(StreamedBake, TakesNoMeshIntoMemoryFromTheFileToTheSave)
{
	const FTempFolder Folder;
	FSceneText Text = TriangleScene();
	Text.AddNode(R"("name":"B","mesh":0,"scale":[-1,2,4])");
	const std::string Path = Text.WriteBinary(Folder);
	FHostSession Session;
	Session.AnswerWith(ESharedAnswer::Duplicate);
	TSceneResult<std::unique_ptr<FScene>> Loaded = FScene::Load(Path, GEditor->GetEditorWorldContext().World());
	ASSERT_TRUE(Loaded.IsOk());
	const std::unique_ptr<FScene> Scene = Loaded.Take();
	GEditor->SelectActor(Scene->Node(0).Actor, true);
	GEditor->SelectActor(Scene->Node(1).Actor, true);
	FTarvinSelectionAction::ExecuteFromEditorSelection();
	ASSERT_TRUE(SaveScene(*Scene, Folder.Path("baked.glb")).IsOk());

	std::set<const FMeshSource*> Sources;
	std::set<const UStaticMesh*> Assets;
	for (const FGltfIndex Node : {0, 1})
	{
		const UStaticMesh* const Asset =
			CastChecked<UStaticMeshComponent>(Scene->Node(Node).Component.Get())->GetStaticMesh();
		Assets.insert(Asset);
		const FMeshDescription* const Baked = Asset->GetSourceModel(0).GetBulkData()->GetDescription();
		ASSERT_TRUE(Baked && Baked->GetDeferred()) << "node " << Node;
		EXPECT_EQ(Baked->GetDeferred()->Transforms.size(), 1u);
		Sources.insert(Baked->GetDeferred()->Source.get());
	}
	EXPECT_EQ(Assets.size(), 2u);
	EXPECT_EQ(Sources.size(), 1u) << "both come from one mesh of the file";

	const TSceneResult<FSceneDeviation> Deviation = CompareScenes(MustLoad(Path), MustLoad(Folder.Path("baked.glb")));
	ASSERT_TRUE(Deviation.IsOk());
	EXPECT_TRUE(Deviation->IsSame(1e-6));
}

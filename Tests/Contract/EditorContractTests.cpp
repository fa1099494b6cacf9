// SPDX-License-Identifier: MIT
// What the module expects of its host's editor: selection, transactions, asset tools, progress, notifications.
#include "ContractHost.h"

#include "Platform/CoreUObject.h"
#include "Platform/Editor.h"
#include "Platform/MeshDescription.h"
#include "Platform/Slate.h"

namespace
{
class EditorContract : public FContractTest
{
protected:
	static UTransBuffer& Buffer() { return *CastChecked<UTransBuffer>(GEditor->Trans.Get()); }

	/// Moves the component and transforms its mesh, as a command does.
	static void Edit(UStaticMeshComponent* Component)
	{
		UStaticMesh* const Mesh = Component->GetStaticMesh();
		Mesh->Modify(true);
		Mesh->ModifyMeshDescription(0, true);
		const FTransform Bake(FQuat::Identity, FVector(), FVector(2, 3, 5));
		FStaticMeshOperations::ApplyTransform(*Mesh->GetMeshDescription(0), Bake.ToMatrixWithScale(), true);
		Mesh->CommitMeshDescription(0, FCommitMeshDescriptionParams());
		Component->Modify(true);
		Component->SetWorldTransform(FTransform(FVector(7, 8, 9)));
	}

	static double FarthestX(const UStaticMeshComponent* Component)
	{
		return double(Component->GetStaticMesh()->GetMeshDescription(0)->GetVertexPosition(FVertexID(1)).X);
	}
};

TEST_F(EditorContract, SelectionIsWalkedByIndexInItsOrder)
{
	AActor* const First = MakeComponent(nullptr)->GetOwner();
	AActor* const Second = MakeComponent(nullptr)->GetOwner();
	GEditor->SelectActor(Second, true);
	GEditor->SelectActor(First, true);
	const USelection* const Selection = GEditor->GetSelectedActors();
	ASSERT_EQ(Selection->Num(), 2);
	EXPECT_EQ(Selection->GetSelectedObject(0), Second);
	EXPECT_EQ(Selection->GetSelectedObject(1), First);
}

TEST_F(EditorContract, OneUndoTakesBackWhatWasModifiedInsideAScopeAndTellsItsContext)
{
	UStaticMeshComponent* const Component = MakeComponent(MakeMesh(TEXT("Rock")));
	{
		const FScopedTransaction Transaction(TEXT("Contract"), FText::FromString(TEXT("Edit")), nullptr, true);
		Edit(Component);
	}
	std::vector<std::string> Told;
	const auto Tell = [&Told](const FTransactionContext& Context, bool bSucceeded)
	{ Told.push_back(Context.Context.ToUtf8() + (bSucceeded ? " succeeded" : " failed")); };
	Buffer().OnUndo().AddLambda(Tell);
	const FDelegateHandle Handle = Buffer().OnRedo().AddLambda(Tell);

	ASSERT_TRUE(GEditor->UndoTransaction());
	EXPECT_EQ(FarthestX(Component), 3.0);
	EXPECT_EQ(Component->GetComponentTransform(), FTransform());
	ASSERT_TRUE(GEditor->RedoTransaction());
	EXPECT_EQ(FarthestX(Component), 6.0);
	EXPECT_EQ(Component->GetComponentTransform(), FTransform(FVector(7, 8, 9)));
	EXPECT_EQ(Told, (std::vector<std::string>{"Contract succeeded", "Contract succeeded"}));
	Buffer().OnRedo().Remove(Handle);
	ASSERT_TRUE(GEditor->UndoTransaction());
	ASSERT_TRUE(GEditor->RedoTransaction());
	EXPECT_EQ(Told.size(), 3u) << "a listener that was removed is not told";
}

TEST_F(EditorContract, CancelledScopeRevertsNothingAndLeavesTheHistoryAsItWas)
{
	UStaticMeshComponent* const Component = MakeComponent(MakeMesh(TEXT("Rock")));
	{
		FScopedTransaction Transaction(TEXT("Contract"), FText::FromString(TEXT("Edit")), nullptr, true);
		Edit(Component);
		Transaction.Cancel();
	}
	EXPECT_EQ(FarthestX(Component), 6.0);
	EXPECT_FALSE(Buffer().CanUndo());
	EXPECT_FALSE(Buffer().CanRedo());
}

TEST_F(EditorContract, WithoutAnEditorScopesAndRecordsDoNothing)
{
	UStaticMesh* const Rock = NewObject<UStaticMesh>();
	UEditorEngine::Destroy();
	EXPECT_EQ(GEditor, nullptr);
	FScopedTransaction Transaction(TEXT("Contract"), FText(), nullptr, true);
	EXPECT_FALSE(Rock->Modify(true));
	Transaction.Cancel();
}

TEST_F(EditorContract, AssetToolsGiveNamesThatNobodyHasAndMakeWholeCopies)
{
	UStaticMesh* const Rock = MakeMesh(TEXT("Rock"));
	IAssetTools& Tools = FModuleManager::Get().LoadModuleChecked<FAssetToolsModule>(TEXT("AssetTools")).Get();
	TArray<FString> Names;
	for (int32 Round = 0; Round < 3; ++Round)
	{
		FString PackageName;
		FString AssetName;
		Tools.CreateUniqueAssetName(TEXT("/Contract/Rock_Baked"), FString(), PackageName, AssetName);
		EXPECT_EQ(PackageName, FString(TEXT("/Contract")) / AssetName);
		EXPECT_TRUE(AssetName.StartsWith(TEXT("Rock_Baked")));
		EXPECT_FALSE(Names.Contains(AssetName));
		Names.Add(AssetName);
		const UStaticMesh* const Copy = Cast<UStaticMesh>(Tools.DuplicateAsset(AssetName, TEXT("/Contract"), Rock));
		ASSERT_NE(Copy, nullptr);
		EXPECT_EQ(Copy->GetPathName(), PackageName + TEXT(".") + AssetName);
		EXPECT_TRUE(Copy->IsMeshDescriptionValid(0));
	}
	EXPECT_EQ(Names[0], TEXT("Rock_Baked"));
}

TEST_F(EditorContract, PivotAndViewportsFollowOnDemand)
{
	UStaticMeshComponent* const Component = MakeComponent(nullptr);
	Component->SetWorldTransform(FTransform(FVector(7, 8, 9)));
	GEditor->SelectActor(Component->GetOwner(), true);
	Component->SetWorldTransform(FTransform(FVector(1, 2, 3)));
	GEditor->UpdatePivotLocationForSelection(true);
	EXPECT_EQ(GEditor->GetPivotLocation(), FVector(1, 2, 3));
	const int32 Before = GEditor->GetNumRedraws();
	GEditor->RedrawLevelEditingViewports(true);
	EXPECT_EQ(GEditor->GetNumRedraws(), Before + 1);
}

TEST_F(EditorContract, PlaySessionRunsInAnotherWorld)
{
	EXPECT_FALSE(GEditor->PlayWorld);
	ASSERT_TRUE(GEditor->StartPlaySession());
	EXPECT_TRUE(GEditor->PlayWorld);
	EXPECT_NE(GEditor->PlayWorld.Get(), GEditor->GetEditorWorldContext().World());
	GEditor->EndPlaySession();
	EXPECT_FALSE(GEditor->PlayWorld);
}

TEST_F(EditorContract, SlowTaskIsOpenFromItsInitialisationToItsEnd)
{
	FSlowTask Task(1.0f, FText::FromString(TEXT("Building")), true, *GWarn);
	EXPECT_FALSE(Task.IsOpen());
	Task.Initialize();
	Task.MakeDialogDelayed(0.5f, false, false);
	Task.EnterProgressFrame(1.0f, FText());
	EXPECT_TRUE(Task.IsOpen());
	EXPECT_FALSE(Task.HasCancelButton());
	Task.Destroy();
	EXPECT_FALSE(Task.IsOpen());
}

TEST_F(EditorContract, NotificationIsShownForAsLongAsItSays)
{
	FNotificationInfo Info(FText::FromString(TEXT("Done")));
	Info.ExpireDuration = 4.0f;
	const TSharedPtr<SNotificationItem> Item = FSlateNotificationManager::Get().AddNotification(Info);
	ASSERT_TRUE(Item.IsValid());
	EXPECT_EQ(Item->GetText().ToString(), TEXT("Done"));
	EXPECT_FALSE(Item->IsExpired(Item->GetAddedTime() + 3.9));
}
}

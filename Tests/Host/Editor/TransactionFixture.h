// SPDX-License-Identifier: MIT
#pragma once

#include "Editor/ScopedTransaction.h"
#include "Support/EditorFixture.h"
#include "Support/TestActors.h"
#include "Support/TestMeshes.h"
#include "Support/WorldState.h"

#include <string>
#include <vector>

/// A transform that is uneven in every respect.
inline FTransform UnevenPlace()
{
	return FTransform(FQuat(FVector(1, 2, 3).GetSafeNormal(), 0.7), FVector(-3, 5, 2), FVector(2, 3, -5));
}

/// Opens a transaction for the length of a scope.
struct FEditScope : FScopedTransaction
{
	explicit FEditScope(const TCHAR* Title = TEXT("Edit"), UObject* PrimaryObject = nullptr)
		: FScopedTransaction(TEXT("Test"), FText::FromString(Title), PrimaryObject)
	{
	}
};

/// Records the component, and moves it.
inline void Move(USceneComponent* Component, const FTransform& Relative)
{
	Component->Modify();
	Component->SetRelativeTransform(Relative);
}

/// Records the mesh, and moves the first vertex of its level 0.
inline void MoveFirstVertex(UStaticMesh* Mesh, const FVector3f& Position)
{
	Mesh->ModifyMeshDescription(0);
	Mesh->GetMeshDescription(0)->SetVertexPosition(FVertexID(0), Position);
	Mesh->CommitMeshDescription(0);
}

/// The undo buffer of an editor, and what it told.
class FTransactionTest : public FEditorFixture
{
protected:
	FTransactionTest()
	{
		const auto Tell = [this](const char* What)
		{
			return [this, What](const FTransactionContext& Context, bool bSuccess)
			{
				Told.push_back(std::string(What) + " " + Context.Context.ToUtf8() + ":" +
							   Context.Title.ToString().ToUtf8() + (bSuccess ? "" : " failed"));
			};
		};
		Transactions().OnUndo().AddLambda(Tell("undo"));
		Transactions().OnRedo().AddLambda(Tell("redo"));
	}

	static FWorldState State() { return FWorldState(World()); }

	/// How many transactions can be undone, and how many redone.
	static std::pair<int32, int32> Stacks()
	{
		return {Transactions().GetQueueLength() - Transactions().GetUndoCount(), Transactions().GetUndoCount()};
	}

	std::vector<std::string> Told;
};

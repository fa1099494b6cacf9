// SPDX-License-Identifier: MIT
#pragma once

#include "Editor/EditorEngine.h"
#include "Editor/TransBuffer.h"

#include <gtest/gtest.h>

/// An editor with an empty world for the length of one test. What earlier tests left is collected before, and what this
/// one leaves after.
class FEditorFixture : public testing::Test
{
protected:
	FEditorFixture();
	~FEditorFixture() override;

	static UWorld* World() { return GEditor->GetEditorWorldContext().World(); }
	static UTransBuffer& Transactions() { return *CastChecked<UTransBuffer>(GEditor->Trans.Get()); }
	static bool Undo() { return GEditor->UndoTransaction(); }
	static bool Redo() { return GEditor->RedoTransaction(); }
};

/// Ends every play session, destroys the editor engine if there is one, and collects what is left, assets included.
void DestroyEditorAndAssets();

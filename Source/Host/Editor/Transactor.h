// SPDX-License-Identifier: MIT
#pragma once

#include "Core/String.h"
#include "Core/Text.h"
#include "CoreUObject/ObjectPtr.h"

/// What a transaction says of itself.
struct FTransactionContext
{
	FString Context;                   ///< who made it, for programs; may be empty
	FText Title;                       ///< what it does, for users
	TObjectPtr<UObject> PrimaryObject; ///< the object that it is about, or null
};

/// The editor's transaction system, as far as all of its kinds agree.
class UTransactor : public UObject
{
	DECLARE_CLASS(UTransactor, UObject)

public:
	/// Opens a transaction, or joins the open one. Returns the index of the scope: 0 for the outermost; INDEX_NONE,
	/// opening nothing, where that cannot be.
	virtual int32 Begin(const FTransactionContext& Context);

	/// Closes the innermost scope; closing the outermost one commits. Returns the index of the scope that was closed.
	virtual int32 End();

	/// Gives up the scopes from `StartIndex` on: drops what they recorded, reverts nothing.
	virtual void Cancel(int32 StartIndex);

	virtual bool CanUndo() const;
	virtual bool CanRedo() const;
	virtual bool Undo();
	virtual bool Redo();

	/// Forgets everything. Not while a transaction is open.
	virtual void Reset();

	virtual bool IsActive() const;
};

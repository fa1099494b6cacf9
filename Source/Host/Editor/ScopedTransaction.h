// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Text.h"
#include "Core/Types.h"

class UObject;

/// A transaction for as long as it stands in scope: leaving the scope commits it, unless it was cancelled. One inside
/// another joins it. Does nothing without an editor engine.
class FScopedTransaction
{
public:
	/// `Context` tells programs, `Description` users, who made the transaction and what it does. `PrimaryObject` may be
	/// null.
	FScopedTransaction(
		const TCHAR* Context, const FText& Description, UObject* PrimaryObject, bool bShouldActuallyTransact = true);
	~FScopedTransaction();
	FScopedTransaction(const FScopedTransaction&) = delete;
	FScopedTransaction& operator=(const FScopedTransaction&) = delete;

	/// Drops what was recorded in this scope; reverts nothing, and leaves the undo history as it was found.
	void Cancel();

	bool IsOutstanding() const { return Index >= 0; }

private:
	int32 Index = INDEX_NONE;
};

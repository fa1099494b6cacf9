// SPDX-License-Identifier: MIT
#pragma once

class UObject;

/// The transaction that is open now, as far as objects need to know it: it takes their states before they change.
class ITransaction
{
public:
	virtual ~ITransaction() = default;

	/// Records the state of `Object`, unless this transaction has it already.
	virtual void SaveObject(UObject* Object) = 0;

	/// Records that `Object` did not exist before the transaction: undo destroys it, redo brings it back.
	virtual void SaveCreation(UObject* Object) = 0;
};

/// The open transaction, or null.
extern ITransaction* GUndo;

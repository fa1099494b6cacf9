// SPDX-License-Identifier: MIT
#include "Editor/Transactor.h"

DEFINE_CLASS(UTransactor)

// A transaction system that records nothing and so has nothing to undo.

int32 UTransactor::Begin(const FTransactionContext&)
{
	return INDEX_NONE;
}

int32 UTransactor::End()
{
	return INDEX_NONE;
}

void UTransactor::Cancel(int32) {}

bool UTransactor::CanUndo() const
{
	return false;
}

bool UTransactor::CanRedo() const
{
	return false;
}

bool UTransactor::Undo()
{
	return false;
}

bool UTransactor::Redo()
{
	return false;
}

void UTransactor::Reset() {}

bool UTransactor::IsActive() const
{
	return false;
}

// SPDX-License-Identifier: MIT
#include "Editor/ScopedTransaction.h"

#include "Editor/EditorEngine.h"

FScopedTransaction::FScopedTransaction(
	const TCHAR* Context, const FText& Description, UObject* PrimaryObject, bool bShouldActuallyTransact)
{
	if (GEditor && bShouldActuallyTransact)
	{
		Index = GEditor->BeginTransaction(Context, Description, PrimaryObject);
	}
}

FScopedTransaction::~FScopedTransaction()
{
	if (IsOutstanding() && GEditor)
	{
		GEditor->EndTransaction();
	}
}

void FScopedTransaction::Cancel()
{
	if (IsOutstanding() && GEditor)
	{
		GEditor->CancelTransaction(Index);
		Index = INDEX_NONE;
	}
}

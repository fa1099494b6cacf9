// SPDX-License-Identifier: MIT
#include "Slate/SlateProgress.h"

#include "Slate/SlateApplication.h"

FSlateProgress::FSlateProgress(const FText& InTitle, bool bInCanCancel)
	: Title(InTitle)
	, bCanCancel(bInCanCancel)
{
}

void FSlateProgress::Update(double InFraction, const FText& InMessage)
{
	// Written so that NaN, which is neither below nor above anything, becomes 0 too.
	Fraction = InFraction > 0.0 ? (InFraction < 1.0 ? InFraction : 1.0) : 0.0;
	Message = InMessage;
	if (bOpen && FSlateApplication::IsInitialized())
	{
		FSlateApplication::Get().OnProgressChanged(AsShared());
	}
}

void FSlateProgress::RequestCancel()
{
	bWantsCancel = bWantsCancel || bCanCancel;
}

void FSlateProgress::Close()
{
	if (!bOpen)
	{
		return;
	}
	bOpen = false;
	if (FSlateApplication::IsInitialized())
	{
		FSlateApplication::Get().OnProgressClosed(AsShared());
	}
}

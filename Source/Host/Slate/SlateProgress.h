// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "Core/Text.h"

class FSlateApplication;

/// What a user sees of work that takes a while: a bar under a text. Shown from FSlateApplication::OpenProgress until
/// Close.
class FSlateProgress : public TSharedFromThis<FSlateProgress>
{
public:
	FSlateProgress(const FText& InTitle, bool bInCanCancel);

	/// What the work as a whole is called.
	const FText& GetTitle() const { return Title; }

	/// What is being done at the moment; empty where the title says it all.
	const FText& GetMessage() const { return Message; }

	/// How much is done, 0 to 1.
	double GetFraction() const { return Fraction; }

	/// Values outside 0 to 1, and NaN, are clamped into it.
	void Update(double InFraction, const FText& InMessage);

	bool CanCancel() const { return bCanCancel; }

	/// What a back end calls when the user wants to stop. Nothing for work that cannot be cancelled.
	void RequestCancel();
	bool WantsCancel() const { return bWantsCancel; }

	/// Takes the progress down. A second call does nothing.
	void Close();
	bool IsOpen() const { return bOpen; }

private:
	FText Title;
	FText Message;
	double Fraction = 0.0;
	bool bCanCancel;
	bool bWantsCancel = false;
	bool bOpen = true;
};

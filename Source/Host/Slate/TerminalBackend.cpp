// SPDX-License-Identifier: MIT
#include "Slate/TerminalBackend.h"

#include "Core/Log.h"
#include "Slate/CustomDialog.h"
#include "Slate/NotificationItem.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateProgress.h"
#include "Slate/TerminalDialog.h"

#include <algorithm>
#include <cmath>

namespace
{
constexpr int32 BarLength = 24;

const TCHAR* PrefixOf(SNotificationItem::ECompletionState State)
{
	switch (State)
	{
	case SNotificationItem::CS_Pending:
		return TEXT("[...] ");
	case SNotificationItem::CS_Success:
		return TEXT("[done] ");
	case SNotificationItem::CS_Fail:
		return TEXT("[failed] ");
	case SNotificationItem::CS_None:
		break;
	}
	return TEXT("");
}

/// "[######------------------]  25% Message", cut to the width and with line breaks made blanks.
FString FormatBar(const FSlateProgress& Progress, int32 Width)
{
	const int32 Filled = static_cast<int32>(std::floor(Progress.GetFraction() * BarLength));
	const int32 Percent = static_cast<int32>(std::floor(Progress.GetFraction() * 100.0));
	const FText& Label = Progress.GetMessage().IsEmpty() ? Progress.GetTitle() : Progress.GetMessage();
	const FString Bar = FString::ChrN(Filled, TEXT('#')) + FString::ChrN(BarLength - Filled, TEXT('-'));
	const FString Line = FString::Printf(TEXT("[%s] %3d%% %s"), *Bar, Percent, *Label.ToString());
	// One column stays free: many terminals go to the next line when the last one is written.
	return EscapeControlCharacters(Line.Replace(TEXT("\n"), TEXT(" "))).Left(Width - 1);
}
}

FTerminalSlateBackend::FTerminalSlateBackend(int InInput, int InOutput)
	: Terminal(InInput, InOutput)
{
}

void FTerminalSlateBackend::SetAnswerSource(FAnswerSource Source)
{
	AnswerSource = std::move(Source);
}

void FTerminalSlateBackend::RunModal(const TSharedRef<SCustomDialog>& Dialog)
{
	if (AnswerSource.IsSet() && AnswerSource(*Dialog))
	{
		return;
	}
	EraseBar();
	FTerminalDialog(*Dialog, Terminal).Run();
	DrawBar();
}

void FTerminalSlateBackend::OnNotificationAdded(const TSharedRef<SNotificationItem>& Item)
{
	EraseBar();
	Terminal.WriteWrapped(PrefixOf(Item->GetCompletionState()) + Item->GetText().ToString());
	DrawBar();
}

void FTerminalSlateBackend::OnNotificationChanged(const TSharedRef<SNotificationItem>& Item)
{
	OnNotificationAdded(Item);
}

void FTerminalSlateBackend::OnNotificationRemoved(const TSharedRef<SNotificationItem>&) {}

void FTerminalSlateBackend::OnProgressOpened(const TSharedRef<FSlateProgress>&)
{
	DrawBar();
}

void FTerminalSlateBackend::OnProgressChanged(const TSharedRef<FSlateProgress>&)
{
	DrawBar();
}

void FTerminalSlateBackend::OnProgressClosed(const TSharedRef<FSlateProgress>&)
{
	EraseBar();
	DrawBar();
}

void FTerminalSlateBackend::DrawBar()
{
	const TSharedPtr<FSlateProgress> Progress = FSlateApplication::IsInitialized()
													? FSlateApplication::Get().GetActiveProgress()
													: TSharedPtr<FSlateProgress>();
	if (!Progress.IsValid() || !Terminal.IsTerminal())
	{
		return;
	}
	const FString Bar = FormatBar(*Progress, Terminal.GetWidth());
	if (Bar == DrawnBar)
	{
		return;
	}
	const FString Blanks = FString::ChrN(std::max(DrawnBar.Len() - Bar.Len(), 0), TEXT(' '));
	Terminal.ReturnCarriage();
	Terminal.Write(Bar + Blanks);
	DrawnBar = Bar;
}

void FTerminalSlateBackend::EraseBar()
{
	if (!DrawnBar.IsEmpty())
	{
		Terminal.ReturnCarriage();
		Terminal.Write(FString::ChrN(DrawnBar.Len(), TEXT(' ')));
		Terminal.ReturnCarriage();
		DrawnBar.Empty();
	}
}

// SPDX-License-Identifier: MIT
#include "Editor/SlowTaskProgress.h"

#include "Editor/EditorEngine.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateProgress.h"

FSlowTaskProgress::FSlowTaskProgress()
{
	GWarn->Display = this;
	GWarn->IsPlaying = []() { return GEditor && GEditor->PlayWorld; };
}

FSlowTaskProgress::~FSlowTaskProgress()
{
	GWarn->Display = nullptr;
	GWarn->IsPlaying = []() { return false; };
}

void FSlowTaskProgress::OnTaskShown(const FSlowTask& Task)
{
	if (FSlateApplication::IsInitialized())
	{
		Shown.Add(&Task, FSlateApplication::Get().OpenProgress(Task.GetMessage(), Task.HasCancelButton()));
		OnTaskProgress(Task);
	}
}

void FSlowTaskProgress::OnTaskProgress(const FSlowTask& Task)
{
	if (const TSharedPtr<FSlateProgress>* const Progress = Shown.Find(&Task))
	{
		(*Progress)->Update(Task.GetFraction(), Task.GetMessage());
	}
}

void FSlowTaskProgress::OnTaskClosed(const FSlowTask& Task)
{
	if (const TSharedPtr<FSlateProgress>* const Progress = Shown.Find(&Task))
	{
		(*Progress)->Close();
		Shown.Remove(&Task);
	}
}

// SPDX-License-Identifier: MIT
#include "Engine/SlowTask.h"

#include <algorithm>
#include <chrono>

namespace
{
double SteadySeconds()
{
	return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}
} // namespace

FFeedbackContext* const GWarn = new FFeedbackContext();

FFeedbackContext::FFeedbackContext()
	: Clock(&SteadySeconds)
	, IsPlaying([]() { return false; })
{
}

void FFeedbackContext::Tick()
{
	const double Now = Clock();
	const bool bPlaying = IsPlaying();
	for (FSlowTask* Task : std::vector<FSlowTask*>(Tasks))
	{
		Task->Tick(Now, bPlaying);
	}
}

FSlowTask::FSlowTask(float InAmountOfWork, const FText& InMessage, bool bInEnabled, FFeedbackContext& InContext)
	: Context(InContext)
	, Message(InMessage)
	, AmountOfWork(InAmountOfWork)
	, bEnabled(bInEnabled)
{
}

FSlowTask::~FSlowTask()
{
	Destroy();
}

void FSlowTask::Initialize()
{
	if (bEnabled && !IsOpen())
	{
		Lock.emplace();
		StartTime = Context.Clock();
		Context.Tasks.push_back(this);
		++Context.NumTasksOpened;
	}
}

void FSlowTask::MakeDialogDelayed(float Threshold, bool bInShowCancelButton, bool bInAllowInPlaySession)
{
	Delay = Threshold;
	bShowCancelButton = bInShowCancelButton;
	bAllowInPlaySession = bInAllowInPlaySession;
}

void FSlowTask::EnterProgressFrame(float ExpectedWork, const FText& Text)
{
	FinishedWork += FrameWork;
	FrameWork = ExpectedWork;
	FrameMessage = Text;
	if (IsOpen())
	{
		Context.Tick();
	}
}

void FSlowTask::Destroy()
{
	if (!IsOpen())
	{
		return;
	}
	std::erase(Context.Tasks, this);
	if (bShown && Context.Display)
	{
		Context.Display->OnTaskClosed(*this);
	}
	bShown = false;
	Lock.reset();
}

double FSlowTask::GetFraction() const
{
	if (AmountOfWork <= 0.0)
	{
		return 1.0;
	}
	const auto Self = std::find(Context.Tasks.begin(), Context.Tasks.end(), this);
	const bool bHasInner = Self != Context.Tasks.end() && Self + 1 != Context.Tasks.end();
	const double InnerWork = bHasInner ? FrameWork * (*(Self + 1))->GetFraction() : 0.0;
	return std::clamp((FinishedWork + InnerWork) / AmountOfWork, 0.0, 1.0);
}

void FSlowTask::Tick(double Now, bool bPlaying)
{
	if (!Context.Display || !Delay)
	{
		return;
	}
	if (bShown)
	{
		Context.Display->OnTaskProgress(*this);
	}
	else if (Now - StartTime >= double(*Delay) && (bAllowInPlaySession || !bPlaying))
	{
		bShown = true;
		Context.Display->OnTaskShown(*this);
	}
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Text.h"
#include "CoreUObject/GarbageCollector.h"

#include <functional>
#include <optional>
#include <vector>

class FSlowTask;

/// Shows slow tasks to a user. All calls come on the main thread, from within the work.
class ISlowTaskDisplay
{
public:
	virtual ~ISlowTaskDisplay() = default;
	virtual void OnTaskShown(const FSlowTask& Task) = 0;
	virtual void OnTaskProgress(const FSlowTask& Task) = 0;
	virtual void OnTaskClosed(const FSlowTask& Task) = 0;
};

/// Where slow tasks report: the stack of those that run, innermost last, and who shows them.
class FFeedbackContext
{
public:
	FFeedbackContext();

	/// Shows the tasks whose delay is over, and brings those that are shown up to date. Long work calls it now and
	/// then.
	void Tick();

	/// The running tasks, outermost first.
	const std::vector<FSlowTask*>& GetTasks() const { return Tasks; }

	/// How many tasks were ever opened.
	int32 GetNumTasksOpened() const { return NumTasksOpened; }

	/// Who shows tasks; null for nobody.
	ISlowTaskDisplay* Display = nullptr;

	/// The clock, in seconds. Steady time unless replaced.
	std::function<double()> Clock;

	/// Whether a play session runs; tasks may ask not to be shown then. "No" unless set.
	std::function<bool()> IsPlaying;

private:
	friend class FSlowTask;

	std::vector<FSlowTask*> Tasks;
	int32 NumTasksOpened = 0;
};

/// The feedback context of the process.
extern FFeedbackContext* const GWarn;

/// Work that may take a while, cut into frames of progress. Tasks nest: an inner one fills the current frame of the
/// outer one. While one is open no object is collected.
class FSlowTask
{
public:
	/// `AmountOfWork` is in the caller's own units. A task that is not enabled does nothing.
	FSlowTask(
		float InAmountOfWork, const FText& InMessage, bool bInEnabled = true, FFeedbackContext& InContext = *GWarn);
	~FSlowTask();
	FSlowTask(const FSlowTask&) = delete;
	FSlowTask& operator=(const FSlowTask&) = delete;

	/// Opens the task: its time begins to run.
	void Initialize();

	/// Has the task shown once it has run for `Threshold` seconds.
	void MakeDialogDelayed(float Threshold, bool bInShowCancelButton = false, bool bInAllowInPlaySession = false);

	/// Finishes the present frame, and enters one that stands for `ExpectedWork`; an empty text keeps the message.
	void EnterProgressFrame(float ExpectedWork = 1.f, const FText& Text = FText());

	/// Closes the task; a second call does nothing.
	void Destroy();

	/// What is done, from 0 to 1, inner tasks included.
	double GetFraction() const;

	const FText& GetMessage() const { return FrameMessage.IsEmpty() ? Message : FrameMessage; }
	bool IsOpen() const { return Lock.has_value(); }
	bool IsShown() const { return bShown; }
	bool HasCancelButton() const { return bShowCancelButton; }

private:
	friend class FFeedbackContext;
	void Tick(double Now, bool bPlaying);

	FFeedbackContext& Context;
	FText Message;
	FText FrameMessage;
	double AmountOfWork;
	double FinishedWork = 0.0;
	double FrameWork = 0.0;
	double StartTime = 0.0;
	std::optional<float> Delay;
	std::optional<FCollectionLock> Lock;
	bool bEnabled;
	bool bShowCancelButton = false;
	bool bAllowInPlaySession = false;
	bool bShown = false;
};

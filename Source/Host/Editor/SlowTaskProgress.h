// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Map.h"
#include "Core/SharedPointer.h"
#include "Engine/SlowTask.h"

class FSlateProgress;

/// Shows the process's slow tasks as progress of the widget application, while it exists. Without an application
/// nothing is shown. Makes itself the display of `GWarn`, and steps back at its end.
class FSlowTaskProgress final : public ISlowTaskDisplay
{
public:
	FSlowTaskProgress();
	~FSlowTaskProgress() override;

	void OnTaskShown(const FSlowTask& Task) override;
	void OnTaskProgress(const FSlowTask& Task) override;
	void OnTaskClosed(const FSlowTask& Task) override;

private:
	TMap<const FSlowTask*, TSharedPtr<FSlateProgress>> Shown;
};

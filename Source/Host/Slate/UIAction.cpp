// SPDX-License-Identifier: MIT
#include "Slate/UIAction.h"

#include <utility>

FUIAction::FUIAction(FExecuteAction InExecute, EUIActionRepeatMode InRepeatMode)
	: ExecuteAction(std::move(InExecute))
	, RepeatMode(InRepeatMode)
{
}

FUIAction::FUIAction(FExecuteAction InExecute, FCanExecuteAction InCanExecute, EUIActionRepeatMode InRepeatMode)
	: ExecuteAction(std::move(InExecute))
	, CanExecuteAction(std::move(InCanExecute))
	, RepeatMode(InRepeatMode)
{
}

FUIAction::FUIAction(FExecuteAction InExecute, FCanExecuteAction InCanExecute, FGetActionCheckState InGetCheckState,
	EUIActionRepeatMode InRepeatMode)
	: ExecuteAction(std::move(InExecute))
	, CanExecuteAction(std::move(InCanExecute))
	, GetActionCheckState(std::move(InGetCheckState))
	, RepeatMode(InRepeatMode)
{
}

bool FUIAction::CanExecute() const
{
	return !CanExecuteAction.IsBound() || CanExecuteAction.Execute();
}

bool FUIAction::Execute() const
{
	return CanExecute() && ExecuteAction.ExecuteIfBound();
}

ECheckBoxState FUIAction::GetCheckState() const
{
	return GetActionCheckState.IsBound() ? GetActionCheckState.Execute() : ECheckBoxState::Unchecked;
}

bool FUIAction::IsVisible() const
{
	return !IsActionVisibleDelegate.IsBound() || IsActionVisibleDelegate.Execute();
}

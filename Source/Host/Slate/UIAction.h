// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "Slate/SlateTypes.h"

/// Whether holding a chord down runs its action again and again.
enum class EUIActionRepeatMode : uint8
{
	RepeatDisabled,
	RepeatEnabled,
};

using FExecuteAction = TDelegate<void()>;
using FCanExecuteAction = TDelegate<bool()>;
using FGetActionCheckState = TDelegate<ECheckBoxState()>;
using FIsActionButtonVisible = TDelegate<bool()>;

/// What a command or menu entry does, and what it shows of its state.
///
/// Unbound delegates: nothing to execute; can be executed; not checked; visible.
struct FUIAction
{
	FExecuteAction ExecuteAction;
	FCanExecuteAction CanExecuteAction;
	FGetActionCheckState GetActionCheckState;
	FIsActionButtonVisible IsActionVisibleDelegate;
	EUIActionRepeatMode RepeatMode = EUIActionRepeatMode::RepeatDisabled;

	FUIAction() = default;
	explicit FUIAction(
		FExecuteAction InExecute, EUIActionRepeatMode InRepeatMode = EUIActionRepeatMode::RepeatDisabled);
	FUIAction(FExecuteAction InExecute, FCanExecuteAction InCanExecute,
		EUIActionRepeatMode InRepeatMode = EUIActionRepeatMode::RepeatDisabled);
	FUIAction(FExecuteAction InExecute, FCanExecuteAction InCanExecute, FGetActionCheckState InGetCheckState,
		EUIActionRepeatMode InRepeatMode = EUIActionRepeatMode::RepeatDisabled);

	bool CanExecute() const;

	/// Runs the action if it can be executed; whether it ran. The action may take itself out of wherever it is held.
	bool Execute() const;

	ECheckBoxState GetCheckState() const;
	bool IsVisible() const;
	bool IsBound() const { return ExecuteAction.IsBound(); }
};

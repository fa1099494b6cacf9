// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Slate.h"

/// The module's commands and their default chords.
class FTarvinTransformCommands : public TCommands<FTarvinTransformCommands>
{
public:
	FTarvinTransformCommands();

	void RegisterCommands() override;

	/// The pivot commands of the registered set. The index of each is its pivot position.
	static TArray<TSharedPtr<FUICommandInfo>> GetPivotCommands();

	/// All commands of the registered set, in their order.
	static TArray<TSharedPtr<FUICommandInfo>> GetAllCommands();

	TSharedPtr<FUICommandInfo> BakeTransform;
	TSharedPtr<FUICommandInfo> PivotCenter;
	TSharedPtr<FUICommandInfo> PivotBottom;
	TSharedPtr<FUICommandInfo> PivotTop;
	TSharedPtr<FUICommandInfo> PivotLeft;
	TSharedPtr<FUICommandInfo> PivotRight;
	TSharedPtr<FUICommandInfo> PivotFront;
	TSharedPtr<FUICommandInfo> PivotBack;
	TSharedPtr<FUICommandInfo> PivotWorldOrigin;
};

// SPDX-License-Identifier: MIT
#include "TarvinTransformCommands.h"

namespace
{
/// One command as it is registered.
struct FCommandEntry
{
	TSharedPtr<FUICommandInfo> FTarvinTransformCommands::*Command;
	const TCHAR* Name;
	const TCHAR* ToolTipKey;
	const char* DotName;
	const TCHAR* Label;
	const TCHAR* Description;
	FInputChord Chord;
};
} // namespace

FTarvinTransformCommands::FTarvinTransformCommands()
	: TCommands<FTarvinTransformCommands>(TEXT("TarvinTransform"),
		  NSLOCTEXT("Contexts", "TarvinTransform", "Morvel Mesh Transform"), NAME_None, FAppStyle::GetAppStyleSetName())
{
}

void FTarvinTransformCommands::RegisterCommands()
{
	using FSet = FTarvinTransformCommands;
	const auto Pivot = [](const FKey& Key) { return FInputChord(EModifierKey::Control, Key); };
	// The keypad layout is deliberate: bottom is 7 and top is 9, front is 2 and back is 8.
	const FCommandEntry Entries[] = {
		{&FSet::BakeTransform, TEXT("BakeTransform"), TEXT("BakeTransform_ToolTip"), ".BakeTransform",
			TEXT("Bake Transform"), TEXT("Bakes the selected static mesh's rotation and scale into the mesh itself"),
			FInputChord(EModifierKey::Control | EModifierKey::Shift, EKeys::B)},
		{&FSet::PivotCenter, TEXT("PivotCenter"), TEXT("PivotCenter_ToolTip"), ".PivotCenter", TEXT("Pivot to Center"),
			TEXT("Moves the mesh pivot to the centre of its bounding box"), Pivot(EKeys::NumPadFive)},
		{&FSet::PivotBottom, TEXT("PivotBottom"), TEXT("PivotBottom_ToolTip"), ".PivotBottom", TEXT("Pivot to Bottom"),
			TEXT("Moves the mesh pivot to the bottom of its bounding box"), Pivot(EKeys::NumPadSeven)},
		{&FSet::PivotTop, TEXT("PivotTop"), TEXT("PivotTop_ToolTip"), ".PivotTop", TEXT("Pivot to Top"),
			TEXT("Moves the mesh pivot to the top of its bounding box"), Pivot(EKeys::NumPadNine)},
		{&FSet::PivotLeft, TEXT("PivotLeft"), TEXT("PivotLeft_ToolTip"), ".PivotLeft", TEXT("Pivot to Left"),
			TEXT("Moves the mesh pivot to the left side of its bounding box"), Pivot(EKeys::NumPadFour)},
		{&FSet::PivotRight, TEXT("PivotRight"), TEXT("PivotRight_ToolTip"), ".PivotRight", TEXT("Pivot to Right"),
			TEXT("Moves the mesh pivot to the right side of its bounding box"), Pivot(EKeys::NumPadSix)},
		{&FSet::PivotFront, TEXT("PivotFront"), TEXT("PivotFront_ToolTip"), ".PivotFront", TEXT("Pivot to Front"),
			TEXT("Moves the mesh pivot to the front of its bounding box"), Pivot(EKeys::NumPadTwo)},
		{&FSet::PivotBack, TEXT("PivotBack"), TEXT("PivotBack_ToolTip"), ".PivotBack", TEXT("Pivot to Back"),
			TEXT("Moves the mesh pivot to the back of its bounding box"), Pivot(EKeys::NumPadEight)},
		{&FSet::PivotWorldOrigin, TEXT("PivotWorldOrigin"), TEXT("PivotWorldOrigin_ToolTip"), ".PivotWorldOrigin",
			TEXT("Pivot to World Origin"), TEXT("Moves the mesh pivot to the world origin"), Pivot(EKeys::NumPadZero)},
	};
	for (const FCommandEntry& Entry : Entries)
	{
		MakeUICommand_InternalUseOnly(this, this->*Entry.Command, TEXT("FTarvinTransformCommands"), Entry.Name,
			Entry.ToolTipKey, Entry.DotName, Entry.Label, Entry.Description, EUserInterfaceActionType::Button,
			Entry.Chord, FInputChord());
	}
}

TArray<TSharedPtr<FUICommandInfo>> FTarvinTransformCommands::GetPivotCommands()
{
	const FTarvinTransformCommands& Set = Get();
	return {Set.PivotCenter, Set.PivotBottom, Set.PivotTop, Set.PivotLeft, Set.PivotRight, Set.PivotFront,
		Set.PivotBack, Set.PivotWorldOrigin};
}

TArray<TSharedPtr<FUICommandInfo>> FTarvinTransformCommands::GetAllCommands()
{
	TArray<TSharedPtr<FUICommandInfo>> Commands = {Get().BakeTransform};
	Commands.Append(GetPivotCommands());
	return Commands;
}

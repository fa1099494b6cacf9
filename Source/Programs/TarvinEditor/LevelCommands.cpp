// SPDX-License-Identifier: MIT
#include "LevelCommands.h"

#include "Slate/AppStyle.h"

namespace
{
/// One line of a table of commands.
struct FCommandRow
{
	TSharedPtr<FUICommandInfo>* Command;
	const TCHAR* Name;
	const TCHAR* Label;
	const TCHAR* Description;
	FInputChord Chord = FInputChord();
	FInputChord Alternate = FInputChord();
	EUserInterfaceActionType Type = EUserInterfaceActionType::Button;
};

void MakeCommands(FBindingContext* Context, const TCHAR* SubNamespace, std::initializer_list<FCommandRow> Rows)
{
	for (const FCommandRow& Row : Rows)
	{
		const FString ToolTip = FString(Row.Name) + TEXT("_ToolTip");
		const std::string DotName = "." + FString(Row.Name).ToUtf8();
		MakeUICommand_InternalUseOnly(Context, *Row.Command, SubNamespace, Row.Name, *ToolTip, DotName.c_str(),
			Row.Label, Row.Description, Row.Type, Row.Chord, Row.Alternate);
	}
}

constexpr EModifierKey::Type Ctrl = EModifierKey::Control;
constexpr EModifierKey::Type CtrlShift = EModifierKey::Control | EModifierKey::Shift;
} // namespace

FLevelCommands::FLevelCommands()
	: TCommands(TEXT("LevelActions"), NSLOCTEXT("Contexts", "LevelActions", "Level Editor"), NAME_None,
		  FAppStyle::GetAppStyleSetName())
{
}

void FLevelCommands::RegisterCommands()
{
	MakeCommands(this, TEXT("FLevelCommands"),
		{
			{&Undo, TEXT("Undo"), TEXT("Undo"), TEXT("Takes the last change back"), {Ctrl, EKeys::Z}},
			{&Redo, TEXT("Redo"), TEXT("Redo"), TEXT("Does the change again that was taken back last"),
				{Ctrl, EKeys::Y}, {CtrlShift, EKeys::Z}},
			{&SelectAll, TEXT("SelectAll"), TEXT("Select All"), TEXT("Selects every actor"), {Ctrl, EKeys::A}},
			{&SelectNone, TEXT("SelectNone"), TEXT("Select None"), TEXT("Empties the selection"),
				{CtrlShift, EKeys::A}},
			{&SelectSameMesh, TEXT("SelectSameMesh"), TEXT("Select All with Same Mesh"),
				TEXT("Selects every actor that shows a mesh of the selected ones")},
			{&SelectChildren, TEXT("SelectChildren"), TEXT("Select Children"),
				TEXT("Adds everything that is attached to the selected actors")},
			{&FocusSelection, TEXT("FocusSelection"), TEXT("Focus Selection"),
				TEXT("Moves the view so that the selected actors fill it"), {EKeys::F}},
			{&Delete, TEXT("Delete"), TEXT("Delete"), TEXT("Removes the selected actors from the level"),
				{EKeys::Delete}},
			{&Duplicate, TEXT("Duplicate"), TEXT("Duplicate"),
				TEXT("Copies the selected actors, with their meshes shared, and selects the copies"), {Ctrl, EKeys::D}},
			{&AttachToLast, TEXT("AttachToLast"), TEXT("Attach to Last Selected"),
				TEXT("Attaches the selected actors to the one that was selected last; nothing moves")},
			{&Detach, TEXT("Detach"), TEXT("Detach"),
				TEXT("Takes the selected actors from what they are attached to; nothing moves")},
		});
}

FWindowCommands::FWindowCommands()
	: TCommands(TEXT("MainWindow"), NSLOCTEXT("Contexts", "MainWindow", "Main Window"), NAME_None,
		  FAppStyle::GetAppStyleSetName())
{
}

void FWindowCommands::RegisterCommands()
{
	constexpr EUserInterfaceActionType Radio = EUserInterfaceActionType::RadioButton;
	MakeCommands(this, TEXT("FWindowCommands"),
		{
			{&OpenScene, TEXT("OpenScene"), TEXT("Open Scene..."), TEXT("Opens a glTF scene"), {Ctrl, EKeys::O}},
			{&SaveScene, TEXT("SaveScene"), TEXT("Save Scene"), TEXT("Saves the scene where it was opened from"),
				{Ctrl, EKeys::S}},
			{&SaveSceneAs, TEXT("SaveSceneAs"), TEXT("Save Scene As..."), TEXT("Saves the scene under another name"),
				{CtrlShift, EKeys::S}},
			{&Quit, TEXT("Quit"), TEXT("Quit"), TEXT("Ends the program"), {Ctrl, EKeys::Q}},
			{&StartPlay, TEXT("StartPlay"), TEXT("Play"), TEXT("Starts a play session in a copy of the level"),
				{EModifierKey::Alt, EKeys::P}},
			{&StopPlay, TEXT("StopPlay"), TEXT("Stop"), TEXT("Ends the play session"), {EKeys::Escape}},
			{&EditShortcuts, TEXT("EditShortcuts"), TEXT("Keyboard Shortcuts..."),
				TEXT("Shows the chords of all commands, to be changed")},
			{&SystemTheme, TEXT("SystemTheme"), TEXT("Colours of the Desktop"),
				TEXT("Light or dark, as the desktop prefers"), {}, {}, Radio},
			{&LightTheme, TEXT("LightTheme"), TEXT("Light Colours"), TEXT("Dark on light"), {}, {}, Radio},
			{&DarkTheme, TEXT("DarkTheme"), TEXT("Dark Colours"), TEXT("Light on dark"), {}, {}, Radio},
		});
}

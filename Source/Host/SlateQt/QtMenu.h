// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Function.h"
#include "Slate/UICommandList.h"
#include "SlateQt/QtPrelude.h"

#include <QMenu>

#include <vector>

/// One line of a menu, whatever describes the menu as a whole.
struct FQtMenuEntry
{
	enum class EKind : uint8
	{
		Action,  ///< runs something
		SubMenu, ///< opens a menu of its own
		Section, ///< begins a group, with a label where there is one
	};

	/// An entry for a command: its label, description, chord and state, run through the list that maps it.
	static FQtMenuEntry Command(
		const TSharedRef<const FUICommandInfo>& Command, const TSharedRef<const FUICommandList>& CommandList);

	/// An entry with an action of its own, without a chord.
	static FQtMenuEntry Plain(const FText& Label, const FText& ToolTip, const FUIAction& Action);

	/// A submenu, whose entries are made each time it opens.
	static FQtMenuEntry SubMenu(
		const FText& Label, const FText& ToolTip, std::function<std::vector<FQtMenuEntry>()> MakeEntries);

	static FQtMenuEntry Section(const FText& Label);

	EKind Kind = EKind::Action;
	FName Name; ///< of the action in Qt, so that it can be found; may be none
	FText Label;
	FText ToolTip;
	FText Chord;
	EUserInterfaceActionType Type = EUserInterfaceActionType::Button;
	FUIAction Action;
	std::function<std::vector<FQtMenuEntry>()> MakeEntries;
};

/// A menu whose entries are made anew each time it opens. Chords are shown in it, and live nowhere in Qt.
class FQtMenu : public QMenu
{
public:
	FQtMenu(std::function<std::vector<FQtMenuEntry>()> InMakeEntries, QWidget* Parent);

	/// Makes the entries now. Opening the menu does so by itself.
	void Rebuild();

private:
	void AddAction(const FQtMenuEntry& Entry);
	void AddSubMenu(const FQtMenuEntry& Entry);

	std::function<std::vector<FQtMenuEntry>()> MakeEntries;
};

// SPDX-License-Identifier: MIT
#include "SlateQt/QtMenu.h"

#include "SlateQt/QtText.h"

#include <QActionGroup>

FQtMenuEntry FQtMenuEntry::Command(
	const TSharedRef<const FUICommandInfo>& Command, const TSharedRef<const FUICommandList>& CommandList)
{
	FQtMenuEntry Entry;
	Entry.Name = Command->GetCommandName();
	Entry.Label = Command->GetLabel();
	Entry.ToolTip = Command->GetDescription();
	Entry.Chord = Command->GetInputText();
	Entry.Type = Command->GetUserInterfaceType();
	// Asked through the list, which may map the command to something else, or to nothing, while the menu is open.
	Entry.Action = FUIAction(FExecuteAction::CreateLambda([=] { CommandList->ExecuteAction(Command); }),
		FCanExecuteAction::CreateLambda([=] { return CommandList->CanExecuteAction(Command); }),
		FGetActionCheckState::CreateLambda([=] { return CommandList->GetCheckState(Command); }));
	Entry.Action.IsActionVisibleDelegate =
		FIsActionButtonVisible::CreateLambda([=] { return CommandList->GetVisibility(Command); });
	return Entry;
}

FQtMenuEntry FQtMenuEntry::Plain(const FText& Label, const FText& ToolTip, const FUIAction& Action)
{
	FQtMenuEntry Entry;
	Entry.Label = Label;
	Entry.ToolTip = ToolTip;
	Entry.Action = Action;
	return Entry;
}

FQtMenuEntry FQtMenuEntry::SubMenu(
	const FText& Label, const FText& ToolTip, std::function<std::vector<FQtMenuEntry>()> MakeEntries)
{
	FQtMenuEntry Entry;
	Entry.Kind = EKind::SubMenu;
	Entry.Label = Label;
	Entry.ToolTip = ToolTip;
	Entry.MakeEntries = std::move(MakeEntries);
	return Entry;
}

FQtMenuEntry FQtMenuEntry::Section(const FText& Label)
{
	FQtMenuEntry Entry;
	Entry.Kind = EKind::Section;
	Entry.Label = Label;
	return Entry;
}

FQtMenu::FQtMenu(std::function<std::vector<FQtMenuEntry>()> InMakeEntries, QWidget* Parent)
	: QMenu(Parent)
	, MakeEntries(std::move(InMakeEntries))
{
	setToolTipsVisible(true);
	connect(this, &QMenu::aboutToShow, this, [this] { Rebuild(); });
}

void FQtMenu::Rebuild()
{
	clear();
	for (QMenu* Below : findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly))
	{
		Below->deleteLater();
	}
	for (const FQtMenuEntry& Entry : MakeEntries())
	{
		switch (Entry.Kind)
		{
		case FQtMenuEntry::EKind::Section:
			Entry.Label.IsEmpty() ? addSeparator() : addSection(ToMenuLabel(Entry.Label));
			break;
		case FQtMenuEntry::EKind::SubMenu:
			AddSubMenu(Entry);
			break;
		case FQtMenuEntry::EKind::Action:
			AddAction(Entry);
			break;
		}
	}
}

void FQtMenu::AddAction(const FQtMenuEntry& Entry)
{
	if (!Entry.Action.IsVisible())
	{
		return;
	}
	QString Text = ToMenuLabel(Entry.Label);
	if (!Entry.Chord.IsEmpty())
	{
		Text += QLatin1Char('\t') + ToQString(Entry.Chord);
	}
	QAction* Action = addAction(Text);
	Action->setObjectName(ToQString(Entry.Name.ToString()));
	Action->setToolTip(ToToolTip(Entry.ToolTip));
	Action->setEnabled(Entry.Action.CanExecute());
	const bool bCheckable = Entry.Type == EUserInterfaceActionType::ToggleButton ||
							Entry.Type == EUserInterfaceActionType::RadioButton ||
							Entry.Type == EUserInterfaceActionType::Check;
	Action->setCheckable(bCheckable);
	Action->setChecked(bCheckable && Entry.Action.GetCheckState() == ECheckBoxState::Checked);
	if (Entry.Type == EUserInterfaceActionType::RadioButton)
	{
		// A group of one draws the mark of a choice; what is chosen is the command's own business.
		auto* Group = new QActionGroup(Action);
		Group->setExclusionPolicy(QActionGroup::ExclusionPolicy::ExclusiveOptional);
		Group->addAction(Action);
	}
	connect(Action, &QAction::triggered, this, [Run = Entry.Action] { Run.Execute(); });
}

void FQtMenu::AddSubMenu(const FQtMenuEntry& Entry)
{
	auto* Below = new FQtMenu(Entry.MakeEntries, this);
	Below->setObjectName(ToQString(Entry.Name.ToString()));
	Below->setTitle(ToMenuLabel(Entry.Label));
	Below->menuAction()->setToolTip(ToToolTip(Entry.ToolTip));
	addMenu(Below);
}

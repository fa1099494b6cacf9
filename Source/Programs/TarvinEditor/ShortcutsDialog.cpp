// SPDX-License-Identifier: MIT
#include "ShortcutsDialog.h"

#include "ChordField.h"
#include "Slate/InputBindingManager.h"
#include "SlateQt/QtText.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace
{
enum EShortcutColumn
{
	CommandColumn,
	PrimaryColumn,
	SecondaryColumn,
};

QString FieldName(FName Command, EMultipleKeyBindingIndex Index)
{
	return ToQString(Command.ToString()) +
		   (Index == EMultipleKeyBindingIndex::Primary ? QStringLiteral("Primary") : QStringLiteral("Secondary"));
}

QString QualifiedName(const FUICommandInfo& Command)
{
	const TSharedPtr<FBindingContext> Context =
		FInputBindingManager::Get().GetContextByName(Command.GetBindingContext());
	const QString Label = ToQString(Command.GetLabel());
	return Context.IsValid() ? QStringLiteral("%1 (%2)").arg(Label, ToQString(Context->GetContextDesc())) : Label;
}
} // namespace

FShortcutsDialog::FShortcutsDialog(QWidget* Parent)
	: QDialog(Parent)
	, Search(new QLineEdit(this))
	, Tree(new QTreeWidget(this))
	, Message(new QLabel(this))
{
	setObjectName(QStringLiteral("Shortcuts"));
	setWindowTitle(ToQString(NSLOCTEXT("TarvinEditor", "ShortcutsTitle", "Keyboard Shortcuts")));
	resize(720, 560);
	Search->setPlaceholderText(ToQString(NSLOCTEXT("TarvinEditor", "ShortcutsSearch", "Search commands")));
	Search->setClearButtonEnabled(true);
	Message->setObjectName(QStringLiteral("ShortcutsMessage"));
	Message->setWordWrap(true);
	Message->setMinimumHeight(2 * fontMetrics().height());
	Tree->setHeaderLabels({ToQString(NSLOCTEXT("TarvinEditor", "CommandColumn", "Command")),
		ToQString(NSLOCTEXT("TarvinEditor", "ChordColumn", "Chord")),
		ToQString(NSLOCTEXT("TarvinEditor", "SecondChordColumn", "Second chord"))});
	Tree->setSelectionMode(QAbstractItemView::NoSelection);
	Tree->setFocusPolicy(Qt::NoFocus);
	Tree->header()->setSectionResizeMode(CommandColumn, QHeaderView::Stretch);
	Tree->header()->setStretchLastSection(false);
	Tree->header()->resizeSection(PrimaryColumn, 170);
	Tree->header()->resizeSection(SecondaryColumn, 170);

	auto* Buttons = new QDialogButtonBox(QDialogButtonBox::Close | QDialogButtonBox::RestoreDefaults, this);
	for (QAbstractButton* Button : Buttons->buttons())
	{
		static_cast<QPushButton*>(Button)->setAutoDefault(false);
	}
	auto* Layout = new QVBoxLayout(this);
	Layout->addWidget(Search);
	Layout->addWidget(Tree, 1);
	Layout->addWidget(Message);
	Layout->addWidget(Buttons);
	connect(Buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
	connect(Buttons->button(QDialogButtonBox::RestoreDefaults), &QPushButton::clicked, this, [this] { ResetAll(); });
	connect(Search, &QLineEdit::textChanged, this, [this](const QString& Text) { Filter(Text); });
	Fill();
}

void FShortcutsDialog::Fill()
{
	Tree->clear();
	FInputBindingManager& Manager = FInputBindingManager::Get();
	for (const TSharedRef<FBindingContext>& Context : Manager.GetKnownInputContexts())
	{
		auto* Group = new QTreeWidgetItem(Tree, {ToQString(Context->GetContextDesc())});
		Group->setFirstColumnSpanned(true);
		QFont Bold = font();
		Bold.setBold(true);
		Group->setFont(CommandColumn, Bold);
		for (const TSharedRef<FUICommandInfo>& Command : Manager.GetCommandInfosFromContext(Context->GetContextName()))
		{
			AddCommand(Group, Command);
		}
		Group->setExpanded(true);
	}
}

void FShortcutsDialog::AddCommand(QTreeWidgetItem* Group, const TSharedRef<FUICommandInfo>& Command)
{
	auto* Line = new QTreeWidgetItem(Group, {ToQString(Command->GetLabel())});
	Line->setToolTip(CommandColumn, ToToolTip(Command->GetDescription()));
	for (const EMultipleKeyBindingIndex Index :
		{EMultipleKeyBindingIndex::Primary, EMultipleKeyBindingIndex::Secondary})
	{
		auto* Field = new FChordField(Tree);
		Field->setObjectName(FieldName(Command->GetCommandName(), Index));
		Field->SetChord(Command->GetActiveChord(Index));
		Field->OnChordPressed = [this, Command, Index](const FInputChord& Chord) { Change(Command, Index, Chord); };
		Tree->setItemWidget(Line, Index == EMultipleKeyBindingIndex::Primary ? PrimaryColumn : SecondaryColumn, Field);
	}
}

void FShortcutsDialog::Change(
	const TSharedRef<FUICommandInfo>& Command, EMultipleKeyBindingIndex Index, const FInputChord& Chord)
{
	QStringList Others;
	for (const TSharedRef<FUICommandInfo>& Other : FInputBindingManager::Get().FindConflicts(*Command, Chord))
	{
		Others.append(QualifiedName(*Other));
	}
	Command->SetActiveChord(Chord, Index);
	Message->setText(Others.isEmpty() ? QString()
									  : ToQString(FText::Format(
											NSLOCTEXT("TarvinEditor", "ChordTaken", "{0} is also the chord of {1}."),
											Chord.GetInputText(), ToFText(Others.join(QStringLiteral(", "))))));
}

void FShortcutsDialog::Filter(const QString& Text)
{
	for (int Group = 0; Group < Tree->topLevelItemCount(); ++Group)
	{
		QTreeWidgetItem* const Item = Tree->topLevelItem(Group);
		int NumShown = 0;
		for (int Line = 0; Line < Item->childCount(); ++Line)
		{
			const bool bShown = Item->child(Line)->text(CommandColumn).contains(Text.trimmed(), Qt::CaseInsensitive);
			Item->child(Line)->setHidden(!bShown);
			NumShown += bShown ? 1 : 0;
		}
		Item->setHidden(NumShown == 0);
	}
}

void FShortcutsDialog::ResetAll()
{
	FInputBindingManager::Get().ResetUserChords();
	Message->setText(QString());
	Fill();
	Filter(Search->text());
}

FChordField* FShortcutsDialog::FieldOf(FName Command, EMultipleKeyBindingIndex Index) const
{
	return dynamic_cast<FChordField*>(Tree->findChild<QLineEdit*>(FieldName(Command, Index)));
}

QString FShortcutsDialog::GetMessage() const
{
	return Message->text();
}

// SPDX-License-Identifier: MIT
#include "SlateQt/QtEditableText.h"

#include "SlateQt/QtText.h"

#include <QScopedValueRollback>

FQtTextLine::FQtTextLine(const TSharedRef<SEditableTextBase>& InHost, QWidget* Parent)
	: QLineEdit(Parent)
	, Host(InHost)
{
	connect(this, &QLineEdit::textEdited, this,
		[this](const QString& Text)
		{
			bUncommitted = true;
			Host->TypeText(ToFText(Text));
		});
	connect(this, &QLineEdit::returnPressed, this, [this] { Commit(ETextCommit::OnEnter); });
	// Qt sends this one after Enter as well as when the focus goes; Enter has committed already then.
	connect(this, &QLineEdit::editingFinished, this,
		[this]
		{
			if (bUncommitted)
			{
				Commit(ETextCommit::OnUserMovedFocus);
			}
		});
}

void FQtTextLine::Commit(ETextCommit How)
{
	bUncommitted = false;
	Host->CommitText(How);
}

void FQtTextLine::ShowHostText()
{
	const QString Text = ToQString(Host->GetText());
	if (Text != text())
	{
		setText(Text);
	}
	setPlaceholderText(ToQString(Host->GetHintText()));
	setReadOnly(Host->IsReadOnly());
}

FQtMultiLineText::FQtMultiLineText(const TSharedRef<SEditableTextBase>& InHost, QWidget* Parent)
	: QPlainTextEdit(Parent)
	, Host(InHost)
{
	// Tab moves on, as in all other widgets of a dialog.
	setTabChangesFocus(true);
	connect(this, &QPlainTextEdit::textChanged, this,
		[this]
		{
			if (!bShowing)
			{
				bUncommitted = true;
				Host->TypeText(ToFText(toPlainText()));
			}
		});
}

void FQtMultiLineText::ShowHostText()
{
	const QScopedValueRollback Showing(bShowing, true);
	const QString Text = ToQString(Host->GetText());
	if (Text != toPlainText())
	{
		setPlainText(Text);
	}
	setPlaceholderText(ToQString(Host->GetHintText()));
	setReadOnly(Host->IsReadOnly());
}

void FQtMultiLineText::focusOutEvent(QFocusEvent* Event)
{
	QPlainTextEdit::focusOutEvent(Event);
	if (bUncommitted)
	{
		bUncommitted = false;
		Host->CommitText(ETextCommit::OnUserMovedFocus);
	}
}

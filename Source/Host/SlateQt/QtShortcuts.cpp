// SPDX-License-Identifier: MIT
#include "SlateQt/QtShortcuts.h"

#include <QAbstractButton>
#include <QAction>
#include <QShortcut>

namespace
{
bool StripOne(QObject& Object)
{
	if (auto* Action = qobject_cast<QAction*>(&Object))
	{
		return StripShortcuts(*Action);
	}
	if (auto* Shortcut = qobject_cast<QShortcut*>(&Object))
	{
		const bool bHad = !Shortcut->key().isEmpty();
		Shortcut->setKey({});
		return bHad;
	}
	if (auto* Button = qobject_cast<QAbstractButton*>(&Object))
	{
		const bool bHad = !Button->shortcut().isEmpty() && Button->shortcut() != QKeySequence::mnemonic(Button->text());
		if (bHad)
		{
			Button->setShortcut({});
		}
		return bHad;
	}
	return false;
}
}

bool StripShortcuts(QAction& Action)
{
	const bool bHad = !Action.shortcuts().isEmpty();
	if (bHad)
	{
		Action.setShortcuts(QList<QKeySequence>());
	}
	return bHad;
}

int StripShortcutsBelow(QObject& Root)
{
	int Count = StripOne(Root) ? 1 : 0;
	for (QObject* Object : Root.findChildren<QObject*>())
	{
		Count += StripOne(*Object) ? 1 : 0;
	}
	return Count;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/NativeWidget.h"
#include "SlateQt/QtPrelude.h"

#include <QHash>
#include <QObject>

#include <functional>

/// Whether text is typed into the object when it has the focus: text and number fields, editable combo boxes, fields
/// for key chords, editors within item views. Read-only fields are none. A widget of another kind says so itself with
/// a dynamic property "TypesText" that is true.
bool IsTextInput(const QObject& Object);

/// The type name under which the host knows an object of Qt: its class name, for text input within
/// "SEditableText(...)".
FName HostTypeName(const QObject& Object);

/// Lets the widget application know which widget of Qt has the focus, and Qt which one the application chose.
///
/// What was made for a host widget is known as that host widget while its dialog is up. Everything else has a stand-in
/// that hands keys on to Qt.
class FQtFocusMirror : public QObject
{
public:
	/// `InForward` hands the key that is being routed on to Qt, and says whether something took it.
	explicit FQtFocusMirror(std::function<bool()> InForward);

	/// Gives the application's focus to the host widget of `Object`; null leaves it as it is.
	void Follow(QObject* Object);

	/// Gives Qt's focus to what shows `HostWidget`. Nothing where Qt shows no such widget, and nothing for an empty
	/// one: the next key goes where Qt's focus is.
	void OnHostFocusChanged(const TSharedPtr<SWidget>& HostWidget);

	/// The stand-in of an object; made when first asked for, gone with the object.
	TSharedRef<SNativeWidget> StandInFor(QObject& Object);

private:
	TSharedRef<SWidget> HostWidgetFor(QObject& Object);

	std::function<bool()> Forward;
	QHash<QObject*, TSharedPtr<SNativeWidget>> StandIns;
	bool bFollowing = false;
};

// SPDX-License-Identifier: MIT
#include "SlateQt/QtFocusMirror.h"

#include "Slate/SlateApplication.h"
#include "SlateQt/QtText.h"
#include "SlateQt/QtWidgetLink.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScopedValueRollback>
#include <QTextEdit>
#include <QVariant>

bool IsTextInput(const QObject& Object)
{
	if (const auto* Line = qobject_cast<const QLineEdit*>(&Object))
	{
		return !Line->isReadOnly();
	}
	if (const auto* Plain = qobject_cast<const QPlainTextEdit*>(&Object))
	{
		return !Plain->isReadOnly();
	}
	if (const auto* Rich = qobject_cast<const QTextEdit*>(&Object))
	{
		return !Rich->isReadOnly();
	}
	if (const auto* Spin = qobject_cast<const QAbstractSpinBox*>(&Object))
	{
		return !Spin->isReadOnly();
	}
	if (const auto* Combo = qobject_cast<const QComboBox*>(&Object))
	{
		return Combo->isEditable();
	}
	return qobject_cast<const QKeySequenceEdit*>(&Object) != nullptr || Object.property("TypesText").toBool();
}

FName HostTypeName(const QObject& Object)
{
	const FString ClassName = FString::FromUtf8(Object.metaObject()->className());
	return FName(IsTextInput(Object) ? TEXT("SEditableText(") + ClassName + TEXT(")") : ClassName);
}

FQtFocusMirror::FQtFocusMirror(std::function<bool()> InForward)
	: Forward(std::move(InForward))
{
}

TSharedRef<SNativeWidget> FQtFocusMirror::StandInFor(QObject& Object)
{
	TSharedPtr<SNativeWidget>& StandIn = StandIns[&Object];
	if (!StandIn.IsValid())
	{
		const auto OnKey = FOnNativeKey::CreateLambda(
			[this](const FKeyEvent&) { return Forward() ? FReply::Handled() : FReply::Unhandled(); });
		StandIn = SNew(SNativeWidget).OnKeyDown(OnKey).OnKeyUp(OnKey);
		connect(&Object, &QObject::destroyed, this, [this](QObject* Gone) { StandIns.remove(Gone); });
	}
	// What was a combo box to choose from may have become one to type into.
	const TSharedPtr<SWidget> Host = FQtWidgetLink::HostWidgetOf(Object);
	StandIn->SetType(Host.IsValid() ? Host->GetType() : HostTypeName(Object));
	return StandIn.ToSharedRef();
}

TSharedRef<SWidget> FQtFocusMirror::HostWidgetFor(QObject& Object)
{
	// Outside of a dialog the application routes keys, so what was made for a host widget needs a stand-in too: the
	// host widget would take the keys itself, and Qt would never see them.
	const TSharedPtr<SWidget> Host = FQtWidgetLink::HostWidgetOf(Object);
	const bool bInDialog = FSlateApplication::Get().GetActiveModalDialog().IsValid();
	return Host.IsValid() && bInDialog && Host->SupportsKeyboardFocus() ? Host.ToSharedRef()
																		: TSharedRef<SWidget>(StandInFor(Object));
}

void FQtFocusMirror::Follow(QObject* Object)
{
	if (Object != nullptr && FSlateApplication::IsInitialized())
	{
		const QScopedValueRollback Following(bFollowing, true);
		FSlateApplication::Get().SetKeyboardFocus(HostWidgetFor(*Object));
	}
}

void FQtFocusMirror::OnHostFocusChanged(const TSharedPtr<SWidget>& HostWidget)
{
	if (bFollowing || !HostWidget.IsValid())
	{
		return;
	}
	QWidget* Shown = FQtWidgetLink::QtWidgetOf(*HostWidget);
	for (auto Entry = StandIns.begin(); Shown == nullptr && Entry != StandIns.end(); ++Entry)
	{
		if (Entry.value().Get() == HostWidget.Get())
		{
			Shown = qobject_cast<QWidget*>(Entry.key());
		}
	}
	if (Shown != nullptr && !Shown->hasFocus())
	{
		Shown->setFocus(Qt::OtherFocusReason);
	}
}

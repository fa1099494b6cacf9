// SPDX-License-Identifier: MIT
#include "SlateQt/QtDialog.h"

#include "SlateQt/QtText.h"
#include "SlateQt/QtWidgetBuilder.h"
#include "SlateQt/QtWidgetLink.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>

FQtDialog::FQtDialog(const TSharedRef<SCustomDialog>& InHost, QWidget* Parent)
	: QDialog(Parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
						  Qt::WindowCloseButtonHint)
	, Host(InHost)
{
	setObjectName(QStringLiteral("SCustomDialog"));
	setWindowTitle(ToWindowTitle(Host->GetTitle()));
	setWindowModality(Qt::ApplicationModal);
	auto* Layout = new QVBoxLayout(this);
	Layout->setSizeConstraint(QLayout::SetFixedSize);
	Layout->setContentsMargins(16, 16, 16, 16);
	Layout->setSpacing(16);
	if (Host->GetDialogContent().IsValid())
	{
		Layout->addWidget(MakeQtWidget(Host->GetDialogContent().ToSharedRef(), this));
	}
	Layout->addWidget(MakeButtonRow());
}

QWidget* FQtDialog::MakeButtonRow()
{
	auto* Row = new QWidget(this);
	auto* Layout = new QHBoxLayout(Row);
	Layout->setContentsMargins(0, 0, 0, 0);
	Layout->addStretch(1);
	for (int32 Index = 0; Index < Host->GetButtons().Num(); ++Index)
	{
		auto* Button = static_cast<QPushButton*>(MakeQtWidget(Host->GetButtonWidget(Index), Row));
		Button->setObjectName(QStringLiteral("Button%1").arg(Index));
		Button->setDefault(Index == Host->GetDefaultButton());
		if (Index == Host->GetDefaultButton())
		{
			Button->setFocus();
		}
		Layout->addWidget(Button);
	}
	return Row;
}

FQtDialog::~FQtDialog()
{
	// A window that goes with its owner has been closed like any other.
	if (EndLoop)
	{
		EndLoop();
	}
}

void FQtDialog::RunModal()
{
	const QPointer<FQtDialog> Alive(this);
	const TSharedRef<SCustomDialog> Asked = Host;
	QEventLoop Loop;
	EndLoop = [&Loop] { Loop.quit(); };
	const FDelegateHandle Handle = Asked->OnWindowClosed().AddLambda(
		[Alive]
		{
			if (!Alive.isNull())
			{
				Alive->hide();
			}
		});
	show();
	activateWindow();
	// One that was answered while it was opening has nothing to wait for.
	if (!Asked->IsClosed())
	{
		Loop.exec();
	}
	Asked->OnWindowClosed().Remove(Handle);
	if (!Alive.isNull())
	{
		EndLoop = nullptr;
	}
}

void FQtDialog::reject()
{
	Host->OnKeyDown(FKeyEvent(EKeys::Escape, {}));
}

void FQtDialog::closeEvent(QCloseEvent* Event)
{
	Event->accept();
	Host->RequestDestroyWindow();
}

void FQtDialog::hideEvent(QHideEvent* Event)
{
	QDialog::hideEvent(Event);
	// A window that was minimised is still being asked.
	if (EndLoop && !Event->spontaneous())
	{
		EndLoop();
	}
}

void FQtDialog::keyPressEvent(QKeyEvent* Event)
{
	if (Event->key() != Qt::Key_Return && Event->key() != Qt::Key_Enter)
	{
		QDialog::keyPressEvent(Event);
		return;
	}
	// A button with the focus is what Enter means; anything else with the focus leaves it to the default button.
	const FKeyEvent Enter(EKeys::Enter, {});
	const auto* Focused = qobject_cast<const QPushButton*>(focusWidget());
	const TSharedPtr<SWidget> Button = Focused != nullptr ? FQtWidgetLink::HostWidgetOf(*Focused) : nullptr;
	if (Button.IsValid())
	{
		Button->OnKeyDown(Enter);
	}
	else
	{
		Host->OnKeyDown(Enter);
	}
}

// SPDX-License-Identifier: MIT
#include "SlateQt/QtWidgetLink.h"

#include <QApplication>
#include <QWidget>

FQtWidgetLink::FQtWidgetLink(
	QWidget& InQtWidget, const TSharedRef<SWidget>& InHostWidget, std::function<void()> OnHostChanged)
	: QObject(&InQtWidget)
	, HostWidget(InHostWidget)
	, Handle(InHostWidget->OnChanged().AddLambda([Changed = std::move(OnHostChanged)](SWidget&) { Changed(); }))
{
}

FQtWidgetLink::~FQtWidgetLink()
{
	HostWidget->OnChanged().Remove(Handle);
}

TSharedPtr<SWidget> FQtWidgetLink::HostWidgetOf(const QObject& Object)
{
	for (const QObject* Child : Object.children())
	{
		if (const auto* Link = dynamic_cast<const FQtWidgetLink*>(Child))
		{
			return Link->HostWidget;
		}
	}
	return {};
}

QWidget* FQtWidgetLink::QtWidgetOf(const SWidget& HostWidget)
{
	for (QWidget* Widget : QApplication::allWidgets())
	{
		if (HostWidgetOf(*Widget).Get() == &HostWidget)
		{
			return Widget;
		}
	}
	return nullptr;
}

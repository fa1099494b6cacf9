// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/Widget.h"
#include "SlateQt/QtPrelude.h"

#include <QObject>

#include <functional>

class QWidget;

/// Ties a Qt widget to the host widget that it shows, and keeps the latter alive; a child of the Qt widget, and gone
/// with it.
class FQtWidgetLink : public QObject
{
public:
	/// `OnHostChanged` runs whenever the host widget changed, until the Qt widget is destroyed.
	FQtWidgetLink(QWidget& InQtWidget, const TSharedRef<SWidget>& InHostWidget, std::function<void()> OnHostChanged);
	~FQtWidgetLink() override;

	/// The host widget that `Object` shows; empty for one that shows none.
	static TSharedPtr<SWidget> HostWidgetOf(const QObject& Object);

	/// The Qt widget that shows `HostWidget`; null where there is none. Looks through all widgets of the program.
	static QWidget* QtWidgetOf(const SWidget& HostWidget);

private:
	TSharedRef<SWidget> HostWidget;
	FDelegateHandle Handle;
};

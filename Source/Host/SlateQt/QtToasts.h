// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/NotificationItem.h"
#include "SlateQt/QtPrelude.h"

#include <QPointer>
#include <QWidget>

#include <vector>

/// One notification on screen: a rounded panel with a text, named "Toast". It never takes a click or the focus.
class FQtToast : public QWidget
{
public:
	FQtToast(const TSharedRef<SNotificationItem>& InItem, QWidget* Parent);

	const TSharedRef<SNotificationItem>& GetItem() const { return Item; }

	/// What the toast says.
	QString GetText() const;

	/// How much of the toast is seen, 0 to 1.
	double GetOpacity() const { return Opacity; }

	/// Lets the toast fade out from `Now` on. A second call does nothing.
	void FadeOut(double Now);
	bool IsFadingOut() const { return FadeOutStart >= 0.0; }

	/// Shows the toast as it is at `Now`; whether there is still something to see.
	bool Advance(double Now);

	/// Shows a changed text or state.
	void ShowItem();

	QSize sizeHint() const override;

protected:
	void paintEvent(QPaintEvent* Event) override;

private:
	QRect TextRect(int Width) const;

	TSharedRef<SNotificationItem> Item;
	double Opacity = 0.0;
	double OpacityAtFadeOut = 1.0;
	double FadeOutStart = -1.0;
};

/// The notifications over the lower right corner of a window, the newest at the bottom.
///
/// Time is that of the notification manager's clock. Without a window notifications wait for one.
class FQtToasts : public QObject
{
public:
	/// Moves all toasts to another window; null for none.
	void SetWindow(QWidget* InWindow);

	void Add(const TSharedRef<SNotificationItem>& Item);
	void Change(const TSharedRef<SNotificationItem>& Item);

	/// Lets the toast of a notification that is over fade out.
	void Remove(const TSharedRef<SNotificationItem>& Item);

	/// Lets time pass.
	void Tick();

	/// Whether any toast is seen, still or fading.
	bool IsEmpty() const { return Toasts.empty(); }

	bool eventFilter(QObject* Receiver, QEvent* Event) override;

private:
	FQtToast* Find(const SNotificationItem& Item) const;
	void Show(FQtToast& Toast);
	void Place();

	QPointer<QWidget> Window;
	std::vector<QPointer<FQtToast>> Toasts;
	TArray<TSharedRef<SNotificationItem>> Waiting;
};

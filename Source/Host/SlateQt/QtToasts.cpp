// SPDX-License-Identifier: MIT
#include "SlateQt/QtToasts.h"

#include "Slate/SlateNotificationManager.h"
#include "SlateQt/QtText.h"
#include "SlateQt/QtTheme.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>

#include <algorithm>

namespace
{
// In device-independent pixels.
constexpr int WidestText = 420;
constexpr int NarrowestText = 120;
constexpr int PaddingX = 16;
constexpr int PaddingY = 12;
constexpr int DistanceFromCorner = 16;
constexpr int DistanceBetween = 8;
constexpr int CornerRadius = 6;
constexpr int StateBarWidth = 4;

double Now()
{
	return FSlateNotificationManager::Get().Now();
}

/// The part of a fade that is over after `Elapsed` seconds of `Duration`.
double Faded(double Elapsed, double Duration)
{
	return Duration > 0.0 ? std::clamp(Elapsed / Duration, 0.0, 1.0) : 1.0;
}

QColor StateColour(SNotificationItem::ECompletionState State)
{
	switch (State)
	{
	case SNotificationItem::CS_Pending:
		return {0x4a, 0x90, 0xd9};
	case SNotificationItem::CS_Success:
		return {0x57, 0xa6, 0x4a};
	case SNotificationItem::CS_Fail:
		return {0xd6, 0x4b, 0x4b};
	default:
		return {};
	}
}
}

FQtToast::FQtToast(const TSharedRef<SNotificationItem>& InItem, QWidget* Parent)
	: QWidget(Parent)
	, Item(InItem)
{
	setObjectName(QStringLiteral("Toast"));
	setAttribute(Qt::WA_TransparentForMouseEvents);
	setFocusPolicy(Qt::NoFocus);
	ShowItem();
}

QString FQtToast::GetText() const
{
	return ToQString(Item->GetText());
}

void FQtToast::ShowItem()
{
	setAccessibleName(GetText());
	resize(sizeHint());
	update();
}

void FQtToast::FadeOut(double Now)
{
	if (!IsFadingOut())
	{
		FadeOutStart = Now;
		OpacityAtFadeOut = Opacity;
	}
}

bool FQtToast::Advance(double Now)
{
	const double Before = Opacity;
	Opacity = IsFadingOut() ? OpacityAtFadeOut *
								  (1.0 - Faded(Now - FadeOutStart, static_cast<double>(Item->GetFadeOutDuration())))
							: Faded(Now - Item->GetAddedTime(), static_cast<double>(Item->GetFadeInDuration()));
	if (Opacity != Before)
	{
		update();
	}
	return !IsFadingOut() || Opacity > 0.0;
}

QRect FQtToast::TextRect(int Width) const
{
	return fontMetrics().boundingRect(QRect(0, 0, Width, QWIDGETSIZE_MAX), Qt::TextWordWrap, GetText());
}

QSize FQtToast::sizeHint() const
{
	const QRect Text = TextRect(WidestText);
	return {std::max(Text.width() + 1, NarrowestText) + 2 * PaddingX, Text.height() + 2 * PaddingY};
}

void FQtToast::paintEvent(QPaintEvent*)
{
	// Dark in both themes, so that a toast stands out from the window below it; a frame sets it off from a dark one.
	const bool bDark = IsQtThemeDark();
	QPainter Painter(this);
	Painter.setRenderHint(QPainter::Antialiasing);
	Painter.setOpacity(Opacity);
	Painter.setPen(bDark ? QColor(0x5a, 0x5a, 0x5a) : QColor(0x20, 0x20, 0x20));
	Painter.setBrush(bDark ? QColor(0x3a, 0x3a, 0x3a, 0xf4) : QColor(0x2b, 0x2b, 0x2b, 0xf4));
	Painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), CornerRadius, CornerRadius);
	const QColor State = StateColour(Item->GetCompletionState());
	if (State.isValid())
	{
		Painter.fillRect(QRect(CornerRadius, PaddingY, StateBarWidth, height() - 2 * PaddingY), State);
	}
	Painter.setPen(QColor(0xf2, 0xf2, 0xf2));
	Painter.drawText(rect().adjusted(PaddingX, PaddingY, -PaddingX, -PaddingY), Qt::TextWordWrap, GetText());
}

void FQtToasts::SetWindow(QWidget* InWindow)
{
	if (!Window.isNull())
	{
		Window->removeEventFilter(this);
	}
	Window = InWindow;
	if (Window.isNull())
	{
		for (const QPointer<FQtToast>& Toast : Toasts)
		{
			delete Toast;
		}
		Toasts.clear();
		return;
	}
	Window->installEventFilter(this);
	for (const QPointer<FQtToast>& Toast : Toasts)
	{
		if (!Toast.isNull())
		{
			Toast->setParent(Window);
			Show(*Toast);
		}
	}
	for (const TSharedRef<SNotificationItem>& Item : std::exchange(Waiting, {}))
	{
		Add(Item);
	}
}

void FQtToasts::Add(const TSharedRef<SNotificationItem>& Item)
{
	if (Window.isNull())
	{
		Waiting.Add(Item);
		return;
	}
	auto* Toast = new FQtToast(Item, Window);
	Toasts.emplace_back(Toast);
	Toast->Advance(Now());
	Show(*Toast);
	QAccessibleEvent Alert(Toast, QAccessible::Alert);
	QAccessible::updateAccessibility(&Alert);
}

void FQtToasts::Show(FQtToast& Toast)
{
	Toast.show();
	Toast.raise();
	Place();
}

void FQtToasts::Change(const TSharedRef<SNotificationItem>& Item)
{
	if (FQtToast* Toast = Find(*Item))
	{
		Toast->ShowItem();
		Place();
	}
}

void FQtToasts::Remove(const TSharedRef<SNotificationItem>& Item)
{
	Waiting.RemoveSingle(Item);
	if (FQtToast* Toast = Find(*Item))
	{
		Toast->FadeOut(Now());
	}
}

FQtToast* FQtToasts::Find(const SNotificationItem& Item) const
{
	for (const QPointer<FQtToast>& Toast : Toasts)
	{
		if (!Toast.isNull() && &Toast->GetItem().Get() == &Item)
		{
			return Toast;
		}
	}
	return nullptr;
}

void FQtToasts::Tick()
{
	const std::size_t Before = Toasts.size();
	const double Present = Now();
	// A toast goes with its window, which may be gone already.
	std::erase_if(Toasts,
		[Present](const QPointer<FQtToast>& Toast)
		{
			if (!Toast.isNull() && Toast->Advance(Present))
			{
				return false;
			}
			delete Toast;
			return true;
		});
	if (Toasts.size() != Before)
	{
		Place();
	}
}

void FQtToasts::Place()
{
	if (Window.isNull())
	{
		return;
	}
	int Bottom = Window->height() - DistanceFromCorner;
	for (auto Toast = Toasts.rbegin(); Toast != Toasts.rend(); ++Toast)
	{
		if (!Toast->isNull())
		{
			Bottom -= (*Toast)->height();
			(*Toast)->move(Window->width() - DistanceFromCorner - (*Toast)->width(), Bottom);
			Bottom -= DistanceBetween;
		}
	}
}

bool FQtToasts::eventFilter(QObject* Receiver, QEvent* Event)
{
	if (Receiver == Window.data() && Event->type() == QEvent::Resize)
	{
		Place();
	}
	return false;
}

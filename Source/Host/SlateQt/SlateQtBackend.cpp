// SPDX-License-Identifier: MIT
#include "SlateQt/SlateQtBackend.h"

#include "Slate/SlateApplication.h"
#include "Slate/SlateProgress.h"
#include "SlateQt/QtDialog.h"
#include "SlateQt/QtInputRouter.h"
#include "SlateQt/QtProgressWindow.h"
#include "SlateQt/QtToasts.h"

#include <QApplication>
#include <QCursor>
#include <QTimer>

namespace
{
// Smooth while something fades; otherwise just often enough for notifications to expire in time.
constexpr int MillisecondsPerFrame = 16;
constexpr int MillisecondsPerIdleFrame = 100;

class FQtCursor : public ICursor
{
public:
	FScreenPosition GetPosition() const override
	{
		const QPoint Position = QCursor::pos();
		return {static_cast<double>(Position.x()), static_cast<double>(Position.y())};
	}
};
}

struct FSlateQtBackend::FParts
{
	/// What a new window belongs to: the topmost modal one, else the main window.
	QWidget* Owner() const
	{
		QWidget* Modal = QApplication::activeModalWidget();
		return Modal != nullptr ? Modal : MainWindow.data();
	}

	FQtInputRouter Router;
	FQtToasts Toasts;
	QPointer<QWidget> MainWindow;
	QPointer<FQtProgressWindow> Progress;
	QTimer Frames;
	QElapsedTimer SinceFrame;
	TSharedRef<ICursor> Cursor = MakeShared<FQtCursor>();
};

FSlateQtBackend::FSlateQtBackend()
	: Parts(std::make_unique<FParts>())
{
	Parts->SinceFrame.start();
	QObject::connect(&Parts->Frames, &QTimer::timeout, &Parts->Frames,
		[this] { Tick(static_cast<float>(Parts->SinceFrame.restart()) / 1000.0f); });
	Parts->Frames.start(MillisecondsPerIdleFrame);
}

FSlateQtBackend::~FSlateQtBackend()
{
	Parts->Toasts.SetWindow(nullptr);
	delete Parts->Progress;
}

void FSlateQtBackend::SetMainWindow(QWidget* InMainWindow)
{
	Parts->MainWindow = InMainWindow;
	Parts->Toasts.SetWindow(InMainWindow);
}

void FSlateQtBackend::Tick(float DeltaTime)
{
	if (FSlateApplication::IsInitialized())
	{
		FSlateApplication::Get().Tick(DeltaTime);
	}
	Parts->Toasts.Tick();
	const int Interval = Parts->Toasts.IsEmpty() ? MillisecondsPerIdleFrame : MillisecondsPerFrame;
	if (Parts->Frames.interval() != Interval)
	{
		Parts->Frames.setInterval(Interval);
	}
}

void FSlateQtBackend::RunModal(const TSharedRef<SCustomDialog>& Dialog)
{
	// The owner may go while the dialog is up, and takes the dialog with it.
	const QPointer<FQtDialog> Window(new FQtDialog(Dialog, Parts->Owner()));
	Window->RunModal();
	delete Window;
}

void FSlateQtBackend::OnNotificationAdded(const TSharedRef<SNotificationItem>& Item)
{
	Parts->Toasts.Add(Item);
	Parts->Frames.setInterval(MillisecondsPerFrame);
}

void FSlateQtBackend::OnNotificationChanged(const TSharedRef<SNotificationItem>& Item)
{
	Parts->Toasts.Change(Item);
}

void FSlateQtBackend::OnNotificationRemoved(const TSharedRef<SNotificationItem>& Item)
{
	Parts->Toasts.Remove(Item);
}

void FSlateQtBackend::OnProgressOpened(const TSharedRef<FSlateProgress>& Progress)
{
	if (Parts->Progress.isNull())
	{
		Parts->Progress = new FQtProgressWindow(Parts->Owner());
	}
	Parts->Progress->Open(Progress);
}

void FSlateQtBackend::OnProgressChanged(const TSharedRef<FSlateProgress>& Progress)
{
	if (!Parts->Progress.isNull())
	{
		Parts->Progress->Change(Progress);
	}
}

void FSlateQtBackend::OnProgressClosed(const TSharedRef<FSlateProgress>& Progress)
{
	if (Parts->Progress.isNull())
	{
		return;
	}
	Parts->Progress->Close(Progress);
	if (!Parts->Progress->isVisible())
	{
		// Its owner may be another one next time. It may also be what is being handled right now.
		Parts->Progress->deleteLater();
		Parts->Progress = nullptr;
	}
}

void FSlateQtBackend::OnFocusChanged(const TSharedPtr<SWidget>& Widget)
{
	Parts->Router.FocusMirror().OnHostFocusChanged(Widget);
}

TSharedRef<ICursor> FSlateQtBackend::GetCursor()
{
	return Parts->Cursor;
}

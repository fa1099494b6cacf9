// SPDX-License-Identifier: MIT
#include "SlateQt/QtProgressWindow.h"

#include "SlateQt/QtText.h"

#include <QBoxLayout>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QStyle>
#include <QWindow>

#include <algorithm>
#include <cmath>

namespace
{
constexpr int BarSteps = 1000;

// Work may report a million steps. What users see moves in hundredths, and a press on Cancel is answered at once.
constexpr int StepsPerRepaint = BarSteps / 100;
constexpr qint64 MillisecondsBetweenEvents = 50;

/// A line of text that is cut in the middle, where names differ least, rather than make the window jump.
class FElidedLine : public QLabel
{
public:
	using QLabel::QLabel;

	QSize sizeHint() const override { return {0, QLabel::sizeHint().height()}; }
	QSize minimumSizeHint() const override { return sizeHint(); }

protected:
	void paintEvent(QPaintEvent*) override
	{
		QPainter Painter(this);
		const QString Shown = fontMetrics().elidedText(text(), Qt::ElideMiddle, width());
		style()->drawItemText(&Painter, rect(), Qt::AlignVCenter, palette(), isEnabled(), Shown, foregroundRole());
	}
};

QLabel* AddLine(QBoxLayout& Layout, const char* Name, QWidget& Parent)
{
	auto* Line = new FElidedLine(&Parent);
	Line->setObjectName(QLatin1String(Name));
	Line->setTextFormat(Qt::PlainText);
	Layout.addWidget(Line);
	return Line;
}
}

struct FQtProgressWindow::FRow
{
	FRow(const TSharedRef<FSlateProgress>& InProgress, QBoxLayout& Rows, QWidget& Parent)
		: Progress(InProgress)
		, Widget(new QWidget(&Parent))
	{
		auto* Layout = new QVBoxLayout(Widget);
		Layout->setContentsMargins(0, 0, 0, 0);
		AddLine(*Layout, "Title", *Widget)->setText(ToQString(Progress->GetTitle()));
		Bar = new QProgressBar(Widget);
		Bar->setObjectName(QStringLiteral("Bar"));
		Bar->setRange(0, BarSteps);
		Layout->addWidget(Bar);
		Message = AddLine(*Layout, "Message", *Widget);
		Message->hide();
		Rows.addWidget(Widget);
		Update();
	}
	~FRow() { delete Widget; }
	FRow(const FRow&) = delete;
	FRow& operator=(const FRow&) = delete;

	/// Whether the bar moved so far that users see it.
	bool Update()
	{
		const int Value = static_cast<int>(std::lround(Progress->GetFraction() * BarSteps));
		const bool bMoved = Value / StepsPerRepaint != Bar->value() / StepsPerRepaint;
		Bar->setValue(Value);
		Message->setText(ToQString(Progress->GetMessage()));
		// Its line stays once there was a message, so that the window does not jump.
		Message->setVisible(Message->isVisibleTo(Widget) || !Message->text().isEmpty());
		return bMoved;
	}

	TSharedRef<FSlateProgress> Progress;
	QWidget* Widget;
	QProgressBar* Bar = nullptr;
	QLabel* Message = nullptr;
};

FQtProgressWindow::FQtProgressWindow(QWidget* Parent)
	: QDialog(Parent, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint)
	, CancelButton(new QPushButton(this))
{
	setObjectName(QStringLiteral("SlateProgress"));
	setWindowModality(Qt::ApplicationModal);
	setMinimumWidth(420);
	auto* Layout = new QVBoxLayout(this);
	RowLayout = new QVBoxLayout;
	RowLayout->setSpacing(12);
	Layout->addLayout(RowLayout);
	CancelButton->setObjectName(QStringLiteral("Cancel"));
	CancelButton->setAutoDefault(false);
	Layout->addWidget(CancelButton, 0, Qt::AlignRight);
	connect(CancelButton, &QPushButton::clicked, this, [this] { reject(); });
}

FQtProgressWindow::~FQtProgressWindow() = default;

FQtProgressWindow::FRow* FQtProgressWindow::Find(const FSlateProgress& Progress)
{
	const auto Found = std::find_if(Rows.begin(), Rows.end(),
		[&Progress](const std::unique_ptr<FRow>& Row) { return &Row->Progress.Get() == &Progress; });
	return Found == Rows.end() ? nullptr : Found->get();
}

void FQtProgressWindow::Open(const TSharedRef<FSlateProgress>& Progress)
{
	if (Rows.empty())
	{
		const QString Program = QCoreApplication::applicationName();
		setWindowTitle(Program.isEmpty() ? ToWindowTitle(Progress->GetTitle()) : Program);
	}
	Rows.push_back(std::make_unique<FRow>(Progress, *RowLayout, *this));
	ShowCancel();
	const bool bAppears = !isVisible();
	show();
	adjustSize();
	if (bAppears)
	{
		WaitUntilExposed();
	}
	Repaint();
}

void FQtProgressWindow::Change(const TSharedRef<FSlateProgress>& Progress)
{
	FRow* Row = Find(*Progress);
	if (Row != nullptr && (Row->Update() || SinceEvents.elapsed() >= MillisecondsBetweenEvents))
	{
		Repaint();
	}
}

void FQtProgressWindow::Close(const TSharedRef<FSlateProgress>& Progress)
{
	std::erase_if(Rows, [&Progress](const std::unique_ptr<FRow>& Row) { return Row->Progress == Progress; });
	if (Rows.empty())
	{
		hide();
		return;
	}
	ShowCancel();
	adjustSize();
	Repaint();
}

void FQtProgressWindow::ShowCancel()
{
	const FSlateProgress& Innermost = *Rows.back()->Progress;
	CancelButton->setVisible(Innermost.CanCancel());
	CancelButton->setEnabled(!Innermost.WantsCancel());
	CancelButton->setText(ToLabel(Innermost.WantsCancel() ? NSLOCTEXT("SlateQt", "Cancelling", "Cancelling")
														  : NSLOCTEXT("SlateQt", "Cancel", "Cancel")));
	if (Innermost.CanCancel())
	{
		CancelButton->setFocus();
	}
}

void FQtProgressWindow::Repaint()
{
	repaint();
	LetEventsThrough();
}

void FQtProgressWindow::LetEventsThrough()
{
	// What runs from here may report progress in turn.
	if (!bInEvents)
	{
		const QScopedValueRollback InEvents(bInEvents, true);
		QCoreApplication::processEvents();
		SinceEvents.start();
	}
}

void FQtProgressWindow::WaitUntilExposed()
{
	// The display server shows a window a moment after it was asked to, and paints before that are lost.
	constexpr qint64 LongestWait = 250;
	QElapsedTimer Waiting;
	Waiting.start();
	while (windowHandle() != nullptr && !windowHandle()->isExposed() && Waiting.elapsed() < LongestWait)
	{
		LetEventsThrough();
	}
}

void FQtProgressWindow::reject()
{
	if (!Rows.empty())
	{
		Rows.back()->Progress->RequestCancel();
		ShowCancel();
	}
}

void FQtProgressWindow::closeEvent(QCloseEvent* Event)
{
	// The work ends the window, not the user.
	Event->ignore();
	reject();
}

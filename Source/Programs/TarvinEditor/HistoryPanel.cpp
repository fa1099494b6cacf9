// SPDX-License-Identifier: MIT
#include "HistoryPanel.h"

#include "Editor/EditorEngine.h"
#include "Editor/TransBuffer.h"
#include "EditorDocument.h"
#include "Slate/SlateApplication.h"
#include "SlateQt/QtText.h"

#include <QTimer>

namespace
{
UTransBuffer* Buffer()
{
	return GEditor ? Cast<UTransBuffer>(GEditor->Trans.Get()) : nullptr;
}

int NumApplied(const UTransBuffer& History)
{
	return History.GetQueueLength() - History.GetUndoCount();
}
} // namespace

FHistoryPanel::FHistoryPanel(FEditorDocument& InDocument, QWidget* Parent)
	: QListWidget(Parent)
	, Document(InDocument)
{
	setObjectName(QStringLiteral("History"));
	setFocusPolicy(Qt::NoFocus);
	setSelectionMode(QAbstractItemView::NoSelection);
	Handle = Document.OnChanged().AddLambda(
		[this]
		{
			if (!bPending)
			{
				bPending = true;
				QTimer::singleShot(0, this, [this] { Refresh(); });
			}
		});
	connect(this, &QListWidget::itemClicked, this, [this](QListWidgetItem* Item) { GoTo(row(Item)); });
	Refresh();
}

FHistoryPanel::~FHistoryPanel()
{
	Document.OnChanged().Remove(Handle);
}

void FHistoryPanel::Refresh()
{
	bPending = false;
	clear();
	const UTransBuffer* const History = Buffer();
	if (!History)
	{
		return;
	}
	addItem(ToQString(NSLOCTEXT("TarvinEditor", "HistoryStart", "Start")));
	for (int32 Index = 0; Index < History->GetQueueLength(); ++Index)
	{
		addItem(ToQString(History->GetTransaction(Index).GetContext().Title));
	}
	const int Present = NumApplied(*History);
	for (int Row = 0; Row < count(); ++Row)
	{
		QFont Font = font();
		Font.setBold(Row == Present);
		item(Row)->setFont(Font);
		if (Row > Present)
		{
			item(Row)->setForeground(palette().brush(QPalette::Disabled, QPalette::Text));
		}
	}
	scrollToItem(item(Present));
}

void FHistoryPanel::GoTo(int Row)
{
	UTransBuffer* const History = Buffer();
	if (!History || GEditor->PlayWorld || FSlateApplication::Get().IsModalOrProgressOpen())
	{
		return;
	}
	while (NumApplied(*History) > Row && GEditor->UndoTransaction())
	{
	}
	while (NumApplied(*History) < Row && GEditor->RedoTransaction())
	{
	}
}

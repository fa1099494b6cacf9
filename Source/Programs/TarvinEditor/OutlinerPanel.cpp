// SPDX-License-Identifier: MIT
#include "OutlinerPanel.h"

#include "Editor/EditorEngine.h"
#include "Editor/TransBuffer.h"
#include "SelectionQueries.h"
#include "SlateQt/QtText.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <tuple>
#include <unordered_set>

namespace
{
/// Trees of at most so many lines are shown opened up.
constexpr int32 MostLinesToExpand = 5000;

/// The one whose history is observed; null where the transaction system is another.
UTransBuffer* History()
{
	return GEditor ? Cast<UTransBuffer>(GEditor->Trans.Get()) : nullptr;
}
} // namespace

FOutlinerView::FOutlinerView(QWidget* Parent)
	: QTreeView(Parent)
{
	setUniformRowHeights(true);
	setSelectionMode(QAbstractItemView::ExtendedSelection);
	setEditTriggers(QAbstractItemView::EditKeyPressed);
	setContextMenuPolicy(Qt::CustomContextMenu);
	setAlternatingRowColors(true);
}

void FOutlinerView::keyPressEvent(QKeyEvent* Event)
{
	switch (Event->key())
	{
	case Qt::Key_Up:
	case Qt::Key_Down:
	case Qt::Key_Left:
	case Qt::Key_Right:
	case Qt::Key_Home:
	case Qt::Key_End:
	case Qt::Key_PageUp:
	case Qt::Key_PageDown:
	case Qt::Key_Space:
	case Qt::Key_F2:
		if (!(Event->modifiers() & Qt::KeypadModifier))
		{
			QTreeView::keyPressEvent(Event);
			return;
		}
		[[fallthrough]];
	default:
		// Letters would be searched for, and Ctrl+A would leave out what is folded away.
		Event->ignore();
	}
}

void FOutlinerView::selectionChanged(const QItemSelection& Selected, const QItemSelection& Deselected)
{
	QTreeView::selectionChanged(Selected, Deselected);
	if (OnUserSelected)
	{
		OnUserSelected();
	}
}

FOutlinerPanel::FOutlinerPanel(QWidget* Parent)
	: QWidget(Parent)
	, Search(new QLineEdit(this))
	, Model(new FOutlinerModel(this))
	, View(new FOutlinerView(this))
	, Count(new QLabel(this))
{
	setObjectName(QStringLiteral("Outliner"));
	Search->setObjectName(QStringLiteral("OutlinerSearch"));
	Search->setPlaceholderText(ToQString(NSLOCTEXT("TarvinEditor", "SearchHint", "Search actors and meshes")));
	Search->setClearButtonEnabled(true);
	View->setObjectName(QStringLiteral("OutlinerTree"));
	View->setModel(Model);
	View->header()->setSectionResizeMode(FOutlinerModel::LabelColumn, QHeaderView::Stretch);
	View->header()->setStretchLastSection(false);
	View->header()->resizeSection(FOutlinerModel::MeshColumn, 120);
	auto* Layout = new QVBoxLayout(this);
	Layout->setContentsMargins(4, 4, 4, 4);
	Layout->addWidget(Search);
	Layout->addWidget(View, 1);
	Layout->addWidget(Count);

	connect(Search, &QLineEdit::textChanged, this,
		[this](const QString& Text)
		{
			bShowingSelection = true;
			Model->SetFilter(Text);
			bShowingSelection = false;
			ShowEditorSelection();
			ShowCount();
		});
	connect(Model, &QAbstractItemModel::modelReset, this,
		[this]
		{
			if (Model->GetNumActors() <= MostLinesToExpand || Model->IsFiltered())
			{
				View->expandAll();
			}
		});
	connect(View, &QWidget::customContextMenuRequested, this, [this](const QPoint& Place) { OpenMenu(Place); });
	View->OnUserSelected = [this] { TakeUserSelection(); };
	ActorsHandle = UWorld::OnActorListChanged().AddLambda([this](UWorld*) { RefreshSoon(true); });
	SelectionHandle = GEditor->GetSelectedActors()->OnChanged().AddLambda([this] { RefreshSoon(false); });
	if (UTransBuffer* const Buffer = History())
	{
		HistoryHandle = Buffer->OnChanged().AddLambda([this] { RefreshSoon(true); });
	}
	Refresh();
}

FOutlinerPanel::~FOutlinerPanel()
{
	View->OnUserSelected = nullptr;
	UWorld::OnActorListChanged().Remove(ActorsHandle);
	if (GEditor)
	{
		GEditor->GetSelectedActors()->OnChanged().Remove(SelectionHandle);
	}
	if (UTransBuffer* const Buffer = History())
	{
		Buffer->OnChanged().Remove(HistoryHandle);
	}
}

void FOutlinerPanel::RefreshSoon(bool bInTreeToo)
{
	bTreeToo = bTreeToo || bInTreeToo;
	if (bPending || bShowingSelection)
	{
		return;
	}
	bPending = true;
	QTimer::singleShot(0, this,
		[this]
		{
			if (bPending)
			{
				bTreeToo ? Refresh() : ShowEditorSelection();
				bPending = false;
			}
		});
}

void FOutlinerPanel::Refresh()
{
	bPending = false;
	bTreeToo = false;
	bShowingSelection = true;
	const int Scroll = View->verticalScrollBar()->value();
	Model->Refresh();
	View->verticalScrollBar()->setValue(Scroll);
	bShowingSelection = false;
	ShowEditorSelection();
	ShowCount();
}

void FOutlinerPanel::ShowCount()
{
	const int32 NumSelected = SelectionQueries::SelectedActors().Num();
	const FText Text = Model->IsFiltered()
						   ? FText::Format(NSLOCTEXT("TarvinEditor", "ActorsFound", "{0} found, {1} selected"),
								 FText::AsNumber(Model->GetNumMatches()), FText::AsNumber(NumSelected))
						   : FText::Format(NSLOCTEXT("TarvinEditor", "ActorsInAll", "{0} actors, {1} selected"),
								 FText::AsNumber(Model->GetNumActors()), FText::AsNumber(NumSelected));
	Count->setText(ToQString(Text));
}

void FOutlinerPanel::ShowEditorSelection()
{
	bPending = false;
	bShowingSelection = true;
	// Neighbours become one range: selecting everything is a matter of a few of them.
	std::vector<QModelIndex> Lines;
	QModelIndex Last;
	for (const AActor* Actor : SelectionQueries::SelectedActors())
	{
		if (const QModelIndex Line = Model->IndexOf(Actor); Line.isValid())
		{
			Lines.push_back(Line);
			Last = Line;
		}
	}
	std::ranges::sort(Lines,
		[](const QModelIndex& A, const QModelIndex& B)
		{
			const quintptr ParentA = A.parent().internalId();
			const quintptr ParentB = B.parent().internalId();
			return std::tuple(A.parent().isValid(), ParentA, A.row()) <
				   std::tuple(B.parent().isValid(), ParentB, B.row());
		});
	QItemSelection Shown;
	for (std::size_t First = 0; First < Lines.size();)
	{
		std::size_t End = First + 1;
		while (End < Lines.size() && Lines[End].parent() == Lines[First].parent() &&
			   Lines[End].row() == Lines[End - 1].row() + 1)
		{
			++End;
		}
		Shown.append(QItemSelectionRange(Lines[First], Lines[End - 1].siblingAtColumn(FOutlinerModel::MeshColumn)));
		First = End;
	}
	QItemSelectionModel* const Selection = View->selectionModel();
	if (Last.isValid() && !View->hasFocus())
	{
		Selection->setCurrentIndex(Last, QItemSelectionModel::NoUpdate);
		View->scrollTo(Last);
	}
	Selection->select(Shown, QItemSelectionModel::ClearAndSelect);
	bShowingSelection = false;
	ShowCount();
}

void FOutlinerPanel::TakeUserSelection()
{
	if (bShowingSelection)
	{
		return;
	}
	std::unordered_set<const AActor*> Wanted;
	TArray<AActor*> InViewOrder;
	for (const QItemSelectionRange& Range : View->selectionModel()->selection())
	{
		for (int Row = Range.top(); Row <= Range.bottom(); ++Row)
		{
			AActor* const Actor = Model->ActorOf(Model->index(Row, 0, Range.parent()));
			if (Actor && Wanted.insert(Actor).second)
			{
				InViewOrder.Add(Actor);
			}
		}
	}
	// What stays selected keeps its place in the order of selection, except the one that was clicked: it is the last.
	const AActor* const Current = Model->ActorOf(View->currentIndex());
	TArray<AActor*> Ordered;
	for (AActor* Actor : SelectionQueries::SelectedActors())
	{
		// An actor that the search does not show stays selected only while nothing else is chosen.
		if (Wanted.erase(Actor) > 0)
		{
			Ordered.Add(Actor);
		}
	}
	AActor* Clicked = nullptr;
	for (AActor* Actor : InViewOrder)
	{
		if (Wanted.contains(Actor))
		{
			Actor == Current ? void(Clicked = Actor) : void(Ordered.Add(Actor));
		}
	}
	if (Clicked)
	{
		Ordered.Add(Clicked);
	}
	bShowingSelection = true;
	SelectionQueries::Select(Ordered);
	bShowingSelection = false;
	ShowCount();
}

void FOutlinerPanel::OpenMenu(const QPoint& Place)
{
	if (OnContextMenu && View->indexAt(Place).isValid())
	{
		OnContextMenu(View->viewport()->mapToGlobal(Place));
	}
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/Actor.h"
#include "SlateQt/QtPrelude.h"

#include <QAbstractItemModel>

#include <unordered_map>
#include <vector>

/// The actors of the edited world as a tree of attachments, all of them or those whose label or mesh has a text in it
/// (and what these are attached to).
///
/// The tree is a picture of the world at the last Refresh. Actors that are gone since then have empty lines.
class FOutlinerModel : public QAbstractItemModel
{
public:
	enum EColumn
	{
		LabelColumn,
		MeshColumn,
		NumColumns,
	};

	explicit FOutlinerModel(QObject* Parent);

	/// Takes the tree anew; nothing is sent when it is the same.
	void Refresh();

	/// Shows the actors that have the text in their label or their mesh's name, whatever the case; all for "".
	void SetFilter(const QString& Text);
	bool IsFiltered() const { return !Filter.isEmpty(); }

	/// How many actors are lines of the tree, and how many of them have the filter's text.
	int32 GetNumActors() const { return int32(Items.size()); }
	int32 GetNumMatches() const { return NumMatches; }

	/// The actor of a line; null when it is gone.
	AActor* ActorOf(const QModelIndex& Index) const;

	/// The first cell of an actor's line; invalid where it has none.
	QModelIndex IndexOf(const AActor* Actor) const;

	QModelIndex index(int Row, int Column, const QModelIndex& Parent = {}) const override;
	QModelIndex parent(const QModelIndex& Index) const override;
	int rowCount(const QModelIndex& Parent = {}) const override;
	int columnCount(const QModelIndex& Parent = {}) const override;
	QVariant data(const QModelIndex& Index, int Role) const override;
	QVariant headerData(int Section, Qt::Orientation Orientation, int Role) const override;
	Qt::ItemFlags flags(const QModelIndex& Index) const override;
	bool setData(const QModelIndex& Index, const QVariant& Value, int Role) override;

private:
	struct FItem
	{
		TWeakObjectPtr<AActor> Actor;
		FString Label;
		int32 Parent = INDEX_NONE;
		int32 Row = 0;
		std::vector<int32> Children;
	};

	/// Everything that lines depend on; two equal ones are the same tree.
	struct FTree
	{
		std::vector<FItem> Items;
		std::vector<int32> Roots;
		int32 NumMatches = 0;
	};

	FTree MakeTree() const;
	bool IsSame(const FTree& Tree) const;
	const std::vector<int32>& ChildrenAt(const QModelIndex& Index) const;

	QString Filter;
	std::vector<FItem> Items;
	std::vector<int32> Roots;
	int32 NumMatches = 0;
	std::unordered_map<FObjectHandle, int32> ItemOfActor;
};

// SPDX-License-Identifier: MIT
#include "OutlinerModel.h"

#include "Engine/StaticMesh.h"
#include "Engine/World.h"
#include "LevelActions.h"
#include "SelectionQueries.h"
#include "SlateQt/QtText.h"

using namespace SelectionQueries;

namespace
{
bool HasText(const AActor& Actor, const QString& Text)
{
	if (Text.isEmpty() || ToQString(Actor.GetActorLabel()).contains(Text, Qt::CaseInsensitive))
	{
		return true;
	}
	const UStaticMesh* const Mesh = MeshOf(Actor);
	return Mesh && ToQString(Mesh->GetName()).contains(Text, Qt::CaseInsensitive);
}
} // namespace

FOutlinerModel::FOutlinerModel(QObject* Parent)
	: QAbstractItemModel(Parent)
{
}

FOutlinerModel::FTree FOutlinerModel::MakeTree() const
{
	FTree Tree;
	const UWorld* const World = EditedWorld();
	const TArray<AActor*> Actors = World ? World->GetActors() : TArray<AActor*>();
	const std::size_t NumActors = std::size_t(Actors.Num());
	std::unordered_map<const AActor*, std::size_t> Place;
	Place.reserve(NumActors);
	for (std::size_t Index = 0; Index < NumActors; ++Index)
	{
		Place.emplace(Actors[int32(Index)], Index);
	}
	// A line is shown when it matches, or when something below it does.
	std::vector<bool> bShown(NumActors, Filter.isEmpty());
	for (std::size_t Index = 0; Index < NumActors; ++Index)
	{
		if (!HasText(*Actors[int32(Index)], Filter))
		{
			continue;
		}
		++Tree.NumMatches;
		for (const AActor* Above = Actors[int32(Index)]; Above && !Filter.isEmpty(); Above = ParentOf(*Above))
		{
			const auto Found = Place.find(Above);
			if (Found == Place.end() || bShown[Found->second])
			{
				break;
			}
			bShown[Found->second] = true;
		}
	}
	std::vector<int32> ItemAt(NumActors, INDEX_NONE);
	for (std::size_t Index = 0; Index < NumActors; ++Index)
	{
		if (bShown[Index])
		{
			AActor* const Actor = Actors[int32(Index)];
			ItemAt[Index] = int32(Tree.Items.size());
			Tree.Items.push_back({TWeakObjectPtr<AActor>(Actor), Actor->GetActorLabel(), INDEX_NONE, 0, {}});
		}
	}
	for (std::size_t Index = 0; Index < NumActors; ++Index)
	{
		if (ItemAt[Index] == INDEX_NONE)
		{
			continue;
		}
		const AActor* const Parent = ParentOf(*Actors[int32(Index)]);
		const auto Found = Parent ? Place.find(Parent) : Place.end();
		FItem& Item = Tree.Items[std::size_t(ItemAt[Index])];
		Item.Parent = Found == Place.end() ? INDEX_NONE : ItemAt[Found->second];
		std::vector<int32>& Siblings =
			Item.Parent == INDEX_NONE ? Tree.Roots : Tree.Items[std::size_t(Item.Parent)].Children;
		Item.Row = int32(Siblings.size());
		Siblings.push_back(ItemAt[Index]);
	}
	return Tree;
}

bool FOutlinerModel::IsSame(const FTree& Tree) const
{
	if (Tree.Items.size() != Items.size() || Tree.NumMatches != NumMatches)
	{
		return false;
	}
	for (std::size_t Index = 0; Index < Items.size(); ++Index)
	{
		const FItem& New = Tree.Items[Index];
		const FItem& Old = Items[Index];
		if (!(New.Actor == Old.Actor) || New.Parent != Old.Parent || New.Label != Old.Label)
		{
			return false;
		}
	}
	return true;
}

void FOutlinerModel::Refresh()
{
	FTree Tree = MakeTree();
	if (IsSame(Tree))
	{
		if (!Items.empty())
		{
			// The names of meshes may have changed with what the actors show.
			emit dataChanged(index(0, MeshColumn), index(int(Roots.size()) - 1, MeshColumn));
		}
		return;
	}
	beginResetModel();
	Items = std::move(Tree.Items);
	Roots = std::move(Tree.Roots);
	NumMatches = Tree.NumMatches;
	ItemOfActor.clear();
	ItemOfActor.reserve(Items.size());
	for (std::size_t Index = 0; Index < Items.size(); ++Index)
	{
		if (const AActor* const Actor = Items[Index].Actor.Get())
		{
			ItemOfActor.emplace(Actor->GetHandle(), int32(Index));
		}
	}
	endResetModel();
}

void FOutlinerModel::SetFilter(const QString& Text)
{
	Filter = Text.trimmed();
	Refresh();
}

AActor* FOutlinerModel::ActorOf(const QModelIndex& Index) const
{
	return Index.isValid() ? Items[std::size_t(Index.internalId())].Actor.Get() : nullptr;
}

QModelIndex FOutlinerModel::IndexOf(const AActor* Actor) const
{
	const auto Found = Actor ? ItemOfActor.find(Actor->GetHandle()) : ItemOfActor.end();
	if (Found == ItemOfActor.end())
	{
		return {};
	}
	return createIndex(Items[std::size_t(Found->second)].Row, LabelColumn, quintptr(Found->second));
}

const std::vector<int32>& FOutlinerModel::ChildrenAt(const QModelIndex& Index) const
{
	return Index.isValid() ? Items[std::size_t(Index.internalId())].Children : Roots;
}

QModelIndex FOutlinerModel::index(int Row, int Column, const QModelIndex& Parent) const
{
	const std::vector<int32>& Children = ChildrenAt(Parent);
	if (Row < 0 || Row >= int(Children.size()) || Column < 0 || Column >= NumColumns)
	{
		return {};
	}
	return createIndex(Row, Column, quintptr(Children[std::size_t(Row)]));
}

QModelIndex FOutlinerModel::parent(const QModelIndex& Index) const
{
	const int32 Parent = Index.isValid() ? Items[std::size_t(Index.internalId())].Parent : INDEX_NONE;
	return Parent == INDEX_NONE ? QModelIndex()
								: createIndex(Items[std::size_t(Parent)].Row, LabelColumn, quintptr(Parent));
}

int FOutlinerModel::rowCount(const QModelIndex& Parent) const
{
	return Parent.column() > 0 ? 0 : int(ChildrenAt(Parent).size());
}

int FOutlinerModel::columnCount(const QModelIndex&) const
{
	return NumColumns;
}

QVariant FOutlinerModel::data(const QModelIndex& Index, int Role) const
{
	const AActor* const Actor = ActorOf(Index);
	if (!Actor || (Role != Qt::DisplayRole && Role != Qt::EditRole && Role != Qt::ToolTipRole))
	{
		return {};
	}
	if (Index.column() == LabelColumn)
	{
		const QString Label = ToQString(Actor->GetActorLabel());
		return Role == Qt::ToolTipRole ? Label.toHtmlEscaped() : Label;
	}
	const UStaticMesh* const Mesh = MeshOf(*Actor);
	return Mesh && Role != Qt::EditRole ? QVariant(ToQString(Mesh->GetName())) : QVariant();
}

QVariant FOutlinerModel::headerData(int Section, Qt::Orientation Orientation, int Role) const
{
	if (Orientation != Qt::Horizontal || Role != Qt::DisplayRole)
	{
		return {};
	}
	return Section == LabelColumn ? ToQString(NSLOCTEXT("TarvinEditor", "ActorColumn", "Actor"))
								  : ToQString(NSLOCTEXT("TarvinEditor", "MeshColumn", "Mesh"));
}

Qt::ItemFlags FOutlinerModel::flags(const QModelIndex& Index) const
{
	const Qt::ItemFlags Flags = QAbstractItemModel::flags(Index);
	return Index.column() == LabelColumn ? Flags | Qt::ItemIsEditable : Flags;
}

bool FOutlinerModel::setData(const QModelIndex& Index, const QVariant& Value, int Role)
{
	AActor* const Actor = ActorOf(Index);
	if (!Actor || Role != Qt::EditRole || Index.column() != LabelColumn)
	{
		return false;
	}
	LevelActions::Rename(Actor, ToFString(Value.toString().trimmed()));
	return true;
}

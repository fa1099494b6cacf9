// SPDX-License-Identifier: MIT
#include "AssetPanel.h"

#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/Package.h"
#include "EditorDocument.h"
#include "Engine/StaticMeshComponent.h"
#include "Engine/World.h"
#include "SelectionQueries.h"
#include "SlateQt/QtText.h"

#include <QHeaderView>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <unordered_map>

namespace
{
std::unordered_map<const UStaticMesh*, int32> CountUsers()
{
	std::unordered_map<const UStaticMesh*, int32> Users;
	const UWorld* const World = SelectionQueries::EditedWorld();
	for (const AActor* Actor : World ? World->GetActors() : TArray<AActor*>())
	{
		for (const UStaticMeshComponent* Component : Actor->GetComponentsOf<UStaticMeshComponent>())
		{
			++Users[Component->GetStaticMesh()];
		}
	}
	return Users;
}
} // namespace

FAssetModel::FAssetModel(const FEditorDocument& InDocument, QObject* Parent)
	: QAbstractTableModel(Parent)
	, Document(InDocument)
{
}

std::vector<FAssetModel::FRow> FAssetModel::MakeRows() const
{
	std::vector<FRow> Result;
	if (!Document.IsOpen())
	{
		return Result;
	}
	const FString Prefix = Document.GetScene()->GetPackageFolder() + TEXT("/");
	const std::unordered_map<const UStaticMesh*, int32> Users = CountUsers();
	for (UStaticMesh* Mesh : GetObjectsOf<UStaticMesh>())
	{
		const UPackage* const Package = Cast<UPackage>(Mesh->GetOuter());
		if (Package && Package->GetName().StartsWith(*Prefix))
		{
			const auto Found = Users.find(Mesh);
			Result.push_back({TWeakObjectPtr<UStaticMesh>(Mesh), ToQString(Mesh->GetName()),
				Found == Users.end() ? 0 : Found->second, Package->IsDirty()});
		}
	}
	std::ranges::sort(
		Result, [](const FRow& A, const FRow& B) { return A.Name.compare(B.Name, Qt::CaseInsensitive) < 0; });
	return Result;
}

void FAssetModel::Refresh()
{
	std::vector<FRow> New = MakeRows();
	if (New != Rows)
	{
		beginResetModel();
		Rows = std::move(New);
		endResetModel();
	}
}

UStaticMesh* FAssetModel::MeshOf(const QModelIndex& Index) const
{
	return Index.isValid() ? Rows[std::size_t(Index.row())].Mesh.Get() : nullptr;
}

int FAssetModel::rowCount(const QModelIndex& Parent) const
{
	return Parent.isValid() ? 0 : int(Rows.size());
}

int FAssetModel::columnCount(const QModelIndex& Parent) const
{
	return Parent.isValid() ? 0 : NumColumns;
}

QVariant FAssetModel::data(const QModelIndex& Index, int Role) const
{
	if (!Index.isValid())
	{
		return {};
	}
	const FRow& Row = Rows[std::size_t(Index.row())];
	if (Role == Qt::TextAlignmentRole && Index.column() == UsersColumn)
	{
		return int(Qt::AlignRight | Qt::AlignVCenter);
	}
	if (Role != Qt::DisplayRole)
	{
		return {};
	}
	switch (Index.column())
	{
	case NameColumn:
		return Row.Name;
	case UsersColumn:
		return Row.NumUsers;
	default:
		return Row.bDirty ? QVariant(ToQString(NSLOCTEXT("TarvinEditor", "AssetUnsaved", "* not saved"))) : QVariant();
	}
}

QVariant FAssetModel::headerData(int Section, Qt::Orientation Orientation, int Role) const
{
	if (Orientation != Qt::Horizontal || Role != Qt::DisplayRole)
	{
		return {};
	}
	switch (Section)
	{
	case NameColumn:
		return ToQString(NSLOCTEXT("TarvinEditor", "AssetColumn", "Asset"));
	case UsersColumn:
		return ToQString(NSLOCTEXT("TarvinEditor", "UsersColumn", "Users"));
	default:
		return ToQString(NSLOCTEXT("TarvinEditor", "StateColumn", "State"));
	}
}

FAssetPanel::FAssetPanel(FEditorDocument& InDocument, QWidget* Parent)
	: QWidget(Parent)
	, Document(InDocument)
	, Model(new FAssetModel(InDocument, this))
	, View(new QTableView(this))
{
	setObjectName(QStringLiteral("Assets"));
	View->setObjectName(QStringLiteral("AssetTable"));
	View->setModel(Model);
	View->setSelectionBehavior(QAbstractItemView::SelectRows);
	View->setEditTriggers(QAbstractItemView::NoEditTriggers);
	View->verticalHeader()->hide();
	View->verticalHeader()->setDefaultSectionSize(View->fontMetrics().height() + 6);
	View->horizontalHeader()->setSectionResizeMode(FAssetModel::NameColumn, QHeaderView::Stretch);
	View->setFocusPolicy(Qt::ClickFocus);
	View->setAlternatingRowColors(true);
	View->setShowGrid(false);
	auto* Layout = new QVBoxLayout(this);
	Layout->setContentsMargins(0, 0, 0, 0);
	Layout->addWidget(View);
	connect(View, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& Index) { SelectUsers(Index); });
	DocumentHandle = Document.OnChanged().AddLambda([this] { RefreshSoon(); });
	ActorsHandle = UWorld::OnActorListChanged().AddLambda([this](UWorld*) { RefreshSoon(); });
	DirtyHandle = UPackage::OnDirtyChanged().AddLambda([this](UPackage*) { RefreshSoon(); });
	Model->Refresh();
}

FAssetPanel::~FAssetPanel()
{
	Document.OnChanged().Remove(DocumentHandle);
	UWorld::OnActorListChanged().Remove(ActorsHandle);
	UPackage::OnDirtyChanged().Remove(DirtyHandle);
}

void FAssetPanel::RefreshSoon()
{
	if (!bPending)
	{
		bPending = true;
		QTimer::singleShot(0, this,
			[this]
			{
				bPending = false;
				Model->Refresh();
			});
	}
}

void FAssetPanel::SelectUsers(const QModelIndex& Index) const
{
	const UStaticMesh* const Mesh = Model->MeshOf(Index);
	TArray<AActor*> Users;
	for (AActor* Actor : Mesh ? SelectionQueries::EditedWorld()->GetActors() : TArray<AActor*>())
	{
		for (const UStaticMeshComponent* Component : Actor->GetComponentsOf<UStaticMeshComponent>())
		{
			if (Component->GetStaticMesh() == Mesh)
			{
				Users.AddUnique(Actor);
			}
		}
	}
	SelectionQueries::Select(Users);
}

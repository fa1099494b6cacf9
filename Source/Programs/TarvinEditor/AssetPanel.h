// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "CoreUObject/ObjectPtr.h"
#include "Engine/StaticMesh.h"
#include "SlateQt/QtPrelude.h"

#include <QAbstractTableModel>
#include <QWidget>

#include <vector>

class FEditorDocument;
class QTableView;

/// The static meshes of the scene: by name, with how many components of the level show each, and whether it has changes
/// that are not saved.
class FAssetModel : public QAbstractTableModel
{
public:
	enum EColumn
	{
		NameColumn,
		UsersColumn,
		StateColumn,
		NumColumns,
	};

	FAssetModel(const FEditorDocument& InDocument, QObject* Parent);

	/// Takes the list anew; nothing is sent when it is the same.
	void Refresh();

	/// The mesh of a line; null when it is gone.
	UStaticMesh* MeshOf(const QModelIndex& Index) const;

	int rowCount(const QModelIndex& Parent = {}) const override;
	int columnCount(const QModelIndex& Parent = {}) const override;
	QVariant data(const QModelIndex& Index, int Role) const override;
	QVariant headerData(int Section, Qt::Orientation Orientation, int Role) const override;

private:
	struct FRow
	{
		TWeakObjectPtr<UStaticMesh> Mesh;
		QString Name;
		int32 NumUsers = 0;
		bool bDirty = false;

		bool operator==(const FRow&) const = default;
	};

	std::vector<FRow> MakeRows() const;

	const FEditorDocument& Document;
	std::vector<FRow> Rows;
};

/// The list of assets. A double click selects the actors that show the mesh.
class FAssetPanel : public QWidget
{
public:
	explicit FAssetPanel(FEditorDocument& InDocument, QWidget* Parent = nullptr);
	~FAssetPanel() override;

	QTableView* GetView() const { return View; }
	FAssetModel* GetModel() const { return Model; }

private:
	void RefreshSoon();
	void SelectUsers(const QModelIndex& Index) const;

	FEditorDocument& Document;
	FAssetModel* Model;
	QTableView* View;
	bool bPending = false;
	FDelegateHandle DocumentHandle;
	FDelegateHandle ActorsHandle;
	FDelegateHandle DirtyHandle;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Delegate.h"
#include "Engine/Actor.h"
#include "SlateQt/QtPrelude.h"

#include <QLineEdit>
#include <QWidget>

#include <array>

class FEditorDocument;
class QLabel;

/// Shows what is selected: label, mesh and relative transform, which can be edited, in the scene's units. With several
/// actors selected a field shows what they have in common, and what is typed goes to all of them.
class FDetailsPanel : public QWidget
{
public:
	explicit FDetailsPanel(FEditorDocument& InDocument, QWidget* Parent = nullptr);
	~FDetailsPanel() override;

	/// The field of one number: group 0 for the location, 1 for the rotation, 2 for the scale; axis 0 to 2.
	QLineEdit* GetField(int Group, int Axis) const { return Fields[std::size_t(Group)][std::size_t(Axis)]; }
	QLineEdit* GetNameField() const { return NameField; }

	/// What is said of the selection below its fields.
	QString GetRemark() const;

	/// Takes everything from the selection now. Happens by itself in the next turn of the event loop.
	void Refresh();

private:
	void RefreshSoon();
	void CommitName();
	void CommitNumber(int Group, int Axis);
	void ShowNumbers(const TArray<AActor*>& Actors);

	FEditorDocument& Document;
	QLineEdit* NameField;
	QLabel* MeshLabel;
	QLabel* Remark;
	std::array<std::array<QLineEdit*, 3>, 3> Fields{};
	bool bPending = false;
	FDelegateHandle SelectionHandle;
	FDelegateHandle RedrawHandle;
	FDelegateHandle DocumentHandle;
};

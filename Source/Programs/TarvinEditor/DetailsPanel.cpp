// SPDX-License-Identifier: MIT
#include "DetailsPanel.h"

#include "Editor/EditorEngine.h"
#include "EditorDocument.h"
#include "Engine/StaticMesh.h"
#include "LevelActions.h"
#include "SceneUnits.h"
#include "SelectionQueries.h"
#include "SlateQt/QtText.h"

#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QTimer>

#include <cmath>

using namespace SelectionQueries;

namespace
{
constexpr std::array<const char*, 3> FieldNames = {"Location", "Rotation", "Scale"};
constexpr std::array<const char*, 3> AxisNames = {"X", "Y", "Z"};

FText GroupLabel(int Group)
{
	switch (Group)
	{
	case 0:
		return NSLOCTEXT("TarvinEditor", "LocationLabel", "Location (m)");
	case 1:
		return NSLOCTEXT("TarvinEditor", "RotationLabel", "Rotation (°)");
	default:
		return NSLOCTEXT("TarvinEditor", "ScaleLabel", "Scale");
	}
}

FText GroupTitle(int Group)
{
	switch (Group)
	{
	case 0:
		return NSLOCTEXT("TarvinEditor", "MoveActors", "Move Actors");
	case 1:
		return NSLOCTEXT("TarvinEditor", "RotateActors", "Rotate Actors");
	default:
		return NSLOCTEXT("TarvinEditor", "ScaleActors", "Scale Actors");
	}
}

double NumberOf(const FSceneTransform& Transform, int Group, int Axis)
{
	const std::array<double, 3>& Numbers = Group == 0   ? Transform.Location
										   : Group == 1 ? Transform.Rotation
														: Transform.Scale;
	return Numbers[std::size_t(Axis)];
}

/// Short enough to be read, and the same text for what differs by rounding only.
QString Shown(double Number)
{
	const double Rounded = std::round(Number * 1e6) / 1e6;
	return QLocale::c().toString(Rounded == 0.0 ? 0.0 : Rounded, 'g', 12);
}

FTransform RelativeOf(const AActor& Actor)
{
	const USceneComponent* const Root = Actor.GetRootComponent();
	return Root ? Root->GetRelativeTransform() : FTransform();
}
} // namespace

FDetailsPanel::FDetailsPanel(FEditorDocument& InDocument, QWidget* Parent)
	: QWidget(Parent)
	, Document(InDocument)
	, NameField(new QLineEdit(this))
	, MeshLabel(new QLabel(this))
	, Remark(new QLabel(this))
{
	setObjectName(QStringLiteral("Details"));
	NameField->setObjectName(QStringLiteral("DetailsName"));
	Remark->setObjectName(QStringLiteral("DetailsRemark"));
	Remark->setWordWrap(true);
	auto* Grid = new QGridLayout(this);
	Grid->setContentsMargins(8, 8, 8, 8);
	Grid->addWidget(new QLabel(ToQString(NSLOCTEXT("TarvinEditor", "NameLabel", "Name")), this), 0, 0);
	Grid->addWidget(NameField, 0, 1, 1, 3);
	Grid->addWidget(new QLabel(ToQString(NSLOCTEXT("TarvinEditor", "MeshLabel", "Mesh")), this), 1, 0);
	Grid->addWidget(MeshLabel, 1, 1, 1, 3);
	for (int Group = 0; Group < 3; ++Group)
	{
		Grid->addWidget(new QLabel(ToQString(GroupLabel(Group)), this), 2 + Group, 0);
		for (int Axis = 0; Axis < 3; ++Axis)
		{
			auto* Field = new QLineEdit(this);
			Field->setObjectName(QLatin1String(FieldNames[std::size_t(Group)]) + AxisNames[std::size_t(Axis)]);
			Field->setToolTip(QLatin1String(AxisNames[std::size_t(Axis)]));
			Fields[std::size_t(Group)][std::size_t(Axis)] = Field;
			Grid->addWidget(Field, 2 + Group, 1 + Axis);
			connect(Field, &QLineEdit::editingFinished, this, [this, Group, Axis] { CommitNumber(Group, Axis); });
		}
	}
	Grid->addWidget(Remark, 5, 0, 1, 4);
	Grid->setRowStretch(6, 1);
	connect(NameField, &QLineEdit::editingFinished, this, [this] { CommitName(); });
	SelectionHandle = GEditor->GetSelectedActors()->OnChanged().AddLambda([this] { RefreshSoon(); });
	RedrawHandle = GEditor->OnRedraw().AddLambda([this](bool) { RefreshSoon(); });
	DocumentHandle = Document.OnChanged().AddLambda([this] { RefreshSoon(); });
	Refresh();
}

FDetailsPanel::~FDetailsPanel()
{
	Document.OnChanged().Remove(DocumentHandle);
	if (GEditor)
	{
		GEditor->OnRedraw().Remove(RedrawHandle);
		GEditor->GetSelectedActors()->OnChanged().Remove(SelectionHandle);
	}
}

QString FDetailsPanel::GetRemark() const
{
	return Remark->text();
}

void FDetailsPanel::RefreshSoon()
{
	if (!bPending)
	{
		bPending = true;
		QTimer::singleShot(0, this,
			[this]
			{
				if (bPending)
				{
					Refresh();
				}
			});
	}
}

void FDetailsPanel::Refresh()
{
	bPending = false;
	const TArray<AActor*> Actors = SelectedActors();
	const bool bEditable = !Actors.IsEmpty() && !GEditor->PlayWorld;
	NameField->setEnabled(bEditable && Actors.Num() == 1);
	NameField->setText(Actors.IsEmpty() ? QString()
					   : Actors.Num() == 1
						   ? ToQString(Actors[0]->GetActorLabel())
						   : ToQString(FText::Format(NSLOCTEXT("TarvinEditor", "SelectedCount", "{0} actors"),
								 FText::AsNumber(Actors.Num()))));
	const UStaticMesh* const Mesh = Actors.IsEmpty() ? nullptr : MeshOf(*Actors.Last());
	MeshLabel->setText(Mesh ? ToQString(Mesh->GetName()).toHtmlEscaped() : QString());
	for (const auto& Group : Fields)
	{
		for (QLineEdit* Field : Group)
		{
			Field->setEnabled(bEditable);
		}
	}
	ShowNumbers(Actors);
	Document.UpdateProtection();
	const std::string Reason = Actors.IsEmpty() ? std::string() : Document.WhyLeftAlone(Actors.Last());
	Remark->setText(Reason.empty() ? QString()
								   : ToQString(FText::Format(NSLOCTEXT("TarvinEditor", "LeftAlone",
																 "Bake Transform and Set Pivot leave it alone: {0}."),
										 FText::FromString(FString::FromUtf8(Reason)))));
}

void FDetailsPanel::ShowNumbers(const TArray<AActor*>& Actors)
{
	for (int Group = 0; Group < 3; ++Group)
	{
		for (int Axis = 0; Axis < 3; ++Axis)
		{
			QString Common;
			bool bMixed = false;
			for (int32 Index = 0; Index < Actors.Num() && !bMixed; ++Index)
			{
				const QString Own = Shown(NumberOf(ToSceneTransform(RelativeOf(*Actors[Index])), Group, Axis));
				bMixed = Index > 0 && Own != Common;
				Common = Own;
			}
			QLineEdit* const Field = GetField(Group, Axis);
			Field->setPlaceholderText(bMixed ? ToQString(NSLOCTEXT("TarvinEditor", "Mixed", "mixed")) : QString());
			const QString Text = bMixed ? QString() : Common;
			if (Field->text() != Text && !(Field->hasFocus() && Field->isModified()))
			{
				Field->setText(Text);
				Field->setCursorPosition(0);
			}
		}
	}
}

void FDetailsPanel::CommitName()
{
	const TArray<AActor*> Actors = SelectedActors();
	if (Actors.Num() == 1 && NameField->isModified())
	{
		NameField->setModified(false);
		LevelActions::Rename(Actors[0], ToFString(NameField->text().trimmed()));
		Refresh();
	}
}

void FDetailsPanel::CommitNumber(int Group, int Axis)
{
	QLineEdit* const Field = GetField(Group, Axis);
	if (!Field->isModified())
	{
		return;
	}
	Field->setModified(false);
	bool bIsNumber = false;
	const double Number = QLocale::c().toDouble(Field->text().trimmed(), &bIsNumber);
	if (bIsNumber && std::isfinite(Number))
	{
		LevelActions::ChangeTransforms(SelectedActors(), GroupTitle(Group),
			[&](const FTransform& Relative)
			{
				// What is shown is rounded: typing the same again must change nothing.
				return Shown(NumberOf(ToSceneTransform(Relative), Group, Axis)) == Shown(Number)
						   ? Relative
						   : WithSceneNumber(Relative, Group, Axis, Number);
			});
	}
	Refresh();
}

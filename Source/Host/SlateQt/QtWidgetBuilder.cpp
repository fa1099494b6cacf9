// SPDX-License-Identifier: MIT
#include "SlateQt/QtWidgetBuilder.h"

#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/Button.h"
#include "Slate/CheckBox.h"
#include "Slate/EditableText.h"
#include "Slate/TextBlock.h"
#include "SlateQt/QtEditableText.h"
#include "SlateQt/QtText.h"
#include "SlateQt/QtTextBlock.h"
#include "SlateQt/QtWidgetLink.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QPushButton>

#include <algorithm>
#include <cmath>
#include <memory>

namespace
{
int ToPixels(float SlateUnits)
{
	return static_cast<int>(std::lround(SlateUnits));
}

QMargins ToMargins(const FMargin& Margin)
{
	return {ToPixels(Margin.Left), ToPixels(Margin.Top), ToPixels(Margin.Right), ToPixels(Margin.Bottom)};
}

/// The width that a text has at most because of the boxes around it; 0 for no limit.
int AvailableWidth(const SWidget& Widget)
{
	int Width = 0;
	for (TSharedPtr<SWidget> Above = Widget.GetParentWidget(); Above.IsValid(); Above = Above->GetParentWidget())
	{
		const auto* Box = dynamic_cast<const SBox*>(Above.Get());
		if (Box != nullptr && Box->GetMaxDesiredWidth() > 0.0f)
		{
			const FMargin& Padding = Box->GetPadding();
			const int Inner = ToPixels(Box->GetMaxDesiredWidth() - Padding.Left - Padding.Right);
			Width = Width == 0 ? Inner : std::min(Width, Inner);
		}
	}
	return Width;
}

void ShowVisibility(QWidget& Shown, const SWidget& Host)
{
	QSizePolicy Policy = Shown.sizePolicy();
	Policy.setRetainSizeWhenHidden(Host.GetVisibility() == EVisibility::Hidden);
	Shown.setSizePolicy(Policy);
	Shown.setVisible(Host.GetVisibility() == EVisibility::Visible);
}

/// A host widget is enabled when its ancestors are, and only the one that was switched tells of it.
void ShowEnabled(QWidget& Shown, const SWidget& Host)
{
	Shown.setEnabled(Host.IsEnabled());
	for (QWidget* Below : Shown.findChildren<QWidget*>())
	{
		if (const TSharedPtr<SWidget> BelowHost = FQtWidgetLink::HostWidgetOf(*Below))
		{
			Below->setEnabled(BelowHost->IsEnabled());
		}
	}
}

/// What all widgets have in common.
void ShowCommon(QWidget& Shown, const SWidget& Host)
{
	// A root is shown and hidden by whoever owns it; shown without a parent it would be a window.
	if (Shown.parentWidget() != nullptr)
	{
		ShowVisibility(Shown, Host);
	}
	ShowEnabled(Shown, Host);
	Shown.setToolTip(ToToolTip(Host.GetToolTipText()));
}

/// Ties the two together; `Update` shows what is particular to the host widget's class, now and after each change.
template <typename THost>
void Link(QWidget& Shown, THost& Host, std::function<void(THost&)> Update)
{
	const auto Typed = StaticCastSharedRef<THost>(Host.AsShared());
	Shown.setObjectName(ToQString(Host.GetTag().IsNone() ? Host.GetTypeAsString() : Host.GetTag().ToString()));
	Update(Host);
	ShowCommon(Shown, Host);
	new FQtWidgetLink(Shown, Typed,
		[&Shown, Held = TWeakPtr<THost>(Typed), Update]
		{
			if (const TSharedPtr<THost> Alive = Held.Pin())
			{
				Update(*Alive);
				ShowCommon(Shown, *Alive);
			}
		});
}

QWidget* MakeTextBlock(STextBlock& Host, QWidget* Parent)
{
	auto* Label = new FQtTextBlock(Parent);
	if (const int Width = AvailableWidth(Host))
	{
		Label->SetWrapWidth(Width);
	}
	Link<STextBlock>(*Label, Host,
		[Label](STextBlock& Block)
		{
			Label->setWordWrap(Block.GetAutoWrapText());
			Label->setText(ToQString(Block.GetText()));
		});
	return Label;
}

FText LabelOf(SWidget& Host)
{
	const TArray<TSharedRef<STextBlock>> Blocks = FindWidgets<STextBlock>(Host);
	return Blocks.IsEmpty() ? FText() : Blocks[0]->GetText();
}

Qt::CheckState ToQt(ECheckBoxState State)
{
	switch (State)
	{
	case ECheckBoxState::Checked:
		return Qt::Checked;
	case ECheckBoxState::Undetermined:
		return Qt::PartiallyChecked;
	default:
		return Qt::Unchecked;
	}
}

QWidget* MakeCheckBox(SCheckBox& Host, QWidget* Parent)
{
	auto* Box = new QCheckBox(Parent);
	const auto Held = StaticCastSharedRef<SCheckBox>(Host.AsShared());
	Link<SCheckBox>(*Box, Host,
		[Box](SCheckBox& Changed)
		{
			Box->setText(ToLabel(LabelOf(Changed)));
			Box->setTristate(Changed.GetCheckedState() == ECheckBoxState::Undetermined);
			Box->setCheckState(ToQt(Changed.GetCheckedState()));
		});
	QObject::connect(Box, &QCheckBox::clicked, Box,
		[Box, Held]
		{
			Held->ToggleCheckedState();
			// The host widget says what a click does; Qt has changed its own state already.
			Box->setCheckState(ToQt(Held->GetCheckedState()));
		});
	return Box;
}

QWidget* MakeButton(SButton& Host, QWidget* Parent)
{
	auto* Button = new QPushButton(Parent);
	const auto Held = StaticCastSharedRef<SButton>(Host.AsShared());
	// Dialogs decide themselves what Enter means.
	Button->setAutoDefault(false);
	Link<SButton>(*Button, Host,
		[Button](SButton& Changed)
		{ Button->setText(ToLabel(Changed.GetText().IsEmpty() ? LabelOf(Changed) : Changed.GetText())); });
	QObject::connect(Button, &QPushButton::clicked, Button, [Held] { Held->Click(); });
	return Button;
}

QWidget* MakeEditableText(SEditableTextBase& Host, QWidget* Parent)
{
	const auto Held = StaticCastSharedRef<SEditableTextBase>(Host.AsShared());
	if (Host.IsMultiLine())
	{
		auto* Text = new FQtMultiLineText(Held, Parent);
		Link<SEditableTextBase>(*Text, Host, [Text](SEditableTextBase&) { Text->ShowHostText(); });
		return Text;
	}
	auto* Line = new FQtTextLine(Held, Parent);
	Link<SEditableTextBase>(*Line, Host, [Line](SEditableTextBase&) { Line->ShowHostText(); });
	return Line;
}

Qt::Alignment ToQt(EHorizontalAlignment Alignment)
{
	switch (Alignment)
	{
	case EHorizontalAlignment::Left:
		return Qt::AlignLeft;
	case EHorizontalAlignment::Center:
		return Qt::AlignHCenter;
	case EHorizontalAlignment::Right:
		return Qt::AlignRight;
	default:
		return {};
	}
}

/// Puts a child, made anew, into a layout, within its padding.
void AddChild(
	QBoxLayout& Layout, const TSharedRef<SWidget>& Child, const FMargin& Padding, Qt::Alignment Alignment, int Stretch)
{
	auto* Padded = new QVBoxLayout;
	Padded->setContentsMargins(ToMargins(Padding));
	Padded->addWidget(MakeQtWidget(Child, Layout.parentWidget()), 0, Alignment);
	Layout.addLayout(Padded, Stretch);
}

void FillPanel(QBoxLayout& Layout, const SBoxPanel& Panel)
{
	for (const SBoxPanel::FSlot& Slot : Panel.GetSlots())
	{
		if (Slot.GetWidget().IsValid())
		{
			// Qt's shares are whole numbers.
			AddChild(Layout, Slot.GetWidget().ToSharedRef(), Slot.GetPadding(), ToQt(Slot.GetHorizontalAlignment()),
				ToPixels(Slot.GetFillWeight() * 100.0f));
		}
	}
}

/// Removes what the layout holds. The widgets go once control is back in the event loop: one of them may be the
/// sender of what is being handled.
void Clear(QLayout& Layout)
{
	while (QLayoutItem* Item = Layout.takeAt(0))
	{
		if (QLayout* Inner = Item->layout())
		{
			Clear(*Inner);
		}
		if (QWidget* Widget = Item->widget())
		{
			Widget->hide();
			Widget->deleteLater();
		}
		delete Item;
	}
}

void LimitSize(QWidget& Shown, const SBox& Box)
{
	if (Box.GetMaxDesiredWidth() > 0.0f)
	{
		Shown.setMaximumWidth(ToPixels(Box.GetMaxDesiredWidth()));
	}
	if (Box.GetMaxDesiredHeight() > 0.0f)
	{
		Shown.setMaximumHeight(ToPixels(Box.GetMaxDesiredHeight()));
	}
	Shown.setMinimumSize(ToPixels(Box.GetMinDesiredWidth()), ToPixels(Box.GetMinDesiredHeight()));
}

/// A panel, a box, or any other widget that only holds others.
QWidget* MakeContainer(SWidget& Host, QWidget* Parent)
{
	auto* Container = new QWidget(Parent);
	const auto* Panel = dynamic_cast<const SBoxPanel*>(&Host);
	const auto* Box = dynamic_cast<const SBox*>(&Host);
	const bool bVertical = Panel == nullptr || Panel->IsVertical();
	auto* Layout = new QBoxLayout(bVertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, Container);
	Layout->setContentsMargins(Box != nullptr ? ToMargins(Box->GetPadding()) : QMargins());
	Layout->setSpacing(0);
	if (Box != nullptr)
	{
		LimitSize(*Container, *Box);
	}
	Link<SWidget>(*Container, Host,
		[Layout, Built = std::make_shared<TArray<TSharedRef<SWidget>>>()](SWidget& Changed)
		{
			const TArray<TSharedRef<SWidget>> Children = Changed.GetChildren();
			if (*Built == Children)
			{
				return;
			}
			*Built = Children;
			Clear(*Layout);
			if (const auto* ChangedPanel = dynamic_cast<const SBoxPanel*>(&Changed))
			{
				FillPanel(*Layout, *ChangedPanel);
				return;
			}
			for (const TSharedRef<SWidget>& Child : Children)
			{
				AddChild(*Layout, Child, FMargin(), {}, 1);
			}
		});
	return Container;
}
}

QWidget* MakeQtWidget(const TSharedRef<SWidget>& Widget, QWidget* Parent)
{
	SWidget& Host = *Widget;
	if (auto* TextBlock = dynamic_cast<STextBlock*>(&Host))
	{
		return MakeTextBlock(*TextBlock, Parent);
	}
	if (auto* CheckBox = dynamic_cast<SCheckBox*>(&Host))
	{
		return MakeCheckBox(*CheckBox, Parent);
	}
	if (auto* Button = dynamic_cast<SButton*>(&Host))
	{
		return MakeButton(*Button, Parent);
	}
	if (auto* EditableText = dynamic_cast<SEditableTextBase*>(&Host))
	{
		return MakeEditableText(*EditableText, Parent);
	}
	return MakeContainer(Host, Parent);
}

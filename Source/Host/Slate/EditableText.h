// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/DeclarativeSyntax.h"

/// Why a text was handed over.
enum class ETextCommit : uint8
{
	Default,
	OnEnter,
	OnUserMovedFocus,
	OnCleared,
};

/// Told of every change while a user types.
using FOnTextChanged = TDelegate<void(const FText&)>;

/// Told once when a user is done with a text.
using FOnTextCommitted = TDelegate<void(const FText&, ETextCommit)>;

/// What all widgets have in common in which text is typed. The type name of each contains "EditableText" or, for a
/// widget that is built around one, that of the part that takes the focus does.
class SEditableTextBase : public SLeafWidget
{
public:
	const FText& GetText() const { return Text; }
	void SetText(const FText& InText);

	/// Shown while there is no text.
	const FText& GetHintText() const { return HintText; }

	bool IsReadOnly() const { return bReadOnly; }
	void SetIsReadOnly(bool bInReadOnly);

	/// What a back end calls when a user changed the text; tells OnTextChanged. Nothing while read-only or disabled.
	void TypeText(const FText& InText);

	/// What a back end calls when a user is done; tells OnTextCommitted. Nothing while read-only or disabled.
	void CommitText(ETextCommit How);

	/// Whether the text may have more than one line.
	virtual bool IsMultiLine() const { return false; }

	bool SupportsKeyboardFocus() const override { return true; }
	FReply OnKeyDown(const FKeyEvent& InKeyEvent) override;

protected:
	template <typename TArguments>
	struct TTextArguments : TWidgetArguments<TArguments>
	{
		TArguments& Text(FText InText)
		{
			TextValue = std::move(InText);
			return this->Self();
		}
		TArguments& HintText(FText InText)
		{
			HintTextValue = std::move(InText);
			return this->Self();
		}
		TArguments& IsReadOnly(bool bInReadOnly)
		{
			IsReadOnlyValue = bInReadOnly;
			return this->Self();
		}
		TArguments& OnTextChanged(FOnTextChanged InDelegate)
		{
			OnTextChangedValue = std::move(InDelegate);
			return this->Self();
		}
		TArguments& OnTextCommitted(FOnTextCommitted InDelegate)
		{
			OnTextCommittedValue = std::move(InDelegate);
			return this->Self();
		}

		FText TextValue;
		FText HintTextValue;
		bool IsReadOnlyValue = false;
		FOnTextChanged OnTextChangedValue;
		FOnTextCommitted OnTextCommittedValue;
	};

	template <typename TArguments>
	void ConstructText(const TArguments& Arguments)
	{
		Text = Arguments.TextValue;
		HintText = Arguments.HintTextValue;
		bReadOnly = Arguments.IsReadOnlyValue;
		OnTextChanged = Arguments.OnTextChangedValue;
		OnTextCommitted = Arguments.OnTextCommittedValue;
	}

private:
	void InsertCharacter(uint32 CodePoint);
	void EraseLastCharacter();

	FText Text;
	FText HintText;
	bool bReadOnly = false;
	FOnTextChanged OnTextChanged;
	FOnTextCommitted OnTextCommitted;
};

/// One line of text without a frame.
class SEditableText : public SEditableTextBase
{
public:
	DECLARE_WIDGET(SEditableText)
	struct FArguments : TTextArguments<FArguments>
	{
	};
};

/// One line of text in a frame.
class SEditableTextBox : public SEditableTextBase
{
public:
	DECLARE_WIDGET(SEditableTextBox)
	struct FArguments : TTextArguments<FArguments>
	{
	};
};

/// Text of any number of lines.
class SMultiLineEditableText : public SEditableTextBase
{
public:
	DECLARE_WIDGET(SMultiLineEditableText)
	struct FArguments : TTextArguments<FArguments>
	{
	};

	bool IsMultiLine() const override { return true; }
};

/// A box for a search term, built around an SEditableText, which is what takes the focus.
class SSearchBox : public SCompoundWidget
{
public:
	DECLARE_WIDGET(SSearchBox)
	struct FArguments : TWidgetArguments<FArguments>
	{
		WIDGET_ARGUMENT(FText, InitialText)
		WIDGET_ARGUMENT(FText, HintText)
		WIDGET_ARGUMENT(FOnTextChanged, OnTextChanged)
		WIDGET_ARGUMENT(FOnTextCommitted, OnTextCommitted)
	};

	TSharedRef<SEditableText> GetEditableText() const;
	FText GetText() const { return GetEditableText()->GetText(); }
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/String.h"

#include <memory>
#include <vector>

class FTextData;

/// Text for people. It is immutable and shared by its copies, remembers where it came from (a source text with
/// namespace and key, a literal, a number, a pattern with arguments), and is put into the current culture each time it
/// is read.
class FText
{
public:
	/// The empty text.
	FText() = default;

	/// Text that is the same in every culture.
	static FText FromString(const FString& Literal);

	/// Text to be looked up by namespace and key; `Source` stands where no translation is known. All three are copied.
	static FText FromKey(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source);

	/// A number in the current culture: grouped, at most three decimals.
	static FText AsNumber(int32 Value);
	static FText AsNumber(int64 Value);
	static FText AsNumber(double Value);

	/// `Pattern` with every `{n}` replaced by the n-th argument, from zero. Nothing else is special: apostrophes and
	/// other braces stay, as does `{n}` without an argument, and what an argument brings along is not looked at again.
	template <typename... TextTypes>
	requires(std::is_convertible_v<const TextTypes&, FText>&&...) static FText
		Format(const FText& Pattern, const TextTypes&... Arguments)
	{
		return FormatArray(Pattern, {FText(Arguments)...});
	}

	static FText FormatArray(const FText& Pattern, const TArray<FText>& Arguments);

	static const FText& GetEmpty();

	/// The text in the current culture.
	FString ToString() const;

	/// Whether the text in the current culture has no characters.
	bool IsEmpty() const { return ToString().IsEmpty(); }

	/// Whether both share their data, or are looked up by the same namespace, key and source. Equal literals made apart
	/// are not identical.
	bool IdenticalTo(const FText& Other) const;

	/// Whether both read the same in the current culture.
	bool EqualTo(const FText& Other) const { return ToString() == Other.ToString(); }

	/// The parts of a text that is looked up; empty for other texts.
	FString GetNamespace() const;
	FString GetKey() const;

	/// The text before any translation; patterns and numbers give what they read as in no culture: the source pattern
	/// filled in.
	FString GetSourceString() const;

	friend std::ostream& operator<<(std::ostream& Stream, const FText& Text);

private:
	explicit FText(std::shared_ptr<const FTextData> InData)
		: Data(std::move(InData))
	{
	}

	std::shared_ptr<const FTextData> Data;
};

/// Translations and the current culture. Main thread only.
class FTextLocalization
{
public:
	static FTextLocalization& Get();

	/// Sets the culture ("de", "de-CH", "pt_BR"). False, leaving the culture as it is, for a name that is no culture's.
	bool SetCurrentCulture(const FString& Culture);

	/// The culture as last set, in its canonical writing; "en" at first.
	FString GetCurrentCulture() const;

	/// Adds or replaces one translation; false for a name that is no culture's. Everything is copied. A culture falls
	/// back on its parents: "de-CH" on "de".
	bool AddText(const FString& Culture, const FString& Namespace, const FString& Key, const FString& Translation);

	/// Drops all translations of one culture.
	void RemoveTexts(const FString& Culture);

	/// The translation in the current culture, or null.
	const FString* FindText(const FString& Namespace, const FString& Key) const;

	FTextLocalization(const FTextLocalization&) = delete;
	FTextLocalization& operator=(const FTextLocalization&) = delete;

private:
	FTextLocalization();
	~FTextLocalization();

	struct FState;
	std::unique_ptr<FState> State;
};

/// A text with namespace, key and source, each a literal without TEXT.
#define NSLOCTEXT(Namespace, Key, Source) FText::FromKey(TEXT(Namespace), TEXT(Key), TEXT(Source))

/// As NSLOCTEXT, in the namespace that the source has defined as LOCTEXT_NAMESPACE.
#define LOCTEXT(Key, Source) NSLOCTEXT(LOCTEXT_NAMESPACE, Key, Source)

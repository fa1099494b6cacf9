// SPDX-License-Identifier: MIT
#include "Core/Map.h"
#include "Core/Text.h"

#include <unicode/locid.h>

#include <string_view>

namespace
{
struct FTextKey
{
	FString Namespace;
	FString Key;

	friend bool operator==(const FTextKey&, const FTextKey&) = default;
	friend std::size_t GetTypeHash(const FTextKey& TextKey)
	{
		return HashCombine(GetTypeHash(TextKey.Namespace), GetTypeHash(TextKey.Key));
	}
};

using FTextTable = TMap<FTextKey, FString>;

/// "de_CH", "DE-ch" and "de-CH" name one culture: its name as ICU writes it, or empty for a name that is no culture's.
FString CanonicalCulture(const FString& Culture)
{
	const std::string Tag = Culture.Replace(TEXT("_"), TEXT("-")).ToUtf8();
	UErrorCode Status = U_ZERO_ERROR;
	const icu::Locale Locale = icu::Locale::forLanguageTag(Tag, Status);
	const std::string Canonical = Locale.toLanguageTag<std::string>(Status);
	if (U_FAILURE(Status))
	{
		return FString();
	}
	// Any two letters are a well-formed tag; ICU's list tells those that are a language.
	const std::string_view Language = Locale.getLanguage();
	for (const char* const* Known = icu::Locale::getISOLanguages(); *Known != nullptr; ++Known)
	{
		if (Language == *Known)
		{
			return FString::FromUtf8(Canonical);
		}
	}
	return FString();
}

/// "de" for "de-CH"; empty for a culture without parents.
FString ParentCulture(const FString& Culture)
{
	int32 Dash = INDEX_NONE;
	return Culture.FindLastChar(L'-', Dash) ? Culture.Left(Dash) : FString();
}
}

struct FTextLocalization::FState
{
	FString Culture = TEXT("en");
	TMap<FString, FTextTable> Tables;
};

FTextLocalization::FTextLocalization()
	: State(std::make_unique<FState>())
{
}

FTextLocalization::~FTextLocalization() = default;

FTextLocalization& FTextLocalization::Get()
{
	// Never destroyed: texts in statics may be read while the program ends.
	static FTextLocalization& Instance = *new FTextLocalization;
	return Instance;
}

bool FTextLocalization::SetCurrentCulture(const FString& Culture)
{
	const FString Canonical = CanonicalCulture(Culture);
	if (Canonical.IsEmpty())
	{
		return false;
	}
	State->Culture = Canonical;
	return true;
}

FString FTextLocalization::GetCurrentCulture() const
{
	return State->Culture;
}

bool FTextLocalization::AddText(
	const FString& Culture, const FString& Namespace, const FString& Key, const FString& Translation)
{
	const FString Canonical = CanonicalCulture(Culture);
	if (Canonical.IsEmpty())
	{
		return false;
	}
	State->Tables.FindOrAdd(Canonical).Add(FTextKey{Namespace, Key}, Translation);
	return true;
}

void FTextLocalization::RemoveTexts(const FString& Culture)
{
	State->Tables.Remove(CanonicalCulture(Culture));
}

const FString* FTextLocalization::FindText(const FString& Namespace, const FString& Key) const
{
	const FTextKey TextKey{Namespace, Key};
	for (FString Culture = State->Culture; !Culture.IsEmpty(); Culture = ParentCulture(Culture))
	{
		const FTextTable* Table = State->Tables.Find(Culture);
		const FString* Translation = Table != nullptr ? Table->Find(TextKey) : nullptr;
		if (Translation != nullptr)
		{
			return Translation;
		}
	}
	return nullptr;
}

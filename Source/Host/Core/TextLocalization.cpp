// SPDX-License-Identifier: MIT
#include "Core/Map.h"
#include "Core/Text.h"

#include <unicode/locid.h>
#include <unicode/uloc.h>

#include <algorithm>

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

/// "de_CH" and "de-CH" name one culture.
FString NormalizeCulture(const FString& Culture)
{
	return Culture.Replace(TEXT("_"), TEXT("-"));
}

/// "de" for "de-CH"; empty for a culture without parents.
FString ParentCulture(const FString& Culture)
{
	int32 Dash = INDEX_NONE;
	return Culture.FindLastChar(L'-', Dash) ? Culture.Left(Dash) : FString();
}

/// Whether ICU knows the language that a culture's name begins with.
bool IsCultureName(const FString& Culture)
{
	const std::string Utf8 = Culture.ToUtf8();
	UErrorCode Status = U_ZERO_ERROR;
	const icu::Locale Locale = icu::Locale::forLanguageTag(Utf8, Status);
	if (U_FAILURE(Status) || Locale.isBogus() || Locale.getLanguage()[0] == '\0')
	{
		return false;
	}
	const char* const* Languages = icu::Locale::getISOLanguages();
	for (; *Languages != nullptr; ++Languages)
	{
		if (std::string_view(*Languages) == Locale.getLanguage())
		{
			return true;
		}
	}
	return false;
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
	const FString Normalized = NormalizeCulture(Culture);
	if (!IsCultureName(Normalized))
	{
		return false;
	}
	State->Culture = Normalized;
	return true;
}

FString FTextLocalization::GetCurrentCulture() const
{
	return State->Culture;
}

void FTextLocalization::AddText(
	const FString& Culture, const FString& Namespace, const FString& Key, const FString& Translation)
{
	State->Tables.FindOrAdd(NormalizeCulture(Culture)).Add(FTextKey{Namespace, Key}, Translation);
}

void FTextLocalization::RemoveTexts(const FString& Culture)
{
	State->Tables.Remove(NormalizeCulture(Culture));
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

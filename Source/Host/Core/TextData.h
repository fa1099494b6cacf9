// SPDX-License-Identifier: MIT
#pragma once

// What texts are made of. For the text sources of this folder alone.

#include "Core/Text.h"

#include <variant>

class FKeyedTextData;

/// The shared, immutable part of a text.
class FTextData
{
public:
	virtual ~FTextData() = default;

	/// The text as people in the current culture read it.
	virtual FString InCurrentCulture() const = 0;

	/// The text without any translation.
	virtual FString InNoCulture() const = 0;

	virtual const FKeyedTextData* AsKeyed() const { return nullptr; }
};

/// Text that is the same everywhere.
class FLiteralTextData final : public FTextData
{
public:
	explicit FLiteralTextData(FString InLiteral);
	FString InCurrentCulture() const override { return Literal; }
	FString InNoCulture() const override { return Literal; }

private:
	FString Literal;
};

/// Text that is looked up.
class FKeyedTextData final : public FTextData
{
public:
	FKeyedTextData(FString InNamespace, FString InKey, FString InSource);
	FString InCurrentCulture() const override;
	FString InNoCulture() const override { return Source; }
	const FKeyedTextData* AsKeyed() const override { return this; }

	bool operator==(const FKeyedTextData& Other) const
	{
		return Namespace == Other.Namespace && Key == Other.Key && Source == Other.Source;
	}

	const FString Namespace;
	const FString Key;
	const FString Source;
};

/// A number.
class FNumberTextData final : public FTextData
{
public:
	explicit FNumberTextData(int64 InNumber);
	explicit FNumberTextData(double InNumber);
	FString InCurrentCulture() const override;
	FString InNoCulture() const override;

private:
	std::variant<int64, double> Number;
};

/// A pattern and what its braces stand for.
class FFormattedTextData final : public FTextData
{
public:
	FFormattedTextData(FText InPattern, TArray<FText> InArguments);
	FString InCurrentCulture() const override;
	FString InNoCulture() const override;

private:
	FText Pattern;
	TArray<FText> Arguments;
};

/// A number as the culture with the language tag `Locale` writes it: grouped, at most three decimals.
FString FormatNumberForLocale(const std::string& Locale, int64 Number);
FString FormatNumberForLocale(const std::string& Locale, double Number);

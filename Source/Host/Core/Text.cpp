// SPDX-License-Identifier: MIT
#include "Core/Text.h"

#include "Core/TextData.h"

#include <ostream>

FText FText::FromString(const FString& Literal)
{
	return Literal.IsEmpty() ? FText() : FText(std::make_shared<FLiteralTextData>(Literal));
}

FText FText::FromKey(const TCHAR* Namespace, const TCHAR* Key, const TCHAR* Source)
{
	return FText(std::make_shared<FKeyedTextData>(Namespace, Key, Source));
}

FText FText::AsNumber(int32 Value)
{
	return AsNumber(static_cast<int64>(Value));
}

FText FText::AsNumber(int64 Value)
{
	return FText(std::make_shared<FNumberTextData>(Value));
}

FText FText::AsNumber(double Value)
{
	return FText(std::make_shared<FNumberTextData>(Value));
}

FText FText::FormatArray(const FText& Pattern, const TArray<FText>& Arguments)
{
	return FText(std::make_shared<FFormattedTextData>(Pattern, Arguments));
}

const FText& FText::GetEmpty()
{
	static const FText Empty;
	return Empty;
}

FString FText::ToString() const
{
	return Data != nullptr ? Data->InCurrentCulture() : FString();
}

bool FText::IdenticalTo(const FText& Other) const
{
	if (Data == Other.Data)
	{
		return true;
	}
	return Data != nullptr && Other.Data != nullptr && Data->AsKeyed() != nullptr && Other.Data->AsKeyed() != nullptr &&
		   *Data->AsKeyed() == *Other.Data->AsKeyed();
}

FString FText::GetNamespace() const
{
	const FKeyedTextData* Keyed = Data != nullptr ? Data->AsKeyed() : nullptr;
	return Keyed != nullptr ? Keyed->Namespace : FString();
}

FString FText::GetKey() const
{
	const FKeyedTextData* Keyed = Data != nullptr ? Data->AsKeyed() : nullptr;
	return Keyed != nullptr ? Keyed->Key : FString();
}

FString FText::GetSourceString() const
{
	return Data != nullptr ? Data->InNoCulture() : FString();
}

std::ostream& operator<<(std::ostream& Stream, const FText& Text)
{
	return Stream << Text.ToString();
}

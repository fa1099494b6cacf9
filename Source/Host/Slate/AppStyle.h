// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"

/// The style set of the application: how commands and widgets look unless they say otherwise.
class FAppStyle
{
public:
	/// The name of the style set.
	static FName GetAppStyleSetName();
};

/// An icon by style set and name; empty for none.
struct FSlateIcon
{
	FSlateIcon() = default;
	FSlateIcon(FName InStyleSetName, FName InStyleName)
		: StyleSetName(InStyleSetName)
		, StyleName(InStyleName)
	{
	}

	bool IsSet() const { return !StyleName.IsNone(); }

	FName StyleSetName;
	FName StyleName;
};

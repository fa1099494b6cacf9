// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/JsonText.h"

#include <string_view>

/// Fills the list of values of a text that is known to be valid JSON.
class FJsonScanner
{
public:
	/// `Valid` is the part of Text.Source from the first to the last byte of the root and blanks around it.
	FJsonScanner(FJsonText& InText, std::string_view Valid);

	/// False where the text turns out not to be what the validator promised; never reads outside it.
	bool Run();

private:
	bool ScanValue();
	bool ScanString();
	void ScanScalar(EJsonKind Kind);
	void SkipBlanks();
	bool AfterValue();
	FJsonText::FEntry& Open(EJsonKind Kind);
	void CountInto(FJsonIndex Container);

	FJsonText& Text;
	const char* Base;
	const char* At;
	const char* Last;
	std::vector<FJsonIndex> Containers;
	bool bDone = false;
};

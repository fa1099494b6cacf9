// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Text.h"

/// The editor's own modal dialogs.
namespace Questions
{
enum class EUnsavedAnswer : uint8
{
	Save,
	Discard,
	Cancel,
};

/// Asks what is to become of unsaved changes of the scene of that name. A closed window counts as Cancel.
EUnsavedAnswer AskAboutUnsaved(const FString& SceneName);

/// Says what went wrong, in one sentence, and waits until that is confirmed.
void TellError(const FText& Title, const FString& Sentence);
} // namespace Questions

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Slate/TerminalStream.h"
#include "Slate/Widget.h"

class SCheckBox;
class SCustomDialog;
class SEditableTextBase;

/// One dialog on a terminal: its texts, its fields by letter, its buttons by number, and the conversation about them.
class FTerminalDialog
{
public:
	FTerminalDialog(SCustomDialog& InDialog, FTerminalStream& InTerminal);

	/// Shows the dialog and reads answers until it is closed or the input ends.
	void Run();

private:
	/// Something of the content that users change: a check box or a text, known by a letter.
	struct FField
	{
		TCHAR Letter;
		TSharedRef<SWidget> Widget;
	};

	void Collect(SWidget& Widget);
	void WriteAll();
	void WriteField(const FField& Field);
	void WritePrompt();
	void Answer(const FString& Line);
	bool PressByNumber(const FString& Line);
	bool ChangeByLetter(const FString& Line);

	SCustomDialog& Dialog;
	FTerminalStream& Terminal;
	TArray<FString> Texts;
	TArray<FField> Fields;
};

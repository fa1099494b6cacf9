// SPDX-License-Identifier: MIT
#include "HostSession.h"

#include "Editor/EditorEngine.h"
#include "Slate/CheckBox.h"
#include "Slate/CustomDialog.h"
#include "Slate/SlateApplication.h"

class FHostSession::FQuietTerminal final : public FTerminalSlateBackend
{
public:
	void OnNotificationAdded(const TSharedRef<SNotificationItem>&) override {}
	void OnNotificationChanged(const TSharedRef<SNotificationItem>&) override {}
	void OnNotificationRemoved(const TSharedRef<SNotificationItem>&) override {}
};

FHostSession::FHostSession()
	: Terminal(MakeShared<FQuietTerminal>())
{
	FSlateApplication::Create(StaticCastSharedPtr<ISlateBackend>(Terminal).ToSharedRef());
	UEditorEngine::Create();
}

FHostSession::~FHostSession()
{
	UEditorEngine::Destroy();
	FSlateApplication::Shutdown();
}

void FHostSession::AnswerWith(ESharedAnswer Answer)
{
	if (Answer == ESharedAnswer::Ask)
	{
		Terminal->SetAnswerSource({});
		return;
	}
	Terminal->SetAnswerSource(
		[Answer](SCustomDialog& Dialog)
		{
			// First comes "Create new asset", last "Cancel"; "Apply to all" stands between them where it is offered.
			const int32 Last = Dialog.GetButtons().Num() - 1;
			const bool bOffered = Last >= 2;
			// The answer holds for all assets, unless this one had no such choice.
			if (bOffered || Answer != ESharedAnswer::InPlace)
			{
				for (const TSharedRef<SCheckBox>& Box : FindWidgets<SCheckBox>(*Dialog.GetDialogContent()))
				{
					Box->SetIsChecked(ECheckBoxState::Checked);
				}
			}
			Dialog.PressButton(Answer == ESharedAnswer::Skip                  ? Last
							   : Answer == ESharedAnswer::InPlace && bOffered ? 1
																			  : 0);
			return true;
		});
}

std::vector<std::string> FHostSession::TakeWarnings()
{
	std::vector<std::string> Warnings;
	for (const FLogRecord& Record : Log.Records())
	{
		if (Record.Verbosity <= ELogVerbosity::Warning)
		{
			Warnings.push_back(Record.Message.ToUtf8());
		}
	}
	Log.Clear();
	return Warnings;
}

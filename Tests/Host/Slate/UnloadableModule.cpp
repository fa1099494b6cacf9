// SPDX-License-Identifier: MIT
// A module that uses all of the widget toolkit from its start, and gives it back at its stop.
#include "Core/ModuleManager.h"
#include "Slate/Commands.h"
#include "Slate/CustomDialog.h"
#include "Slate/EditableText.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/TextBlock.h"
#include "Slate/UICommandList.h"

namespace
{
class FUnloadableCommands : public TCommands<FUnloadableCommands>
{
public:
	FUnloadableCommands()
		: TCommands(TEXT("Unloadable"), NSLOCTEXT("Contexts", "Unloadable", "Unloadable"), NAME_None, NAME_None)
	{
	}

	void RegisterCommands() override
	{
		MakeUICommand_InternalUseOnly(this, Act, TEXT("FUnloadableCommands"), TEXT("Act"), TEXT("Act_ToolTip"), ".Act",
			TEXT("Act"), TEXT("Acts"), EUserInterfaceActionType::Button, FInputChord(EModifierKey::Control, EKeys::U));
	}

	TSharedPtr<FUICommandInfo> Act;
};

class FUnloadableProcessor : public IInputProcessor
{
public:
	void Tick(const float, FSlateApplication&, TSharedRef<ICursor>) override {}
	const TCHAR* GetDebugName() const override { return TEXT("Unloadable"); }
};

void OnCommandsChanged(const FBindingContext&) {}

class FUnloadableModule : public IModuleInterface
{
public:
	void StartupModule() override
	{
		ChangedHandle = FBindingContext::CommandsChanged.AddStatic(&OnCommandsChanged);
		FUnloadableCommands::Register();
		List = MakeShared<FUICommandList>();
		List->MapAction(FUnloadableCommands::Get().Act, FExecuteAction::CreateStatic(&Act));
		FSlateApplication::AddGlobalCommandList(List.ToSharedRef());
		Processor = MakeShared<FUnloadableProcessor>();
		FSlateApplication::Get().RegisterInputPreProcessor(Processor);
	}

	void ShutdownModule() override
	{
		FSlateApplication::Get().UnregisterInputPreProcessor(Processor);
		FSlateApplication::RemoveGlobalCommandList(List.ToSharedRef());
		List->UnmapAction(FUnloadableCommands::Get().Act);
		FUnloadableCommands::Unregister();
		FBindingContext::CommandsChanged.Remove(ChangedHandle);
	}

	/// What the command does: a notification that outlives the module, and a dialog whose widgets have had the focus.
	static void Act()
	{
		FSlateNotificationManager::Get().AddNotification(FNotificationInfo(NSLOCTEXT("Unloadable", "Done", "Done")));
		TSharedPtr<SEditableText> Field;
		const TSharedRef<SCustomDialog> Dialog =
			SNew(SCustomDialog)
				.Title(NSLOCTEXT("Unloadable", "Title", "Unloadable"))
				.Buttons({SCustomDialog::FButton(NSLOCTEXT("Unloadable", "Fine", "Fine"),
					[] {}).SetFocus(true)})[SAssignNew(Field, SEditableText)];
		Dialog->ShowModal();
		FSlateApplication::Get().SetKeyboardFocus(Field);
	}

private:
	FDelegateHandle ChangedHandle;
	TSharedPtr<FUICommandList> List;
	TSharedPtr<FUnloadableProcessor> Processor;
};
}

IMPLEMENT_MODULE(FUnloadableModule, SlateUnloadable)

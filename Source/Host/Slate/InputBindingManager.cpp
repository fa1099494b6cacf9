// SPDX-License-Identifier: MIT
#include "Slate/InputBindingManager.h"

#include "Slate/SlateLog.h"

#include <cstdlib>

namespace
{
constexpr EMultipleKeyBindingIndex BothChords[] = {
	EMultipleKeyBindingIndex::Primary, EMultipleKeyBindingIndex::Secondary};

FUserChordKey KeyOf(const FUICommandInfo& Command, EMultipleKeyBindingIndex Index)
{
	return {Command.GetBindingContext().ToString(), Command.GetCommandName().ToString(), Index};
}
}

FInputBindingManager& FInputBindingManager::Get()
{
	// Never destroyed: modules that end with the process still take their contexts out.
	static FInputBindingManager* const Manager = new FInputBindingManager;
	return *Manager;
}

void FInputBindingManager::AddContext(const TSharedRef<FBindingContext>& InContext)
{
	if (const FContextEntry* Present = FindEntry(InContext->GetContextName()))
	{
		check(Present->Context == InContext);
		return;
	}
	Entries.Add({InContext, {}});
}

void FInputBindingManager::CreateInputCommand(
	const TSharedRef<FBindingContext>& InContext, const TSharedRef<FUICommandInfo>& InCommand)
{
	AddContext(InContext);
	const FName ContextName = InContext->GetContextName();
	checkf(!FindCommandInContext(ContextName, InCommand->GetCommandName()).IsValid(),
		TEXT("Cannot add command '%s' to context '%s': it has one of that name"),
		*InCommand->GetCommandName().ToString(), *ContextName.ToString());
	Entries.FindByPredicate([&](const FContextEntry& Entry) { return Entry.Context == InContext; })
		->Commands.Add(InCommand);
	ApplyUserChords(*InCommand);
}

const FInputBindingManager::FContextEntry* FInputBindingManager::FindEntry(FName InContextName) const
{
	return Entries.FindByPredicate(
		[InContextName](const FContextEntry& Entry) { return Entry.Context->GetContextName() == InContextName; });
}

TSharedPtr<FBindingContext> FInputBindingManager::GetContextByName(FName InContextName) const
{
	const FContextEntry* Entry = FindEntry(InContextName);
	return Entry != nullptr ? TSharedPtr<FBindingContext>(Entry->Context) : TSharedPtr<FBindingContext>();
}

void FInputBindingManager::RemoveContextByName(FName InContextName)
{
	Entries.RemoveAll(
		[InContextName](const FContextEntry& Entry) { return Entry.Context->GetContextName() == InContextName; });
}

TArray<TSharedRef<FBindingContext>> FInputBindingManager::GetKnownInputContexts() const
{
	TArray<TSharedRef<FBindingContext>> Contexts;
	for (const FContextEntry& Entry : Entries)
	{
		Contexts.Add(Entry.Context);
	}
	return Contexts;
}

TArray<TSharedRef<FUICommandInfo>> FInputBindingManager::GetCommandInfosFromContext(FName InContextName) const
{
	const FContextEntry* Entry = FindEntry(InContextName);
	return Entry != nullptr ? Entry->Commands : TArray<TSharedRef<FUICommandInfo>>();
}

TSharedPtr<FUICommandInfo> FInputBindingManager::FindCommandInContext(FName InContextName, FName InCommandName) const
{
	for (const TSharedRef<FUICommandInfo>& Command : GetCommandInfosFromContext(InContextName))
	{
		if (Command->GetCommandName() == InCommandName)
		{
			return Command;
		}
	}
	return {};
}

TSharedPtr<FUICommandInfo> FInputBindingManager::FindCommandInContext(
	FName InContextName, const FInputChord& InChord, bool bCheckDefault) const
{
	if (!InChord.IsValidChord())
	{
		return {};
	}
	for (const TSharedRef<FUICommandInfo>& Command : GetCommandInfosFromContext(InContextName))
	{
		for (const EMultipleKeyBindingIndex Index : BothChords)
		{
			if ((bCheckDefault ? Command->GetDefaultChord(Index) : Command->GetActiveChord(Index)) == InChord)
			{
				return Command;
			}
		}
	}
	return {};
}

TArray<TSharedRef<FUICommandInfo>> FInputBindingManager::FindConflicts(
	const FUICommandInfo& Command, const FInputChord& Chord) const
{
	TArray<TSharedRef<FUICommandInfo>> Others;
	for (const FContextEntry& Entry : Entries)
	{
		for (const TSharedRef<FUICommandInfo>& Other : Entry.Commands)
		{
			if (&Other.Get() != &Command && Other->HasActiveChord(Chord))
			{
				Others.Add(Other);
			}
		}
	}
	return Others;
}

TArray<FInputBindingManager::FChordConflict> FInputBindingManager::CheckForDuplicates() const
{
	TArray<FChordConflict> ByChord;
	for (const FContextEntry& Entry : Entries)
	{
		for (const TSharedRef<FUICommandInfo>& Command : Entry.Commands)
		{
			for (const EMultipleKeyBindingIndex Index : BothChords)
			{
				const FInputChord& Chord = Command->GetActiveChord(Index);
				FChordConflict* Known =
					ByChord.FindByPredicate([&Chord](const FChordConflict& Item) { return Item.Chord == Chord; });
				if (Known != nullptr)
				{
					Known->Commands.AddUnique(Command);
				}
				else if (Chord.IsValidChord())
				{
					ByChord.Add({Chord, {Command}});
				}
			}
		}
	}
	ByChord.RemoveAll([](const FChordConflict& Item) { return Item.Commands.Num() < 2; });
	return ByChord;
}

FString FInputBindingManager::DefaultUserChordsFile()
{
	const char* Config = std::getenv("XDG_CONFIG_HOME");
	// A relative path in the variable is to be ignored.
	if (Config != nullptr && Config[0] == '/')
	{
		return FString::FromUtf8(Config) / TEXT("tarvin/key-chords.txt");
	}
	const char* Home = std::getenv("HOME");
	return Home != nullptr && Home[0] == '/' ? FString::FromUtf8(Home) / TEXT(".config/tarvin/key-chords.txt")
											 : FString();
}

void FInputBindingManager::SetUserChordsFile(const FString& Path)
{
	UserChordsPath = Path;
	UserChords.clear();
	FString Problem;
	const std::string NativePath = Path.ToUtf8();
	if (!Path.IsEmpty() && UserChordsFile::Read(NativePath, UserChords, Problem) == UserChordsFile::EState::Broken)
	{
		UserChords.clear();
		const FString Aside = FString::FromUtf8(UserChordsFile::KeepAside(NativePath));
		const FString Fate =
			Aside.IsEmpty() ? FString(TEXT("it could not be kept aside")) : TEXT("kept as '") + Aside + TEXT("'");
		HOST_LOG(LogSlate, Warning, TEXT("Cannot read key chords from '%s': %s; %s, default chords are used"), *Path,
			*Problem, *Fate);
	}
	for (const FContextEntry& Entry : Entries)
	{
		for (const TSharedRef<FUICommandInfo>& Command : Entry.Commands)
		{
			ApplyUserChords(*Command);
		}
	}
}

void FInputBindingManager::ResetUserChords()
{
	UserChords.clear();
	SaveUserChords();
	for (const FContextEntry& Entry : Entries)
	{
		for (const TSharedRef<FUICommandInfo>& Command : Entry.Commands)
		{
			ApplyUserChords(*Command);
		}
	}
}

void FInputBindingManager::ApplyUserChords(FUICommandInfo& Command)
{
	for (const EMultipleKeyBindingIndex Index : BothChords)
	{
		const auto Changed = UserChords.find(KeyOf(Command, Index));
		StoreActiveChord(
			Command, Index, Changed != UserChords.end() ? Changed->second : Command.GetDefaultChord(Index));
	}
}

void FInputBindingManager::StoreActiveChord(
	FUICommandInfo& Command, EMultipleKeyBindingIndex Index, const FInputChord& NewChord)
{
	FInputChord& Active = Command.ActiveChords[static_cast<std::size_t>(Index)];
	if (Active != NewChord)
	{
		Active = NewChord;
		ActiveChordChanged.Broadcast(Command);
	}
}

void FInputBindingManager::ChangeActiveChord(
	FUICommandInfo& Command, EMultipleKeyBindingIndex Index, const FInputChord& NewChord)
{
	// A copy: the chord may be the one that is about to change.
	const FInputChord Wanted = NewChord;
	if (Wanted == Command.GetActiveChord(Index))
	{
		return;
	}
	if (Wanted == Command.GetDefaultChord(Index))
	{
		UserChords.erase(KeyOf(Command, Index));
	}
	else
	{
		UserChords[KeyOf(Command, Index)] = Wanted;
	}
	SaveUserChords();
	StoreActiveChord(Command, Index, Wanted);
}

void FInputBindingManager::SaveUserChords()
{
	if (UserChordsPath.IsEmpty())
	{
		return;
	}
	if (const std::optional<FString> Problem = UserChordsFile::Write(UserChordsPath.ToUtf8(), UserChords))
	{
		HOST_LOG(LogSlate, Warning, TEXT("Cannot save key chords to '%s': %s"), *UserChordsPath, **Problem);
	}
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Slate/InputBindingManager.h"
#include "Slate/UICommandInfo.h"

/// A command set with one shared instance: `class FMyCommands : public TCommands<FMyCommands>`, whose default
/// constructor names the context and whose RegisterCommands makes the commands.
///
/// The binding manager keeps the instance alive from Register to Unregister; only a weak reference to it stands here,
/// in the library that defines the set. So a set of a module that is unloaded leaves nothing in the host, and one whose
/// context was removed is no longer in use. A set that another library registered under the same name is adopted.
template <typename TCommandSet>
class TCommands : public FBindingContext
{
public:
	/// Registers the set unless its instance is in use. A context of that name in the binding manager becomes the
	/// instance as it is; otherwise the commands are made and CommandsChanged is sent.
	static void Register()
	{
		if (Instance.IsValid())
		{
			return;
		}
		const TSharedRef<TCommandSet> NewInstance = MakeShared<TCommandSet>();
		FInputBindingManager& Manager = FInputBindingManager::Get();
		if (const TSharedPtr<FBindingContext> Existing = Manager.GetContextByName(NewInstance->GetContextName()))
		{
			Instance = StaticCastSharedPtr<TCommandSet>(Existing);
			return;
		}
		Instance = NewInstance;
		Manager.AddContext(NewInstance);
		NewInstance->RegisterCommands();
		CommandsChanged.Broadcast(*NewInstance);
	}

	/// Removes the set's context, sends CommandsChanged and releases the instance. Nothing without an instance.
	static void Unregister()
	{
		const TSharedPtr<TCommandSet> Leaving = Instance.Pin();
		if (!Leaving.IsValid())
		{
			return;
		}
		FInputBindingManager::Get().RemoveContextByName(Leaving->GetContextName());
		CommandsChanged.Broadcast(*Leaving);
		Instance.Reset();
	}

	static bool IsRegistered() { return Instance.IsValid(); }

	/// The shared instance; none is an assertion failure.
	static const TCommandSet& Get()
	{
		const TSharedPtr<TCommandSet> Present = Instance.Pin();
		check(Present.IsValid());
		return *Present;
	}

	/// The shared instance; empty where there is none.
	static TSharedPtr<const TCommandSet> GetPtr() { return Instance.Pin(); }

	/// Makes the commands of the set.
	virtual void RegisterCommands() = 0;

protected:
	using FBindingContext::FBindingContext;

private:
	inline static TWeakPtr<TCommandSet> Instance;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "Core/Name.h"
#include "Core/SharedPointer.h"
#include "Core/Text.h"

/// A named group of commands whose chords belong together.
class FBindingContext : public TSharedFromThis<FBindingContext>
{
public:
	/// `InContextParent` is NAME_None for a context without a parent.
	FBindingContext(FName InContextName, const FText& InContextDesc, FName InContextParent, FName InStyleSetName);
	virtual ~FBindingContext();
	FBindingContext(const FBindingContext&) = delete;
	FBindingContext& operator=(const FBindingContext&) = delete;

	FName GetContextName() const { return ContextName; }
	const FText& GetContextDesc() const { return ContextDesc; }
	FName GetContextParent() const { return ContextParent; }
	FName GetStyleSetName() const { return StyleSetName; }

	/// Sent after the commands of a context were registered, and after they were removed.
	static TMulticastDelegate<void(const FBindingContext&)> CommandsChanged;

private:
	FName ContextName;
	FText ContextDesc;
	FName ContextParent;
	FName StyleSetName;
};

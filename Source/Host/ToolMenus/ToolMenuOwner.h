// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Name.h"

/// Who put something into the menus, known by an address or by a name, so that all of it can be taken out at once.
class FToolMenuOwner
{
public:
	/// Nobody in particular.
	FToolMenuOwner() = default;
	FToolMenuOwner(const void* InPointer)
		: Pointer(InPointer)
	{
	}
	FToolMenuOwner(FName InName)
		: Name(InName)
	{
	}
	FToolMenuOwner(const TCHAR* InName)
		: Name(InName)
	{
	}

	bool IsSet() const { return Pointer != nullptr || !Name.IsNone(); }

	bool operator==(const FToolMenuOwner&) const = default;

private:
	const void* Pointer = nullptr;
	FName Name;
};

/// Makes someone the owner of what is added to the menus while it lives.
class FToolMenuOwnerScoped
{
public:
	explicit FToolMenuOwnerScoped(const FToolMenuOwner& InOwner);
	~FToolMenuOwnerScoped();
	FToolMenuOwnerScoped(const FToolMenuOwnerScoped&) = delete;
	FToolMenuOwnerScoped& operator=(const FToolMenuOwnerScoped&) = delete;

private:
	FToolMenuOwner Owner;
};

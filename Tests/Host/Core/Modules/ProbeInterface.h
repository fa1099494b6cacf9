// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Delegate.h"
#include "Core/Log.h"
#include "Core/ModuleManager.h"
#include "Core/Text.h"

/// What the tests ask of a module that they have loaded.
class IProbe : public IModuleInterface
{
public:
	/// How often this was called since the library was loaded.
	virtual int32 CountCall() = 0;

	/// A name, a text and a formatted text from literals in the library's own memory.
	virtual FName MakeName() const = 0;
	virtual FText MakeText() const = 0;

	/// Binds itself to an event of the host until it is stopped. Each call of the event is counted.
	virtual void Join(FSimpleMulticastDelegate& Event, int32& NumCalls) = 0;
};

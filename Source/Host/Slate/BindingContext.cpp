// SPDX-License-Identifier: MIT
#include "Slate/BindingContext.h"

TMulticastDelegate<void(const FBindingContext&)> FBindingContext::CommandsChanged;

FBindingContext::FBindingContext(
	FName InContextName, const FText& InContextDesc, FName InContextParent, FName InStyleSetName)
	: ContextName(InContextName)
	, ContextDesc(InContextDesc)
	, ContextParent(InContextParent)
	, StyleSetName(InStyleSetName)
{
}

FBindingContext::~FBindingContext() = default;

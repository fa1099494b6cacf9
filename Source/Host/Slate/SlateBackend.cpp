// SPDX-License-Identifier: MIT
#include "Slate/SlateBackend.h"

namespace
{
class FRestingCursor : public ICursor
{
public:
	FScreenPosition GetPosition() const override { return {}; }
};
}

ISlateBackend::~ISlateBackend() = default;

void ISlateBackend::OnFocusChanged(const TSharedPtr<SWidget>&) {}

TSharedRef<ICursor> ISlateBackend::GetCursor()
{
	return MakeShared<FRestingCursor>();
}

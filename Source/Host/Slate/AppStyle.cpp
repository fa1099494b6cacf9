// SPDX-License-Identifier: MIT
#include "Slate/AppStyle.h"

FName FAppStyle::GetAppStyleSetName()
{
	return TEXT("AppStyle");
}

// SPDX-License-Identifier: MIT
#include "ViewportColours.h"

FViewportColours FViewportColours::Of(bool bDark)
{
	if (bDark)
	{
		return {QColor(0xff3d4248), QColor(0xff26282b), QColor(0xff9aa0a6), QColor(0xffe0555c), QColor(0xff7cb83f),
			QColor(0xff5a94e8), QColor(0xffff9d2e), QColor(0xffffe9c4), QColor(0xff7fb4f5)};
	}
	return {QColor(0xffc3cbd4), QColor(0xffe6e8ea), QColor(0xff5d646c), QColor(0xffcc3640), QColor(0xff4f8f1e),
		QColor(0xff2b66c4), QColor(0xffe86a00), QColor(0xfffff2da), QColor(0xff2a6fc4)};
}

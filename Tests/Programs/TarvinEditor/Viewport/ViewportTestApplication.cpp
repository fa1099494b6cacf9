// SPDX-License-Identifier: MIT
#include "ViewportTestApplication.h"

#include "SlateQt/QtPrelude.h"

#include <QApplication>

void EnsureViewportTestApplication()
{
	// Not destroyed at the end: other statics still refer to Qt then.
	static QApplication* const Application = []
	{
		if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
		{
			qputenv("QT_QPA_PLATFORM", "offscreen");
		}
		static int Count = 1;
		static char Name[] = "EditorViewportTests";
		static char* Arguments[] = {Name, nullptr};
		return new QApplication(Count, Arguments);
	}();
	Q_ASSERT(Application != nullptr);
}

// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Log.h"
#include "SlateQt/QtPrelude.h"

#include <QPlainTextEdit>

/// The last lines of the log, warnings and errors in colour.
class FLogPanel : public QPlainTextEdit, public ILogSink
{
public:
	explicit FLogPanel(QWidget* Parent = nullptr);
	~FLogPanel() override;

	void Write(const FLogRecord& Record) override;

	/// Shows the lines that came since the last turn of the event loop.
	void Flush();

private:
	QString Pending;
	bool bFlushPending = false;
};

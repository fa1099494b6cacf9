// SPDX-License-Identifier: MIT
#include "LogPanel.h"

#include "SlateQt/QtText.h"
#include "SlateQt/QtTheme.h"

#include <QTimer>

namespace
{
constexpr int MostLines = 2000;

const char* ColourOf(ELogVerbosity Verbosity)
{
	if (Verbosity <= ELogVerbosity::Error)
	{
		return IsQtThemeDark() ? "#ff8a80" : "#b3261e";
	}
	if (Verbosity == ELogVerbosity::Warning)
	{
		return IsQtThemeDark() ? "#ffcc66" : "#8a5a00";
	}
	return nullptr;
}
} // namespace

FLogPanel::FLogPanel(QWidget* Parent)
	: QPlainTextEdit(Parent)
{
	setObjectName(QStringLiteral("Log"));
	setReadOnly(true);
	setMaximumBlockCount(MostLines);
	setLineWrapMode(QPlainTextEdit::NoWrap);
	FLog::AddSink(this);
}

FLogPanel::~FLogPanel()
{
	FLog::RemoveSink(this);
}

void FLogPanel::Write(const FLogRecord& Record)
{
	if (Record.Verbosity > ELogVerbosity::Log)
	{
		return;
	}
	QString Line =
		ToQString(Record.Category.ToString() + TEXT(": ") + EscapeControlCharacters(Record.Message)).toHtmlEscaped();
	if (const char* const Colour = ColourOf(Record.Verbosity))
	{
		Line = QStringLiteral("<span style=\"color:%1\">%2</span>").arg(QLatin1String(Colour), Line);
	}
	Pending += QStringLiteral("<div>") + Line + QStringLiteral("</div>");
	if (!bFlushPending)
	{
		bFlushPending = true;
		QTimer::singleShot(0, this, [this] { Flush(); });
	}
}

void FLogPanel::Flush()
{
	bFlushPending = false;
	if (!Pending.isEmpty())
	{
		appendHtml(Pending);
		Pending.clear();
	}
}

// SPDX-License-Identifier: MIT
#include "SlateQt/QtText.h"

#include <QTextDocument>

QString ToQString(const FString& Text)
{
	return QString::fromWCharArray(*Text, static_cast<qsizetype>(Text.Len()));
}

QString ToQString(const FText& Text)
{
	return ToQString(Text.ToString());
}

FString ToFString(const QString& Text)
{
	return FString::FromUtf8(Text.toStdString());
}

FText ToFText(const QString& Text)
{
	return FText::FromString(ToFString(Text));
}

QString ToLabel(const FText& Text)
{
	return ToQString(Text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QString ToMenuLabel(const FText& Text)
{
	return ToLabel(Text).replace(QLatin1Char('\t'), QLatin1Char(' '));
}

QString ToWindowTitle(const FText& Text)
{
	return ToQString(Text).replace(QLatin1String("[*]"), QLatin1String("[*][*]"));
}

QString ToToolTip(const FText& Text)
{
	const QString Plain = ToQString(Text);
	return Plain.isEmpty() ? Plain : Qt::convertFromPlainText(Plain, Qt::WhiteSpaceNormal);
}

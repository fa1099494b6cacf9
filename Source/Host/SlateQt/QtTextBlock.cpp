// SPDX-License-Identifier: MIT
#include "SlateQt/QtTextBlock.h"

#include <algorithm>

FQtTextBlock::FQtTextBlock(QWidget* Parent)
	: QLabel(Parent)
{
	// A mesh may be called "<b>": texts are never mark-up.
	setTextFormat(Qt::PlainText);
	setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

void FQtTextBlock::SetWrapWidth(int InWrapWidth)
{
	WrapWidth = std::max(InWrapWidth, 1);
	updateGeometry();
}

QSize FQtTextBlock::sizeHint() const
{
	if (!wordWrap())
	{
		return QLabel::sizeHint();
	}
	// One more than measured: the label's own layout rounds differently, and must not break a line that fits.
	const int Longest = fontMetrics().size(0, text()).width() + 2 * margin() + 1;
	const int Width = std::min(Longest, WrapWidth);
	return {Width, heightForWidth(Width)};
}

QSize FQtTextBlock::minimumSizeHint() const
{
	return wordWrap() ? QSize(std::min(sizeHint().width(), 120), fontMetrics().height()) : QLabel::minimumSizeHint();
}

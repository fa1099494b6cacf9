// SPDX-License-Identifier: MIT
#pragma once

#include "SlateQt/QtPrelude.h"

#include <QLabel>

/// A label that is as wide as its longest line, and breaks lines beyond a width.
class FQtTextBlock : public QLabel
{
public:
	explicit FQtTextBlock(QWidget* Parent = nullptr);

	/// The width in device-independent pixels beyond which lines are broken; applies while word wrap is on.
	void SetWrapWidth(int InWrapWidth);

	QSize sizeHint() const override;
	QSize minimumSizeHint() const override;

private:
	// About 80 characters: what reads well where nobody says otherwise.
	int WrapWidth = 560;
};

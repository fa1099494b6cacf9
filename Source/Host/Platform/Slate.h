// SPDX-License-Identifier: MIT
#pragma once

// The widget toolkit: widgets and dialogs, the application and its input, commands and chords, notifications.
#include "Slate/AppStyle.h"
#include "Slate/BindingContext.h"
#include "Slate/Box.h"
#include "Slate/BoxPanel.h"
#include "Slate/Button.h"
#include "Slate/CheckBox.h"
#include "Slate/Commands.h"
#include "Slate/CustomDialog.h"
#include "Slate/EditableText.h"
#include "Slate/InputBindingManager.h"
#include "Slate/InputChord.h"
#include "Slate/InputEvents.h"
#include "Slate/InputProcessor.h"
#include "Slate/Key.h"
#include "Slate/SlateApplication.h"
#include "Slate/SlateNotificationManager.h"
#include "Slate/TextBlock.h"
#include "Slate/UIAction.h"
#include "Slate/UICommandInfo.h"
#include "Slate/UICommandList.h"

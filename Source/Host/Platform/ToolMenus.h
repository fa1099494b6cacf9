// SPDX-License-Identifier: MIT
#pragma once

// The menu system: menus, sections, entries and their owners.
#include "ToolMenus/ToolMenu.h"
#include "ToolMenus/ToolMenuEntry.h"
#include "ToolMenus/ToolMenuOwner.h"
#include "ToolMenus/ToolMenuSection.h"
#include "ToolMenus/ToolMenus.h"

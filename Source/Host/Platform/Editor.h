// SPDX-License-Identifier: MIT
#pragma once

// The editor: selection, transactions, asset tools, slow tasks and the level editor's actions.
// IWYU pragma: begin_exports
#include "Editor/AssetTools.h"
#include "Editor/EditorEngine.h"
#include "Editor/LevelEditor.h"
#include "Editor/ScopedTransaction.h"
#include "Editor/Selection.h"
#include "Editor/TransBuffer.h"
#include "Engine/SlowTask.h"
// IWYU pragma: end_exports

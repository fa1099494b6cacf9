// SPDX-License-Identifier: MIT
#pragma once

/// Lets headers of Qt and of the host stand in one source, in any order: a header of Qt declares functions called
/// `check`, which the host's macro would replace. Included before the first header of Qt.
#pragma push_macro("check")
#undef check
#include <QMetaType>
#pragma pop_macro("check")

// SPDX-License-Identifier: MIT
#pragma once

// Objects: classes, references, packages, iteration and duplication.
// IWYU pragma: begin_exports
#include "CoreUObject/Object.h"
#include "CoreUObject/ObjectIterator.h"
#include "CoreUObject/ObjectPtr.h"
#include "CoreUObject/ObjectSnapshot.h"
#include "CoreUObject/Package.h"
// IWYU pragma: end_exports

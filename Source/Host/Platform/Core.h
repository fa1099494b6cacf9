// SPDX-License-Identifier: MIT
#pragma once

// What a plug-in module sees of the host's core.
#include "Core/Array.h"
#include "Core/Box.h"
#include "Core/Delegate.h"
#include "Core/Function.h"
#include "Core/Log.h"
#include "Core/Map.h"
#include "Core/MathUtility.h"
#include "Core/Matrix.h"
#include "Core/ModuleManager.h"
#include "Core/Name.h"
#include "Core/Quat.h"
#include "Core/Rotator.h"
#include "Core/Set.h"
#include "Core/SharedPointer.h"
#include "Core/String.h"
#include "Core/Text.h"
#include "Core/Transform.h"
#include "Core/Types.h"
#include "Core/Vector.h"

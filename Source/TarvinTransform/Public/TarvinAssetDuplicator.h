// SPDX-License-Identifier: MIT
#pragma once

#include "TarvinTransformAPI.h"

class UStaticMesh;

/// Copies assets that must not change themselves.
class TARVINTRANSFORM_API FTarvinAssetDuplicator
{
public:
	/// Copies the asset into a new package beside it, named after it with "_Baked" and, if need be, a number. An asset
	/// in no package of its own is copied into the transient package. Returns null for a null source and when the copy
	/// is refused or of another class.
	static UStaticMesh* Duplicate(UStaticMesh* Source);
};

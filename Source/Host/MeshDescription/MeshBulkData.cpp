// SPDX-License-Identifier: MIT
#include "MeshDescription/MeshBulkData.h"

#include <utility>

FDescriptionBulkData::FDescriptionBulkData(FMeshDescription&& InDescription)
	: Description(std::move(InDescription))
{
}

TSharedPtr<FMeshDescription> FDescriptionBulkData::Decode() const
{
	return MakeShared<FMeshDescription>(Description);
}

bool FDescriptionBulkData::IsEmpty() const
{
	return Description.IsEmpty();
}

int32 FDescriptionBulkData::NumVertices() const
{
	return Description.NumVertices();
}

uint64 FDescriptionBulkData::MemoryBytes() const
{
	return Description.MemoryBytes();
}

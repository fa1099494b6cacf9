// SPDX-License-Identifier: MIT
#pragma once

#include "Core/SharedPointer.h"
#include "MeshDescription/MeshDescription.h"

/// The stored source geometry of one level of detail: immutable, and shared by all who need it (the asset, the undo
/// buffer, a duplicate) without a copy. Held as `TSharedPtr<const FMeshBulkData>`.
class FMeshBulkData
{
public:
	virtual ~FMeshBulkData() = default;

	/// A new, editable description of the geometry; null when the data cannot be read.
	virtual TSharedPtr<FMeshDescription> Decode() const = 0;

	/// True when there is no vertex.
	virtual bool IsEmpty() const = 0;

	virtual int32 NumVertices() const = 0;

	/// Bytes of memory that the data occupies of its own; parts of a mapped file do not count.
	virtual uint64 MemoryBytes() const = 0;

	/// The description itself, without decoding or copying, where the data is one; else null.
	virtual const FMeshDescription* GetDescription() const { return nullptr; }

protected:
	FMeshBulkData() = default;
	FMeshBulkData(const FMeshBulkData&) = delete;
	FMeshBulkData& operator=(const FMeshBulkData&) = delete;
};

/// Bulk data that is a description in memory.
class FDescriptionBulkData final : public FMeshBulkData
{
public:
	/// Takes the description over without copying it.
	explicit FDescriptionBulkData(FMeshDescription&& InDescription);

	TSharedPtr<FMeshDescription> Decode() const override;
	bool IsEmpty() const override;
	int32 NumVertices() const override;
	uint64 MemoryBytes() const override;
	const FMeshDescription* GetDescription() const override { return &Description; }

private:
	const FMeshDescription Description;
};

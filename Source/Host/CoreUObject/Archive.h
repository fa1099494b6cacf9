// SPDX-License-Identifier: MIT
#pragma once

#include "Core/Array.h"
#include "Core/Box.h"
#include "Core/Name.h"
#include "Core/Quat.h"
#include "Core/Rotator.h"
#include "Core/SharedPointer.h"
#include "Core/String.h"
#include "Core/Transform.h"
#include "Core/Vector.h"
#include "CoreUObject/ObjectPtr.h"

#include <memory>
#include <type_traits>

/// What an archive does with the fields that `Serialize` shows it.
enum class EArchiveMode : uint8
{
	Saving,               ///< reads the fields
	Loading,              ///< writes the fields
	CollectingReferences, ///< looks at the object pointers only
};

/// Goes over the state of an object: one `Serialize` per class serves undo, duplication and reference collection.
///
/// Large immutable data is shown by shared pointer, with the bytes of memory that it takes, and is shared, never
/// copied.
class FArchive
{
public:
	explicit FArchive(EArchiveMode InMode)
		: Mode(InMode)
	{
	}
	virtual ~FArchive();

	bool IsSaving() const { return Mode == EArchiveMode::Saving; }
	bool IsLoading() const { return Mode == EArchiveMode::Loading; }
	bool IsCollectingReferences() const { return Mode == EArchiveMode::CollectingReferences; }

	virtual void SerializeBytes(void* Data, uint64 NumBytes) = 0;
	virtual void SerializeObject(FObjectHandle& Handle) = 0;
	virtual void SerializeShared(std::shared_ptr<const void>& Data, uint64 NumBytes) = 0;

private:
	EArchiveMode Mode;
};

template <class T>
requires(std::is_arithmetic_v<T> || std::is_enum_v<T>) FArchive& operator<<(FArchive& Archive, T& Value)
{
	Archive.SerializeBytes(&Value, sizeof(T));
	return Archive;
}

FArchive& operator<<(FArchive& Archive, FName& Value);
FArchive& operator<<(FArchive& Archive, FString& Value);
FArchive& operator<<(FArchive& Archive, FVector& Value);
FArchive& operator<<(FArchive& Archive, FQuat& Value);
FArchive& operator<<(FArchive& Archive, FRotator& Value);
FArchive& operator<<(FArchive& Archive, FTransform& Value);
FArchive& operator<<(FArchive& Archive, FBox& Value);

template <class T>
FArchive& operator<<(FArchive& Archive, TObjectPtr<T>& Value)
{
	FObjectHandle Handle = Value.GetHandle();
	Archive.SerializeObject(Handle);
	if (Archive.IsLoading())
	{
		Value.SetHandle(Handle);
	}
	return Archive;
}

template <class T>
FArchive& operator<<(FArchive& Archive, TSharedPtr<const T>& Value)
{
	std::shared_ptr<const void> Data = Value.ToStd();
	Archive.SerializeShared(Data, Value.IsValid() ? Value->MemoryBytes() : 0);
	if (Archive.IsLoading())
	{
		Value = TSharedPtr<const T>(std::static_pointer_cast<const T>(Data));
	}
	return Archive;
}

template <class T>
FArchive& operator<<(FArchive& Archive, TArray<T>& Value)
{
	int32 Num = int32(Value.Num());
	Archive << Num;
	if (Archive.IsLoading())
	{
		Value.Reset();
		Value.SetNum(Num);
	}
	for (T& Element : Value)
	{
		Archive << Element;
	}
	return Archive;
}

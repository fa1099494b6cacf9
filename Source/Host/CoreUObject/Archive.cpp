// SPDX-License-Identifier: MIT
#include "CoreUObject/Archive.h"

#include <string>
#include <utility>

FArchive::~FArchive() = default;

FArchive& operator<<(FArchive& Archive, FName& Value)
{
	FString Text = Archive.IsLoading() ? FString() : Value.ToString();
	Archive << Text;
	if (Archive.IsLoading())
	{
		Value = FName(Text);
	}
	return Archive;
}

FArchive& operator<<(FArchive& Archive, FString& Value)
{
	int32 Length = Value.Len();
	Archive << Length;
	std::wstring Characters(*Value, uint32(Archive.IsLoading() ? 0 : Length));
	Characters.resize(uint32(Length));
	Archive.SerializeBytes(Characters.data(), sizeof(wchar_t) * uint32(Length));
	if (Archive.IsLoading())
	{
		Value = FString(std::move(Characters));
	}
	return Archive;
}

FArchive& operator<<(FArchive& Archive, FVector& Value)
{
	return Archive << Value.X << Value.Y << Value.Z;
}

FArchive& operator<<(FArchive& Archive, FQuat& Value)
{
	return Archive << Value.X << Value.Y << Value.Z << Value.W;
}

FArchive& operator<<(FArchive& Archive, FRotator& Value)
{
	return Archive << Value.Pitch << Value.Yaw << Value.Roll;
}

FArchive& operator<<(FArchive& Archive, FTransform& Value)
{
	FQuat Rotation = Value.GetRotation();
	FVector Translation = Value.GetTranslation();
	FVector Scale = Value.GetScale3D();
	Archive << Rotation << Translation << Scale;
	if (Archive.IsLoading())
	{
		Value = FTransform(Rotation, Translation, Scale);
	}
	return Archive;
}

FArchive& operator<<(FArchive& Archive, FBox& Value)
{
	return Archive << Value.Min << Value.Max << Value.IsValid;
}

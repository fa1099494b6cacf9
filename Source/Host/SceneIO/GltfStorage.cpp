// SPDX-License-Identifier: MIT
#include "SceneIO/GltfStorage.h"

std::uint32_t ComponentSize(EGltfComponent Component)
{
	switch (Component)
	{
	case EGltfComponent::Byte:
	case EGltfComponent::UnsignedByte:
		return 1;
	case EGltfComponent::Short:
	case EGltfComponent::UnsignedShort:
		return 2;
	case EGltfComponent::UnsignedInt:
	case EGltfComponent::Float:
		return 4;
	case EGltfComponent::Unknown:
		break;
	}
	return 0;
}

std::uint32_t ComponentCount(EGltfType Type)
{
	switch (Type)
	{
	case EGltfType::Scalar:
		return 1;
	case EGltfType::Vec2:
		return 2;
	case EGltfType::Vec3:
		return 3;
	case EGltfType::Vec4:
	case EGltfType::Mat2:
		return 4;
	case EGltfType::Mat3:
		return 9;
	case EGltfType::Mat4:
		return 16;
	case EGltfType::Unknown:
		break;
	}
	return 0;
}

std::uint32_t ElementSize(EGltfComponent Component, EGltfType Type)
{
	const std::uint32_t Size = ComponentSize(Component);
	// Columns of a matrix begin at multiples of four bytes.
	if (Size == 1 && Type == EGltfType::Mat2)
	{
		return 8;
	}
	if (Size == 1 && Type == EGltfType::Mat3)
	{
		return 12;
	}
	if (Size == 2 && Type == EGltfType::Mat3)
	{
		return 24;
	}
	return Size * ComponentCount(Type);
}

const char* TypeName(EGltfType Type)
{
	switch (Type)
	{
	case EGltfType::Scalar:
		return "SCALAR";
	case EGltfType::Vec2:
		return "VEC2";
	case EGltfType::Vec3:
		return "VEC3";
	case EGltfType::Vec4:
		return "VEC4";
	case EGltfType::Mat2:
		return "MAT2";
	case EGltfType::Mat3:
		return "MAT3";
	case EGltfType::Mat4:
		return "MAT4";
	case EGltfType::Unknown:
		break;
	}
	return "unknown";
}

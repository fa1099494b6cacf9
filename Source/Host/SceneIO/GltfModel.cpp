// SPDX-License-Identifier: MIT
#include "SceneIO/GltfModel.h"

#include <algorithm>

const FGltfAttribute* FGltfPrimitive::FindAttribute(std::string_view Semantic) const
{
	const auto Found = std::find_if(Attributes.begin(), Attributes.end(),
		[Semantic](const FGltfAttribute& Attribute) { return Attribute.Semantic == Semantic; });
	return Found == Attributes.end() ? nullptr : &*Found;
}

bool FGltfMesh::IsMorphed() const
{
	return std::any_of(Primitives.begin(), Primitives.end(),
		[](const FGltfPrimitive& Primitive) { return !Primitive.Targets.empty(); });
}

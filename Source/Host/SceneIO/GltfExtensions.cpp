// SPDX-License-Identifier: MIT
#include "SceneIO/GltfExtensions.h"

#include <algorithm>
#include <array>

namespace
{
/// Read by this layer.
constexpr std::array<std::string_view, 13> Read = {
	"EXT_mesh_gpu_instancing",
	"EXT_meshopt_compression",
	"KHR_animation_pointer",
	"KHR_draco_mesh_compression",
	"KHR_implicit_shapes",
	"KHR_lights_punctual",
	"KHR_mesh_quantization",
	"KHR_meshopt_compression",
	"KHR_node_visibility",
	"KHR_physics_rigid_bodies",
	"MSFT_lod",
	"TARVIN_component",
	"TARVIN_static_mesh",
};

/// Families that say how surfaces and light look, or describe the file as a whole.
constexpr std::array<std::string_view, 7> LookPrefixes = {
	"KHR_materials_",
	"KHR_texture_",
	"EXT_materials_",
	"EXT_texture_",
	"MSFT_texture_",
	"EXT_lights_",
	"KHR_xmp",
};

/// Not read, and free of references to accessors and buffer views.
constexpr std::array<std::string_view, 3> WithoutReferences = {
	"KHR_interactivity",
	"KHR_node_selectability",
	"KHR_node_hoverability",
};

template <std::size_t N>
bool Contains(const std::array<std::string_view, N>& List, std::string_view Name)
{
	return std::find(List.begin(), List.end(), Name) != List.end();
}

bool IsLook(std::string_view Name)
{
	return std::any_of(
		LookPrefixes.begin(), LookPrefixes.end(), [Name](std::string_view Prefix) { return Name.starts_with(Prefix); });
}
}

bool GltfExtensions::CanBeRequired(std::string_view Name)
{
	return Contains(Read, Name) || IsLook(Name);
}

bool GltfExtensions::HasKnownReferences(std::string_view Name)
{
	return Contains(Read, Name) || Contains(WithoutReferences, Name) || IsLook(Name);
}

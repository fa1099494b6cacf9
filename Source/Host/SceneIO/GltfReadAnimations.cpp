// SPDX-License-Identifier: MIT
#include "SceneIO/GltfReader.h"

namespace
{
bool ReadSamplers(FGltfReader& Reader, FGltfAnimation& Animation, std::size_t& OutCount)
{
	std::vector<FJsonIndex> Samplers;
	if (!Reader.Objects(Animation.Json, "samplers", Samplers))
	{
		return false;
	}
	OutCount = Samplers.size();
	for (const FJsonIndex Object : Samplers)
	{
		for (const std::string_view Key : {"input", "output"})
		{
			FGltfIndex Accessor = NoIndex;
			if (!Reader.Required(Object, Key) ||
				!Reader.Index(Object, Key, Reader.Model.Accessors.size(), "accessors", Accessor))
			{
				return false;
			}
			Animation.SamplerAccessors.push_back(Accessor);
		}
	}
	return true;
}

bool ReadChannel(FGltfReader& Reader, FJsonIndex Object, std::size_t SamplerCount, FGltfChannel& Channel)
{
	Channel.Json = Object;
	FJsonIndex Target = NoJson;
	FJsonIndex Pointer = NoJson;
	return Reader.Required(Object, "target") && Reader.Required(Object, "sampler") &&
		   Reader.ObjectMember(Object, "target", Target) &&
		   Reader.Index(Object, "sampler", SamplerCount, "samplers in this animation", Channel.Sampler) &&
		   Reader.Index(Target, "node", Reader.Model.Nodes.size(), "nodes", Channel.Node) &&
		   Reader.Required(Target, "path") && Reader.String(Target, "path", Channel.Path) &&
		   Reader.Extension(Target, "KHR_animation_pointer", Pointer) &&
		   (Pointer == NoJson ||
			   (Reader.Required(Pointer, "pointer") && Reader.String(Pointer, "pointer", Channel.Pointer)));
}

/// Lists whose records are shown and counted, and otherwise kept as they are.
bool ReadNamedList(FGltfReader& Reader, FJsonIndex Owner, std::string_view Key, std::vector<FGltfNamed>& Out)
{
	std::vector<FJsonIndex> Objects;
	if (!Reader.Objects(Owner, Key, Objects))
	{
		return false;
	}
	for (const FJsonIndex Object : Objects)
	{
		FGltfNamed& Named = Out.emplace_back();
		Named.Json = Object;
		Named.Name = Reader.Name(Object);
		Named.Type = Reader.Json.String(Reader.Json.Find(Object, "type")).value_or(std::string());
	}
	return true;
}
}

bool ReadGltfAnimations(FGltfReader& Reader)
{
	std::vector<FJsonIndex> Animations;
	if (!Reader.Objects(Reader.Json.Root(), "animations", Animations))
	{
		return false;
	}
	for (const FJsonIndex Object : Animations)
	{
		FGltfAnimation& Animation = Reader.Model.Animations.emplace_back();
		Animation.Json = Object;
		Animation.Name = Reader.Name(Object);
		std::size_t SamplerCount = 0;
		std::vector<FJsonIndex> Channels;
		if (!ReadSamplers(Reader, Animation, SamplerCount) || !Reader.Objects(Object, "channels", Channels))
		{
			return false;
		}
		for (const FJsonIndex Channel : Channels)
		{
			if (!ReadChannel(Reader, Channel, SamplerCount, Animation.Channels.emplace_back()))
			{
				return false;
			}
		}
	}
	return true;
}

bool ReadGltfNamed(FGltfReader& Reader)
{
	const FJsonIndex Root = Reader.Json.Root();
	FJsonIndex Lights = NoJson;
	std::vector<FJsonIndex> Images;
	if (!ReadNamedList(Reader, Root, "cameras", Reader.Model.Cameras) ||
		!ReadNamedList(Reader, Root, "materials", Reader.Model.Materials) ||
		!Reader.Extension(Root, "KHR_lights_punctual", Lights) ||
		!ReadNamedList(Reader, Lights, "lights", Reader.Model.Lights) || !Reader.Objects(Root, "images", Images))
	{
		return false;
	}
	for (const FJsonIndex Object : Images)
	{
		FGltfImage& Image = Reader.Model.Images.emplace_back();
		Image.Json = Object;
		if (!Reader.Index(Object, "bufferView", Reader.Model.BufferViews.size(), "buffer views", Image.View))
		{
			return false;
		}
	}
	return true;
}

// SPDX-License-Identifier: MIT
#pragma once

#include "SceneIO/JsonText.h"
#include "SmallScenes.h"

#include <cstdint>
#include <random>

/// Damages scenes at random: the same damage for the same seed on every machine.
class FSceneDamage
{
public:
	explicit FSceneDamage(std::uint64_t Seed)
		: Random(Seed)
	{
	}

	/// Changes one to three things in the scene's text or its buffer: numbers, members, kinds of values, names, bytes.
	/// The container around them stays whole.
	void DamageParts(FSmallScene& Scene);

	/// Changes one to three things in a file: bits, bytes, regions, its end.
	void DamageBytes(std::string& File);

private:
	std::size_t Below(std::size_t Limit) { return static_cast<std::size_t>(Random() % Limit); }
	void DamageOnce(std::string& Bytes);
	void DamageNumbers(std::string& Buffer);
	std::string DamagedText(const std::string& Text);
	/// Doubles or removes a member of the value, or of the next one that has members.
	std::string DamagedMember(const FJsonText& Json, FJsonIndex From);

	std::mt19937_64 Random;
};

// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Core.h"
#include "Platform/Engine.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

/// What contract tests need of a host beyond the platform headers: something to stand on. Another host supplies
/// ContractHost.cpp; the tests themselves stay as they are.
class FContractTest : public testing::Test
{
protected:
	/// Starts an editor with an empty world, and a widget application without a user.
	FContractTest();
	~FContractTest() override;

	/// An actor of the edited world with one component, its root, that shows the mesh, attached to `Parent` if one is
	/// given.
	static UStaticMeshComponent* MakeComponent(UStaticMesh* Mesh, USceneComponent* Parent = nullptr);

	/// A static mesh without any source, an asset of the package "/Contract/<Name>".
	static UStaticMesh* MakeEmptyMesh(const TCHAR* Name);

	/// The same with the corner (0, 0, 0), (3, 0, 0), (0, 5, 0), seen from above, as its level 0.
	static UStaticMesh* MakeMesh(const TCHAR* Name);

	/// Presses Control and the key, as a user would. Returns whether anybody took it.
	static bool PressWithControl(const TCHAR* KeyName);

	/// The messages of the checks that failed while `Work` ran; the first one ends it.
	static std::vector<std::string> FailedChecks(const std::function<void()>& Work);
};

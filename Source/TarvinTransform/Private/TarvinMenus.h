// SPDX-License-Identifier: MIT
#pragma once

/// The module's place in the actor context menu.
namespace TarvinMenus
{
/// Adds the section with "Bake Transform" and the "Set Pivot" submenu to the actor context menu, owned by the running
/// module.
void RegisterMenus();
} // namespace TarvinMenus

# SPDX-License-Identifier: MIT
# Target: hwy::hwy. A library that uses foreach_target adds its own folder to its private include folders.
find_package(hwy CONFIG REQUIRED)

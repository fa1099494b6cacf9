# SPDX-License-Identifier: MIT
# Target: draco::draco
find_package(draco CONFIG REQUIRED)

# SPDX-License-Identifier: MIT
# Target: rapidcheck
find_package(rapidcheck CONFIG REQUIRED)

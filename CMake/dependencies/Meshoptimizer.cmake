# SPDX-License-Identifier: MIT
# Target: meshoptimizer::meshoptimizer
find_package(meshoptimizer CONFIG REQUIRED)

# SPDX-License-Identifier: MIT
# Target: CLI11::CLI11
find_package(CLI11 CONFIG REQUIRED)

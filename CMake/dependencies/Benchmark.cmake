# SPDX-License-Identifier: MIT
# Target: benchmark::benchmark
find_package(benchmark CONFIG REQUIRED)

# SPDX-License-Identifier: MIT
# Finds every third-party package once, so that its targets are seen by all folders.
# One small file each; the Debian packages stand in Scripts/packages.txt, the reasons in Docs/dependencies.md.

find_package(Threads REQUIRED)

foreach(Name Highway TBB Simdjson Draco Meshoptimizer Bullet ICU CLI11 Qt GoogleTest RapidCheck Benchmark)
	include("${CMAKE_CURRENT_LIST_DIR}/dependencies/${Name}.cmake")
endforeach()

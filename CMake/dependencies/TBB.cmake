# SPDX-License-Identifier: MIT
# Target: TBB::tbb
find_package(TBB CONFIG REQUIRED)

# SPDX-License-Identifier: MIT
# Targets: TBB::tbb, TBB::tbbmalloc_proxy
find_package(TBB CONFIG REQUIRED)

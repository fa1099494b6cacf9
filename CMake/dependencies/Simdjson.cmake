# SPDX-License-Identifier: MIT
# Target: simdjson::simdjson
find_package(simdjson CONFIG REQUIRED)

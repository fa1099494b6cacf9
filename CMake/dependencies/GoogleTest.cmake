# SPDX-License-Identifier: MIT
# Targets: GTest::gtest GTest::gmock GTest::gtest_main
find_package(GTest CONFIG REQUIRED)
include(GoogleTest)

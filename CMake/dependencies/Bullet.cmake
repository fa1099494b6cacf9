# SPDX-License-Identifier: MIT
# Target: PkgConfig::Bullet, in double precision. (BulletConfig.cmake would give the single precision build.)
find_package(PkgConfig REQUIRED)
pkg_check_modules(Bullet REQUIRED IMPORTED_TARGET GLOBAL bullet-float64)

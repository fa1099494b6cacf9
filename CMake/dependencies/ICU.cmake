# SPDX-License-Identifier: MIT
# Targets: ICU::uc ICU::i18n
find_package(ICU REQUIRED COMPONENTS uc i18n)

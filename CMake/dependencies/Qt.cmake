# SPDX-License-Identifier: MIT
# Targets: Qt6::Widgets Qt6::OpenGLWidgets Qt6::Test (the last for tests only)
find_package(Qt6 CONFIG REQUIRED COMPONENTS Widgets OpenGL OpenGLWidgets Test)

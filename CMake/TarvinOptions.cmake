# SPDX-License-Identifier: MIT
# How everything is compiled: language level, output folders, and the interface targets
# TarvinOptions (what the code means) and TarvinWarnings (what the compiler says about it).

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
	set(CMAKE_BUILD_TYPE Release CACHE STRING "Build type" FORCE)
endif()

find_program(TARVIN_CCACHE ccache)
if(TARVIN_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
	set(CMAKE_CXX_COMPILER_LAUNCHER "${TARVIN_CCACHE}")
endif()

# Programs and libraries keep one layout in the build tree and when installed: bin/ beside lib/tarvin/.
include(GNUInstallDirs)
set(TARVIN_LIBRARY_FOLDER lib/tarvin)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/${TARVIN_LIBRARY_FOLDER}")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/archive")
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

add_library(TarvinOptions INTERFACE)
target_compile_features(TarvinOptions INTERFACE cxx_std_20)
target_compile_options(TarvinOptions INTERFACE
	# The same bits on every processor: no silent fusing of a multiplication and an addition.
	-ffp-contract=off
	# A unique symbol would pin the plug-in module in memory after it was unloaded.
	$<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
target_compile_definitions(TarvinOptions INTERFACE $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)

if(TARVIN_SANITIZE)
	# A library may call back into another one whose function types have their own type information,
	# which the check of function types takes for a mismatch.
	target_compile_options(TarvinOptions INTERFACE
		-fsanitize=${TARVIN_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer
		$<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function>)
	target_link_options(TarvinOptions INTERFACE -fsanitize=${TARVIN_SANITIZE})
else()
	# A layer that uses what it does not link is an error. (The sanitizer run-time lives in the program only.)
	target_link_options(TarvinOptions INTERFACE -Wl,--no-undefined)
endif()

if(TARVIN_FUZZ)
	if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
		message(FATAL_ERROR "TARVIN_FUZZ needs Clang: use the preset fuzz")
	endif()
	# Counts which code an input reaches, in every library.
	target_compile_options(TarvinOptions INTERFACE -fsanitize=fuzzer-no-link)
endif()

add_library(TarvinWarnings INTERFACE)
target_compile_options(TarvinWarnings INTERFACE
	# Clang's -Wconversion brings -Wsign-conversion with it; both compilers are to say the same.
	-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
	$<$<BOOL:${TARVIN_WERROR}>:-Werror>)

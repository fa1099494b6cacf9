# SPDX-License-Identifier: MIT
# The kinds of target that the folders are made of. Sources are listed, never globbed.

set(TARVIN_HOST_INCLUDE "${PROJECT_SOURCE_DIR}/Source/Host")

# Added to what LSAN_OPTIONS already says. Colons separate options. What was suppressed is not printed: tests read what
# the programs that they start write.
if(TARVIN_SANITIZE)
	set(TARVIN_LEAK_PROPERTIES ENVIRONMENT_MODIFICATION
		"LSAN_OPTIONS=path_list_append:suppressions=${PROJECT_SOURCE_DIR}/CMake/LeakSuppressions.txt:print_suppressions=0")
endif()

# tarvin_add_folders(<folder>...): adds each listed folder that has a CMakeLists.txt.
function(tarvin_add_folders)
	foreach(Folder IN LISTS ARGN)
		if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${Folder}/CMakeLists.txt")
			add_subdirectory(${Folder})
		endif()
	endforeach()
endfunction()

# Reads SOURCES, LINKS and PRIVATE_LINKS into variables of the caller; anything else is an error.
macro(_tarvin_arguments Name)
	cmake_parse_arguments(Arg "" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
	if(Arg_UNPARSED_ARGUMENTS OR Arg_KEYWORDS_MISSING_VALUES)
		message(FATAL_ERROR "${Name}: not understood: ${Arg_UNPARSED_ARGUMENTS} ${Arg_KEYWORDS_MISSING_VALUES}")
	endif()
	if(NOT Arg_SOURCES)
		message(FATAL_ERROR "${Name}: has no SOURCES")
	endif()
endmacro()

function(_tarvin_shared_library Name)
	target_link_libraries(${Name} PUBLIC TarvinOptions PRIVATE TarvinWarnings)
	set_target_properties(${Name} PROPERTIES
		OUTPUT_NAME "Tarvin${Name}"
		INSTALL_RPATH "$ORIGIN")
	install(TARGETS ${Name} LIBRARY DESTINATION ${TARVIN_LIBRARY_FOLDER})
endfunction()

function(_tarvin_executable Name)
	target_link_libraries(${Name} PRIVATE TarvinOptions TarvinWarnings)
	target_include_directories(${Name} PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}")
endfunction()

# tarvin_host_library(<Name> SOURCES ... [LINKS <public targets>] [PRIVATE_LINKS ...])
# One layer of the host: the shared library libTarvin<Name>.so, everything in it exported.
function(tarvin_host_library Name)
	_tarvin_arguments(${Name} ${ARGN})
	add_library(${Name} SHARED ${Arg_SOURCES})
	target_include_directories(${Name} PUBLIC "${TARVIN_HOST_INCLUDE}")
	target_link_libraries(${Name} PUBLIC ${Arg_LINKS} PRIVATE ${Arg_PRIVATE_LINKS})
	_tarvin_shared_library(${Name})
endfunction()

# tarvin_plugin_module(<Name> SOURCES ... [LINKS ...] [PRIVATE_LINKS ...])
# A module that the module manager loads and unloads at run time: the shared library lib<Name>.so beside the
# host's. Hidden visibility, and nothing needed but what is used. Public/ is what others may include.
# <Name>Objects are the objects that it is made of: a test links these to reach what the library hides.
function(tarvin_plugin_module Name)
	_tarvin_arguments(${Name} ${ARGN})
	add_library(${Name}Objects OBJECT ${Arg_SOURCES})
	add_library(${Name} SHARED $<TARGET_OBJECTS:${Name}Objects>)
	foreach(Target ${Name}Objects ${Name})
		target_include_directories(${Target}
			PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}/Public" "${TARVIN_HOST_INCLUDE}"
			PRIVATE "${CMAKE_CURRENT_SOURCE_DIR}/Private")
		target_link_libraries(${Target} PUBLIC ${Arg_LINKS} PRIVATE ${Arg_PRIVATE_LINKS})
	endforeach()
	target_link_libraries(${Name}Objects PUBLIC TarvinOptions PRIVATE TarvinWarnings)
	set_target_properties(${Name}Objects PROPERTIES
		CXX_VISIBILITY_PRESET hidden
		VISIBILITY_INLINES_HIDDEN ON)
	target_link_options(${Name} PRIVATE -Wl,--as-needed)
	_tarvin_shared_library(${Name})
	set_target_properties(${Name} PROPERTIES OUTPUT_NAME "${Name}")
endfunction()

# tarvin_program(<name> SOURCES ... [LINKS ...]): a program that is installed.
function(tarvin_program Name)
	_tarvin_arguments(${Name} ${ARGN})
	add_executable(${Name} ${Arg_SOURCES})
	target_link_libraries(${Name} PRIVATE ${Arg_LINKS} ${Arg_PRIVATE_LINKS})
	_tarvin_executable(${Name})
	set_target_properties(${Name} PROPERTIES INSTALL_RPATH "$ORIGIN/../${TARVIN_LIBRARY_FOLDER}")
	install(TARGETS ${Name} RUNTIME DESTINATION bin)
endfunction()

# tarvin_test(<Name> SOURCES ... [LINKS ...]): a GoogleTest program with gmock and RapidCheck; every case is a
# test of its own, in its own process, so cases run in any order and in parallel, and never need a display.
function(tarvin_test Name)
	_tarvin_arguments(${Name} ${ARGN})
	add_executable(${Name} ${Arg_SOURCES})
	target_link_libraries(${Name} PRIVATE
		${Arg_LINKS} ${Arg_PRIVATE_LINKS} GTest::gmock GTest::gtest_main rapidcheck Threads::Threads)
	_tarvin_executable(${Name})
	if(TARVIN_SANITIZE)
		# Optimising instrumented tests takes as long again as compiling them, and they run for moments.
		target_compile_options(${Name} PRIVATE -O0)
	endif()
	set_target_properties(${Name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
	gtest_discover_tests(${Name}
		DISCOVERY_MODE PRE_TEST
		DISCOVERY_TIMEOUT 60
		PROPERTIES TIMEOUT 300 ENVIRONMENT QT_QPA_PLATFORM=offscreen ${TARVIN_LEAK_PROPERTIES})
endfunction()

# tarvin_benchmark(<Name> SOURCES ... [LINKS ...]): a Google Benchmark program, run by `./dev bench`.
function(tarvin_benchmark Name)
	_tarvin_arguments(${Name} ${ARGN})
	add_executable(${Name} ${Arg_SOURCES})
	target_link_libraries(${Name} PRIVATE ${Arg_LINKS} ${Arg_PRIVATE_LINKS} benchmark::benchmark)
	_tarvin_executable(${Name})
	set_target_properties(${Name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/benchmarks")
endfunction()

# SPDX-License-Identifier: MIT
# HeadersAlone: compiles every header of Source/ and Tests/ alone, one generated source each, so that a header that
# leans on what its includer happened to include does not build. Headers are globbed here, since the check is
# for all of them. Built by `./dev lint` only.

file(GLOB_RECURSE TarvinHeaders CONFIGURE_DEPENDS
	RELATIVE "${PROJECT_SOURCE_DIR}"
	"${PROJECT_SOURCE_DIR}/Source/*.h" "${PROJECT_SOURCE_DIR}/Tests/*.h")

set(TarvinHeaderSources)
foreach(Header IN LISTS TarvinHeaders)
	string(REPLACE "/" "_" Source "${Header}")
	set(Source "${PROJECT_BINARY_DIR}/HeadersAlone/${Source}.cpp")
	file(CONFIGURE OUTPUT "${Source}" CONTENT "#include \"@Header@\"\n" @ONLY)
	list(APPEND TarvinHeaderSources "${Source}")
endforeach()

if(TarvinHeaderSources)
	add_library(HeadersAlone OBJECT EXCLUDE_FROM_ALL ${TarvinHeaderSources})
	target_include_directories(HeadersAlone PRIVATE
		"${PROJECT_SOURCE_DIR}"
		"${PROJECT_SOURCE_DIR}/Source/Host"
		"${PROJECT_SOURCE_DIR}/Source/TarvinTransform/Public"
		"${PROJECT_SOURCE_DIR}/Source/TarvinTransform/Private"
		"${PROJECT_SOURCE_DIR}/Source/Programs"
		"${PROJECT_SOURCE_DIR}/Source/Programs/TarvinEditor"
		"${PROJECT_SOURCE_DIR}/Tests")
	target_link_libraries(HeadersAlone PRIVATE
		TarvinOptions TarvinWarnings
		hwy::hwy TBB::tbb simdjson::simdjson PkgConfig::Bullet CLI11::CLI11 Qt6::Widgets Qt6::OpenGLWidgets Qt6::Test
		GTest::gmock rapidcheck)
	target_compile_options(HeadersAlone PRIVATE -O0)
	# The headers' own libraries need not be built for this: only what they define is taken over.
	target_compile_definitions(HeadersAlone PRIVATE $<TARGET_PROPERTY:TestSupport,INTERFACE_COMPILE_DEFINITIONS>)
endif()

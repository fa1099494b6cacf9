# SPDX-License-Identifier: MIT
# cmake -DCOMPILER=... -DINCLUDE=... -DSOURCE=... -DCASE=... -DREASON=<regular expression> -P FormatRefusals.cmake
# Compiles one case. Without a REASON it must compile; with one it must fail, and the compiler must say so.
execute_process(
	COMMAND ${COMPILER} -std=c++20 -fsyntax-only -I${INCLUDE} -D${CASE} ${SOURCE}
	RESULT_VARIABLE Result
	ERROR_VARIABLE Errors)
if(NOT REASON)
	if(NOT Result EQUAL 0)
		message(FATAL_ERROR "${CASE} does not compile:\n${Errors}")
	endif()
elseif(Result EQUAL 0)
	message(FATAL_ERROR "${CASE} compiles")
elseif(NOT Errors MATCHES "${REASON}")
	message(FATAL_ERROR "${CASE} fails for another reason than '${REASON}':\n${Errors}")
endif()

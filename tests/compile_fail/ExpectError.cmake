# cmake -DCOMPILER=… -DARGUMENTS=<response file> -DSOURCE=… -P ExpectError.cmake
#
# The source gives one error, that which its second line names, and none when OSTREL_CORRECTED is defined.
set(ENV{LC_ALL} C)
file(STRINGS "${SOURCE}" expected REGEX "^// Error: ")
string(REPLACE "// Error: " "" expected "${expected}")
if(NOT expected)
  message(FATAL_ERROR "${SOURCE}: has no line '// Error: <regular expression>'")
endif()

execute_process(COMMAND "${COMPILER}" "@${ARGUMENTS}" -DOSTREL_CORRECTED "${SOURCE}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${SOURCE}: does not compile when corrected:\n${output}")
endif()

execute_process(COMMAND "${COMPILER}" "@${ARGUMENTS}" "${SOURCE}"
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
if(status EQUAL 0)
  message(FATAL_ERROR "${SOURCE}: compiles, but should not")
endif()
string(REGEX MATCHALL " error: [^\n]*" errors "${output}")
list(LENGTH errors count)
if(NOT count EQUAL 1 OR NOT errors MATCHES "${expected}")
  message(FATAL_ERROR "${SOURCE}: the one error should match '${expected}', but the compiler says:\n${output}")
endif()

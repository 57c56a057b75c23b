# cmake -DARGUMENTS=<text> -DTEXT=<text> -DBINARY_DIR=<dir> -DGENERATOR=<name> -P ExpectRefusal.cmake
# A folder of an earlier run may have another generator.
file(REMOVE_RECURSE "${BINARY_DIR}")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/project" -B "${BINARY_DIR}" -G "${GENERATOR}"
    "-DARGUMENTS=${ARGUMENTS}"
  RESULT_VARIABLE result
  OUTPUT_VARIABLE output
  ERROR_VARIABLE said)
if(result EQUAL 0)
  message(FATAL_ERROR "the call should have been refused:\n${output}${said}")
endif()
# message() wraps its lines.
string(REGEX REPLACE "[ \n]+" " " said "${said}")
string(FIND "${said}" "${TEXT}" at)
if(at EQUAL -1)
  message(FATAL_ERROR "'${TEXT}' is missing in:\n${said}")
endif()

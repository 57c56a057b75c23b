# cmake -DCASE=<name> -DTEXT=<text that must be said> -DWORK_DIR=<dir> -DGENERATOR=<generator>
#       -DFUNCTIONS=<OstrelResourceFunctions.cmake> -P Functions.cmake
#
# Configures a project that calls one of the functions for resources in a wrong way. The targets are no real ones, as
# nothing is built.
file(REMOVE_RECURSE "${WORK_DIR}")
set(once "usFunctionEmbedResources(TARGET lib FILES CMakeLists.txt)")
set(calls_no_target "usFunctionEmbedResources(FILES CMakeLists.txt)")
set(calls_unknown_target "usFunctionEmbedResources(TARGET none FILES CMakeLists.txt)")
set(calls_unknown_argument "usFunctionAddResources(TARGET lib FILE CMakeLists.txt)")
set(calls_no_out "usFunctionGenerateBundleInit(TARGET lib)")
set(calls_no_name "usFunctionAddResources(TARGET unnamed FILES CMakeLists.txt)")
set(calls_twice "${once}\n${once}")
set(calls_static "usFunctionEmbedResources(TARGET archive FILES CMakeLists.txt)")
set(calls_nothing "usFunctionEmbedResources(TARGET lib)\nmessage(FATAL_ERROR goes-on)")
set(calls_out "usFunctionGetResourceSource(TARGET lib OUT list LINK)\nmessage(FATAL_ERROR \"out-\${list}\")")
if(NOT DEFINED calls_${CASE})
  message(FATAL_ERROR "unknown case '${CASE}'")
endif()
file(WRITE "${WORK_DIR}/CMakeLists.txt" "cmake_minimum_required(VERSION 3.25)
project(functions LANGUAGES NONE)
add_executable(ostrel::resource_compiler IMPORTED)
include([=[${FUNCTIONS}]=])
add_library(lib SHARED IMPORTED)
set_target_properties(lib PROPERTIES US_BUNDLE_NAME n)
add_library(unnamed SHARED IMPORTED)
add_library(archive STATIC IMPORTED)
set(list before)
${calls_${CASE}}
")
execute_process(COMMAND "${CMAKE_COMMAND}" -S "${WORK_DIR}" -B "${WORK_DIR}/build" -G "${GENERATOR}"
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
string(REGEX REPLACE "[ \n]+" " " said "${output}${errors}")
string(REPLACE "WORK" "${WORK_DIR}" TEXT "${TEXT}")
string(FIND "${said}" "${TEXT}" at)
if(result EQUAL 0 OR at EQUAL -1)
  message(FATAL_ERROR "expected an error that says '${TEXT}', but ended with ${result}:\n${output}${errors}")
endif()

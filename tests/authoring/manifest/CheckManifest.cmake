# cmake -DMANIFEST=<file> -DEXPECT=accepted|warned|refused -DPIECES=<text>[|<text>]... -P CheckManifest.cmake
#
# Checks one manifest for a bundle named "alpha" and compares what is said about it. A warned manifest must be refused,
# in the same words, when OSTREL_STRICT_MANIFESTS is on.
function(run strict)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" "-DOSTREL_STRICT_MANIFESTS=${strict}" "-DMANIFEST=${MANIFEST}"
      -P "${CMAKE_CURRENT_LIST_DIR}/CallCheck.cmake"
    RESULT_VARIABLE result
    ERROR_VARIABLE said)
  set(result "${result}" PARENT_SCOPE)
  set(said "${said}" PARENT_SCOPE)
endfunction()

function(expect_said)
  string(REPLACE "|" ";" pieces "${PIECES}")
  foreach(piece IN ITEMS "${MANIFEST}" LISTS pieces)
    string(FIND "${said}" "${piece}" at)
    if(at EQUAL -1)
      message(SEND_ERROR "'${piece}' is missing in:\n${said}")
    endif()
  endforeach()
endfunction()

function(expect_refused)
  if(result EQUAL 0 OR NOT said MATCHES "CMake Error")
    message(SEND_ERROR "should have been refused, but ended with ${result}:\n${said}")
  endif()
  expect_said()
endfunction()

run(OFF)
if(EXPECT STREQUAL "accepted")
  if(NOT result EQUAL 0 OR NOT said STREQUAL "")
    message(SEND_ERROR "should have been accepted in silence, but ended with ${result}:\n${said}")
  endif()
elseif(EXPECT STREQUAL "warned")
  if(NOT result EQUAL 0 OR NOT said MATCHES "CMake Warning")
    message(SEND_ERROR "should have been warned of, but ended with ${result}:\n${said}")
  endif()
  expect_said()
  run(ON)
  expect_refused()
elseif(EXPECT STREQUAL "refused")
  expect_refused()
else()
  message(FATAL_ERROR "unknown expectation '${EXPECT}'")
endif()

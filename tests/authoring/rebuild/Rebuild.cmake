# cmake -DSETTINGS=<file> -DWORK_DIR=<dir> -DSTART_BUNDLE=<program> -P Rebuild.cmake
include("${SETTINGS}")
file(REMOVE_RECURSE "${WORK_DIR}")
set(manifest "${WORK_DIR}/manifest.json")

function(write_manifest version addition)
  file(WRITE "${manifest}" "{
  \"bundle.symbolic_name\" : \"alpha\",
  \"bundle.version\" : \"${version}\",
  \"bundle.activator\" : true,
  \"zq\" : { \"component\" : { \"name\" : \"alpha\" } }${addition}
}
")
endfunction()

# build(<succeeds?> <text that must be said>)
function(build succeeds text)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/build"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  set(succeeded OFF)
  if(result EQUAL 0)
    set(succeeded ON)
  endif()
  string(FIND "${output}${errors}" "${text}" at)
  if(NOT succeeded STREQUAL succeeds OR at EQUAL -1)
    message(FATAL_ERROR "expected success: ${succeeds}, saying '${text}'; the build ended with ${result}:\n"
      "${output}${errors}")
  endif()
endfunction()

function(expect_started version)
  execute_process(COMMAND "${START_BUNDLE}" "${WORK_DIR}/build/libalpha.so"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT output STREQUAL "alpha ${version} is active: context set\n")
    message(FATAL_ERROR "expected version ${version}, but:\n${output}${errors}")
  endif()
endfunction()

write_manifest(1.0.0 "")
execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/project" -B "${WORK_DIR}/build" -G "${GENERATOR}"
    ${OPTIONS} "-DFRAMEWORK_FILE=${FRAMEWORK_FILE}" "-DADD_BUNDLE_FILE=${ADD_BUNDLE_FILE}"
    "-DMANIFEST_FILE=${manifest}" "-DACTIVATOR_FILE=${ACTIVATOR_FILE}"
  COMMAND_ERROR_IS_FATAL ANY)
build(ON "")
expect_started(1.0.0)

write_manifest(2.0.0 ", \"a\" : null")
build(ON "${manifest}:5: key \"a\": the framework drops null")
expect_started(2.0.0)

write_manifest(3.0.0 ",")
build(OFF "${manifest}:6: invalid JSON: after the key \"zq.component.name\", a comma may not stand before '}'")

write_manifest(4.0.0 "")
build(ON "")
expect_started(4.0.0)

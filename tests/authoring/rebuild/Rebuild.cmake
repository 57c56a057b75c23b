# cmake -DSETTINGS=<file> -DGENERATOR=<name> -DWORK_DIR=<dir> -DSTART_BUNDLE=<program> -DCHECKER=<program>
#       -P Rebuild.cmake
cmake_minimum_required(VERSION 3.25)
include("${SETTINGS}")
file(REMOVE_RECURSE "${WORK_DIR}")
file(MAKE_DIRECTORY "${WORK_DIR}")
set(manifest "${WORK_DIR}/manifest.json")
set(checking "Checking the manifest of bundle alpha")
# One of its own, to be changed.
set(checker "${WORK_DIR}/checker")
file(COPY_FILE "${CHECKER}" "${checker}")

function(write_manifest version activator addition)
  file(WRITE "${manifest}" "{
  \"bundle.symbolic_name\" : \"alpha\",
  \"bundle.version\" : \"${version}\",
  \"bundle.activator\" : ${activator},
  \"zq\" : { \"component\" : { \"name\" : \"alpha\" } }${addition}
}
")
endfunction()

function(configure)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/project" -B "${WORK_DIR}/build" -G "${GENERATOR}"
      ${OPTIONS} "-DFRAMEWORK_FILE=${FRAMEWORK_FILE}" "-DADD_BUNDLE_FILE=${ADD_BUNDLE_FILE}" "-DCHECKER_FILE=${checker}"
      "-DMANIFEST_FILE=${manifest}" "-DACTIVATOR_FILE=${ACTIVATOR_FILE}" ${ARGN}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# build(<succeeds?> [SAYS <texts...>] [SILENT_ABOUT <texts...>])
function(build succeeds)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SAYS;SILENT_ABOUT")
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK_DIR}/build"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  set(succeeded OFF)
  if(result EQUAL 0)
    set(succeeded ON)
  endif()
  set(wrong "")
  if(NOT succeeded STREQUAL succeeds)
    set(wrong "success should be ${succeeds}")
  endif()
  foreach(text IN LISTS arg_SAYS)
    string(FIND "${output}${errors}" "${text}" at)
    if(at EQUAL -1)
      string(APPEND wrong "\n'${text}' should be said")
    endif()
  endforeach()
  foreach(text IN LISTS arg_SILENT_ABOUT)
    string(FIND "${output}${errors}" "${text}" at)
    if(NOT at EQUAL -1)
      string(APPEND wrong "\n'${text}' should not be said")
    endif()
  endforeach()
  if(wrong)
    message(FATAL_ERROR "${wrong}\nThe build ended with ${result}:\n${output}${errors}")
  endif()
endfunction()

function(expect_started version)
  execute_process(COMMAND "${START_BUNDLE}" "${WORK_DIR}/build/libalpha.so"
    RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
  if(NOT output STREQUAL "alpha ${version} is active: context set\n")
    message(FATAL_ERROR "expected version ${version}, but:\n${output}${errors}")
  endif()
endfunction()

# The first build checks, the second has nothing to do.
write_manifest(1.0.0 true "")
configure()
build(ON SAYS "${checking}" SILENT_ABOUT "manifest.json:")
expect_started(1.0.0)
build(ON SILENT_ABOUT "${checking}")

# A changed manifest gets into the library without a new configuration; its warnings are said once for each change.
set(dropped "${manifest}:5:56: warning: key \"a\": the framework drops null")
write_manifest(2.0.0 true ", \"a\" : null")
build(ON SAYS "${dropped}" SILENT_ABOUT "Configuring done")
expect_started(2.0.0)
build(ON SILENT_ABOUT "${checking}" "${dropped}")

# A changed checker checks again.
file(TOUCH "${checker}")
build(ON SAYS "${dropped}")

# Errors end the build, in each build until they are gone.
set(comma "${manifest}:5:48: error: invalid JSON: after the key \"zq\", a comma may not stand before '}'")
write_manifest(3.0.0 true ",")
build(OFF SAYS "${comma}")
build(OFF SAYS "${comma}")
write_manifest(4.0.0 true "")
build(ON)
expect_started(4.0.0)

# What the linked library shows.
set(not_loaded "${manifest}:4:24: warning: \"libalpha.so\" exports an activator of the bundle \"alpha\", but ")
write_manifest(5.0.0 false "")
build(ON SAYS "${not_loaded}")
configure(-DOSTREL_STRICT_MANIFESTS=ON)
set(strictly "${manifest}:4:24: error: \"libalpha.so\" exports an activator of the bundle \"alpha\", but ")
build(OFF SAYS "${strictly}" "[OSTREL_STRICT_MANIFESTS]")
build(OFF SAYS "${strictly}")
file(WRITE "${WORK_DIR}/Empty.cpp" "")
write_manifest(6.0.0 true "")
configure(-DOSTREL_STRICT_MANIFESTS=OFF "-DACTIVATOR_FILE=${WORK_DIR}/Empty.cpp")
set(no_activator "${manifest}:4:24: error: key \"bundle.activator\" is true, but \"libalpha.so\" exports no activator ")
build(OFF SAYS "${no_activator}" "CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR")
build(OFF SAYS "${no_activator}")

# Nothing of this is looked at in a bundle that says so.
write_manifest(7.0.0 true ", \"a\" : null")
configure(-DMORE_ARGUMENTS=UNCHECKED)
build(ON SILENT_ABOUT "warning:" "error:")

# ostrel_add_test(<target> LABEL <label> SOURCES <files...> [LIBRARIES <targets...>])
#
# A GoogleTest program, each of its tests a test of CTest under its own name; with a sanitizer, the program as a whole.
# LABEL is the kind of test: `ctest -L unit` runs all of one kind, the target `tests_unit` builds what they need.
find_package(GTest CONFIG QUIET)
ostrel_require("GoogleTest with GMock" "libgtest-dev libgmock-dev" "${GTest_FOUND}")
include(GoogleTest)

function(ostrel_add_test target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "LABEL" "SOURCES;LIBRARIES")
  if(arg_UNPARSED_ARGUMENTS OR NOT arg_LABEL OR NOT arg_SOURCES)
    message(FATAL_ERROR "ostrel_add_test(${target}): needs LABEL and SOURCES, and takes only LIBRARIES besides")
  endif()
  add_executable(${target} ${arg_SOURCES})
  target_compile_features(${target} PRIVATE cxx_std_17)
  target_include_directories(${target} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES} GTest::gmock GTest::gtest_main ostrel_warnings)
  if(NOT TARGET tests_${arg_LABEL})
    add_custom_target(tests_${arg_LABEL})
  endif()
  add_dependencies(tests_${arg_LABEL} ${target})
  if(OSTREL_SANITIZER)
    # A program with a sanitizer takes longer to begin than most of its tests to run. All of them in one process also
    # see what one leaves to the next.
    add_test(NAME ${target} COMMAND ${target} --gtest_brief=1)
    set_tests_properties(${target} PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 900)
    return()
  endif()
  # A test that hangs is ended, and the slowest machine may take its time to list the tests.
  gtest_discover_tests(${target} NO_PRETTY_VALUES DISCOVERY_TIMEOUT 120 PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 120)
endfunction()

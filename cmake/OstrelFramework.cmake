# Chooses the plug-in framework and defines the target ostrel::framework, the one name by which the rest of the build
# knows it. Sets OSTREL_FRAMEWORK_TAKEN to "system" or "embedded".

if(NOT OSTREL_FRAMEWORK MATCHES "^(auto|system|embedded)$")
  message(FATAL_ERROR
    "OSTREL_FRAMEWORK is '${OSTREL_FRAMEWORK}'; it must be 'auto', 'system' or 'embedded'.")
endif()

set(OSTREL_FRAMEWORK_TAKEN embedded)
if(NOT OSTREL_FRAMEWORK STREQUAL "embedded")
  # The embedded framework of an installed build, which answers to this name for bundle projects, is not meant here.
  set(OSTREL_WANTS_INSTALLED_FRAMEWORK ON)
  find_package(CppMicroServices 3.8.4 CONFIG QUIET)
  unset(OSTREL_WANTS_INSTALLED_FRAMEWORK)
  if(CppMicroServices_FOUND)
    set(OSTREL_FRAMEWORK_TAKEN system)
  elseif(OSTREL_FRAMEWORK STREQUAL "system")
    message(FATAL_ERROR
      "OSTREL_FRAMEWORK is 'system', but no CppMicroServices 3.8.4 was found. Give its prefix with "
      "-DCMAKE_PREFIX_PATH=<prefix>, or build with -DOSTREL_FRAMEWORK=embedded.")
  endif()
endif()

if(OSTREL_FRAMEWORK_TAKEN STREQUAL "system")
  add_library(ostrel_framework INTERFACE)
  target_link_libraries(ostrel_framework INTERFACE CppMicroServices)
  set_target_properties(ostrel_framework PROPERTIES EXPORT_NAME framework)
  add_library(ostrel::framework ALIAS ostrel_framework)
  set(_ostrel_reason "found")
  if(OSTREL_FRAMEWORK STREQUAL "system")
    set(_ostrel_reason "asked for by OSTREL_FRAMEWORK")
  endif()
  message(STATUS
    "Framework: CppMicroServices ${CppMicroServices_VERSION} from ${CppMicroServices_DIR} (${_ostrel_reason})")
else()
  set(_ostrel_reason "no installed CppMicroServices 3.8.4 found")
  if(OSTREL_FRAMEWORK STREQUAL "embedded")
    set(_ostrel_reason "asked for by OSTREL_FRAMEWORK")
  endif()
  if(TARGET CppMicroServices)
    message(FATAL_ERROR
      "A target CppMicroServices exists already, so the embedded framework cannot be built beside it. "
      "Build with -DOSTREL_FRAMEWORK=system, or do not find CppMicroServices in this project.")
  endif()
  add_subdirectory("${PROJECT_SOURCE_DIR}/framework" "${PROJECT_BINARY_DIR}/framework")
  message(STATUS "Framework: embedded, from ${PROJECT_SOURCE_DIR}/framework (${_ostrel_reason})")
endif()

# The configure-time check of a bundle's manifest.
#
# A bundle's manifest is read by the framework only when the bundle is installed, long after a mistake in it was made.
# The file works in script mode too.
cmake_policy(PUSH)
cmake_policy(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/OstrelBundleJson.cmake")

# ostrel_check_bundle_manifest(<manifest> <symbolic name>)
#
# Errors end the configure step; warnings do so when OSTREL_STRICT_MANIFESTS is on.
function(ostrel_check_bundle_manifest manifest symbolic_name)
  set(findings_errors "")
  set(findings_warnings "")
  set(strict "${OSTREL_STRICT_MANIFESTS}")  # read in any case, or CMake would report the option as unused
  _ostrel_read_manifest()
  if(findings_errors STREQUAL "")
    _ostrel_check_manifest_keys()
  endif()
  if(NOT findings_warnings STREQUAL "")
    if(strict)
      string(APPEND findings_errors "${findings_warnings}")
      string(APPEND findings_errors "\n(OSTREL_STRICT_MANIFESTS is on, so warnings are errors.)")
    else()
      message(WARNING "ostrel_add_bundle: the manifest has entries that will not work as written:${findings_warnings}")
    endif()
  endif()
  if(NOT findings_errors STREQUAL "")
    message(FATAL_ERROR "ostrel_add_bundle: the manifest cannot be used:${findings_errors}")
  endif()
endfunction()

# What the keys of a well-formed manifest say.
macro(_ostrel_check_manifest_keys)
  set(at "${sep}bundle.symbolic_name")
  if(NOT DEFINED "kind_of_${at}")
    _ostrel_error_at(1 "key \"bundle.symbolic_name\" is missing; it must be \"${symbolic_name}\", as in the call")
  elseif(NOT "${kind_of_${at}}" STREQUAL "string" OR NOT "${text_of_${at}}" STREQUAL "${symbolic_name}")
    set(found "${text_of_${at}}")
    if(NOT "${kind_of_${at}}" STREQUAL "string")
      set(found "no text but of type ${kind_of_${at}}")
    else()
      set(found "\"${found}\"")
    endif()
    _ostrel_error_at("${line_of_${at}}"
      "key \"${shown_of_${at}}\" is ${found}, but the call says SYMBOLIC_NAME ${symbolic_name}; the two must be equal")
  endif()

  set(at "${sep}zq${sep}component${sep}name")
  if(NOT DEFINED "kind_of_${at}")
    set(hint "")
    if(DEFINED "kind_of_${sep}zq.component.name" OR DEFINED "kind_of_${sep}zq${sep}component.name"
        OR DEFINED "kind_of_${sep}zq.component${sep}name")
      set(hint " (a key that holds dots is not looked into)")
    endif()
    _ostrel_warning_at(1
      "key \"zq.component.name\" is not there as nested objects, {\"zq\": {\"component\": {\"name\": ...}}}${hint}; \
a start by directory and filter fails at this bundle")
  endif()
  _ostrel_check_manifest_filters()
endmacro()

macro(_ostrel_check_manifest_filters)
  set(at "${sep}zq${sep}ostrelfilters")
  if(DEFINED "kind_of_${sep}zq.ostrelfilters")
    _ostrel_warning_at("${line_of_${sep}zq.ostrelfilters}"
      "key \"${shown_of_${sep}zq.ostrelfilters}\" is never found; write it as nested objects, \
{\"zq\": {\"ostrelFilters\": ...}}")
  endif()
  if(DEFINED "kind_of_${at}" AND NOT "${kind_of_${at}}" STREQUAL "array")
    _ostrel_warning_at("${line_of_${at}}"
      "key \"${shown_of_${at}}\" must be an array of objects, not of type ${kind_of_${at}}; it will count as empty")
  elseif(DEFINED "kind_of_${at}" AND "${size_of_${at}}" EQUAL 0)
    _ostrel_warning_at("${line_of_${at}}" "key \"${shown_of_${at}}\" is an empty array, which no condition ever admits")
  elseif(DEFINED "kind_of_${at}")
    math(EXPR last "${size_of_${at}} - 1")
    foreach(index RANGE ${last})
      set(element "${at}${sep}${index}")
      if(DEFINED "kind_of_${element}" AND NOT "${kind_of_${element}}" STREQUAL "object")
        _ostrel_warning_at("${line_of_${element}}"
          "key \"${shown_of_${element}}\" must be an object, not of type ${kind_of_${element}}; it will be skipped")
      endif()
    endforeach()
  endif()
endmacro()

cmake_policy(POP)

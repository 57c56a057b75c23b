# The functions with which a bundle project written for CppMicroServices embeds its manifest and resources, for the
# embedded framework. An installed CppMicroServices brings its own.
#
#   usFunctionGenerateBundleInit(TARGET <target> OUT <variable>)
#   usFunctionGetResourceSource(TARGET <target> OUT <variable> [LINK | APPEND])
#   usFunctionAddResources(TARGET <target> [BUNDLE_NAME <name>] [WORKING_DIRECTORY <dir>] [COMPRESSION_LEVEL <0-9>]
#     [FILES <files...>] [ZIP_ARCHIVES <archives...>])
#   usFunctionEmbedResources(TARGET <target> [...as above] [APPEND | LINK])
#
# The guide docs/guide/bundles.md describes them. They need the target ostrel::resource_compiler in the directory that
# calls them, and write below <binary directory>/<target>. An archive may be named by a static library of the same
# directory, to which resources were added.
cmake_policy(PUSH)
cmake_policy(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/OstrelBundleArchive.cmake")

# The resource compiler's name in such projects.
set(US_RCC_EXECUTABLE_TARGET usResourceCompiler)

# _ostrel_parse_resource_arguments(<one-value keywords> <multi-value keywords> <options>)
#
# Parses the arguments of the calling function, the name of which is in `function`.
macro(_ostrel_parse_resource_arguments one_value multi_value options)
  cmake_parse_arguments(PARSE_ARGV 0 arg "${options}" "${one_value}" "${multi_value}")
  if(NOT "${arg_UNPARSED_ARGUMENTS}" STREQUAL "")
    message(WARNING "${function}: unknown argument '${arg_UNPARSED_ARGUMENTS}'; it is ignored.")
  endif()
  if("${arg_TARGET}" STREQUAL "")
    message(FATAL_ERROR "${function}: the argument TARGET is missing.")
  endif()
  set(work_dir "${CMAKE_CURRENT_BINARY_DIR}/${arg_TARGET}")
endmacro()

# Writes a source only when its text changes, so that nothing is built again without need.
function(_ostrel_generate_source file text)
  set(content "// Generated; do not edit.\n${text}")
  file(CONFIGURE OUTPUT "${file}" CONTENT "@content@" @ONLY)
endfunction()

function(usFunctionGenerateBundleInit)
  set(function usFunctionGenerateBundleInit)
  _ostrel_parse_resource_arguments("TARGET;OUT" "" "")
  if("${arg_OUT}" STREQUAL "")
    message(FATAL_ERROR "${function}: the argument OUT is missing.")
  endif()
  set(file "${work_dir}/cppmicroservices_init.cpp")
  _ostrel_generate_source("${file}"
    "#include \"cppmicroservices/BundleInitialization.h\"\n\nCPPMICROSERVICES_INITIALIZE_BUNDLE\n")
  set(${arg_OUT} ${${arg_OUT}} "${file}" PARENT_SCOPE)
endfunction()

# The archive gets into the target by usFunctionEmbedResources() alone; the source is there because such projects list
# it, and says so.
function(usFunctionGetResourceSource)
  set(function usFunctionGetResourceSource)
  _ostrel_parse_resource_arguments("TARGET;OUT" "" "LINK;APPEND")
  if("${arg_OUT}" STREQUAL "")
    message(FATAL_ERROR "${function}: the argument OUT is missing.")
  endif()
  set(file "${work_dir}/cppmicroservices_resources.cpp")
  _ostrel_generate_source("${file}" "// The resources are in a source that usFunctionEmbedResources() adds.\n")
  set(${arg_OUT} ${${arg_OUT}} "${file}" PARENT_SCOPE)
endfunction()

# In a list of archives, a static library stands for the archives of its resources, and another target for none: the
# file of a shared library holds its own.
function(_ostrel_replace_targets_by_archives variable)
  set(archives "")
  foreach(entry IN LISTS ${variable})
    if(NOT TARGET "${entry}")
      list(APPEND archives "${entry}")
      continue()
    endif()
    get_target_property(type "${entry}" TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      get_property(known DIRECTORY PROPERTY "OSTREL_RESOURCES_OF_${entry}")
      if("${known}" STREQUAL "")
        message(WARNING "${function}: no resources of ${entry} are known in this directory.")
      endif()
      list(APPEND archives ${known})
    endif()
  endforeach()
  set(${variable} "${archives}" PARENT_SCOPE)
endfunction()

function(usFunctionAddResources)
  set(function usFunctionAddResources)
  _ostrel_parse_resource_arguments("TARGET;BUNDLE_NAME;WORKING_DIRECTORY;COMPRESSION_LEVEL" "FILES;ZIP_ARCHIVES" "")
  if("${arg_FILES}${arg_ZIP_ARCHIVES}" STREQUAL "")
    message(WARNING "${function}: neither FILES nor ZIP_ARCHIVES are given for ${arg_TARGET}; nothing is added.")
    return()
  endif()
  if("${arg_BUNDLE_NAME}" STREQUAL "" AND TARGET "${arg_TARGET}")
    get_property(arg_BUNDLE_NAME TARGET "${arg_TARGET}" PROPERTY US_BUNDLE_NAME)
  endif()
  if("${arg_BUNDLE_NAME}" STREQUAL "")
    message(FATAL_ERROR
      "${function}: either the argument BUNDLE_NAME or the property US_BUNDLE_NAME of ${arg_TARGET} is required.")
  endif()
  if(NOT DEFINED arg_WORKING_DIRECTORY)
    set(arg_WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  endif()
  cmake_path(ABSOLUTE_PATH arg_WORKING_DIRECTORY BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
  if(NOT DEFINED arg_COMPRESSION_LEVEL)
    set(arg_COMPRESSION_LEVEL 6)
  endif()

  set(arguments "")
  set(inputs "")
  foreach(file IN LISTS arg_FILES)
    list(APPEND arguments --res-add "${file}")
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${arg_WORKING_DIRECTORY}" NORMALIZE)
    list(APPEND inputs "${file}")
  endforeach()
  _ostrel_replace_targets_by_archives(arg_ZIP_ARCHIVES)
  if("${arg_FILES}${arg_ZIP_ARCHIVES}" STREQUAL "")
    return()
  endif()
  foreach(file IN LISTS arg_ZIP_ARCHIVES)
    cmake_path(ABSOLUTE_PATH file BASE_DIRECTORY "${arg_WORKING_DIRECTORY}" NORMALIZE)
    list(APPEND arguments --zip-add "${file}")
    list(APPEND inputs "${file}")
  endforeach()

  # Known to the directory and not the target, which may not be there yet.
  get_property(archives DIRECTORY PROPERTY "OSTREL_RESOURCES_OF_${arg_TARGET}")
  list(LENGTH archives number)
  set(archive "${work_dir}/res_${number}.zip")
  file(MAKE_DIRECTORY "${work_dir}")
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND ostrel::resource_compiler --bundle-name "${arg_BUNDLE_NAME}"
      --compression-level "${arg_COMPRESSION_LEVEL}" --out-file "${archive}" ${arguments}
    WORKING_DIRECTORY "${arg_WORKING_DIRECTORY}"
    DEPENDS ostrel::resource_compiler ${inputs}
    COMMENT "Packing resources of ${arg_TARGET}"
    VERBATIM)
  set_property(DIRECTORY APPEND PROPERTY "OSTREL_RESOURCES_OF_${arg_TARGET}" "${archive}")
endfunction()

function(usFunctionEmbedResources)
  set(function usFunctionEmbedResources)
  _ostrel_parse_resource_arguments("TARGET;BUNDLE_NAME;WORKING_DIRECTORY;COMPRESSION_LEVEL" "FILES;ZIP_ARCHIVES"
    "LINK;APPEND")
  if(NOT TARGET "${arg_TARGET}")
    message(FATAL_ERROR "${function}: there is no target ${arg_TARGET}.")
  endif()
  get_target_property(type "${arg_TARGET}" TYPE)
  get_property(embedded TARGET "${arg_TARGET}" PROPERTY OSTREL_EMBEDDED_ARCHIVE)
  if(embedded)
    # The framework reads one archive of a file, so a second one would hide the first.
    message(FATAL_ERROR "${function}: ${arg_TARGET} has an embedded archive already. Name all files in one call, add "
      "them by usFunctionAddResources() before it, or give them to ostrel_add_bundle() with RESOURCES.")
  endif()
  if(NOT "${arg_FILES}${arg_ZIP_ARCHIVES}" STREQUAL "")
    set(optional "")
    foreach(keyword BUNDLE_NAME WORKING_DIRECTORY COMPRESSION_LEVEL)
      if(DEFINED arg_${keyword})
        list(APPEND optional ${keyword} "${arg_${keyword}}")
      endif()
    endforeach()
    usFunctionAddResources(TARGET "${arg_TARGET}" ${optional} FILES ${arg_FILES} ZIP_ARCHIVES ${arg_ZIP_ARCHIVES})
  endif()
  get_property(archives DIRECTORY PROPERTY "OSTREL_RESOURCES_OF_${arg_TARGET}")
  if("${archives}" STREQUAL "")
    message(WARNING "${function}: there are no resources for ${arg_TARGET}; nothing is embedded.")
    return()
  endif()
  if(NOT type MATCHES "^(SHARED_LIBRARY|MODULE_LIBRARY|EXECUTABLE)$")
    return() # its archives may be embedded in a program that it is linked to
  endif()
  set_property(TARGET "${arg_TARGET}" PROPERTY OSTREL_EMBEDDED_ARCHIVE TRUE)

  set(archive "${work_dir}/resources.zip")
  set(arguments "")
  foreach(part IN LISTS archives)
    list(APPEND arguments --zip-add "${part}")
  endforeach()
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND ostrel::resource_compiler --out-file "${archive}" ${arguments}
    DEPENDS ostrel::resource_compiler ${archives}
    COMMENT "Putting the resources of ${arg_TARGET} together"
    VERBATIM)
  if(type STREQUAL "EXECUTABLE")
    # In a program the archive is looked for behind its end.
    set_property(TARGET "${arg_TARGET}" APPEND PROPERTY LINK_DEPENDS "${archive}")
    target_sources("${arg_TARGET}" PRIVATE "${archive}")
    add_custom_command(TARGET "${arg_TARGET}" POST_BUILD
      COMMAND ostrel::resource_compiler --bundle-file "$<TARGET_FILE:${arg_TARGET}>" --zip-add "${archive}"
      VERBATIM)
  else()
    _ostrel_embed_archive("${arg_TARGET}" "${archive}" "${work_dir}/archive.cpp")
  endif()
endfunction()

cmake_policy(POP)

# ostrel_add_bundle(): the one call with which a bundle author makes a bundle library, on either framework.
#
#   ostrel_add_bundle(<target>
#     SYMBOLIC_NAME <name> MANIFEST <manifest.json> SOURCES <files...>
#     [FILE_NAME <exact file name>] [OUTPUT_DIRECTORY <dir>] [RESOURCES <files...>] [RESOURCE_DIRECTORY <dir>]
#     [MORE_BUNDLES <name> <manifest.json> [<name> <manifest.json>]...] [UNCHECKED])
#
# The guide docs/guide/bundles.md describes it. Include this file after the target ostrel::bundle_checker and those of the
# framework are defined: the target ostrel::bundle_packer tells that the bundles are for the embedded framework.
cmake_policy(PUSH)
cmake_policy(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/OstrelBundleArchive.cmake")

# Remembered globally: the imported targets of a package are seen only in the directory that found it, and a guess made
# elsewhere could build a bundle for the other framework without anybody noticing.
if(TARGET ostrel::bundle_packer)
  set_property(GLOBAL PROPERTY OSTREL_BUNDLE_FRAMEWORK embedded)
else()
  set_property(GLOBAL PROPERTY OSTREL_BUNDLE_FRAMEWORK system)
endif()
if(TARGET ostrel::bundle_checker)
  set(_ostrel_checker ostrel::bundle_checker)
  get_target_property(_ostrel_imported ostrel::bundle_checker IMPORTED)
  if(_ostrel_imported)
    get_target_property(_ostrel_checker ostrel::bundle_checker LOCATION)
  endif()
  set_property(GLOBAL PROPERTY OSTREL_BUNDLE_CHECKER "${_ostrel_checker}")
  unset(_ostrel_checker)
  unset(_ostrel_imported)
endif()

function(ostrel_add_bundle target)
  set(one_value SYMBOLIC_NAME MANIFEST FILE_NAME OUTPUT_DIRECTORY RESOURCE_DIRECTORY)
  cmake_parse_arguments(PARSE_ARGV 1 arg "UNCHECKED" "${one_value}" "SOURCES;MORE_BUNDLES;RESOURCES")
  set(given "${ARGN}")
  _ostrel_check_bundle_arguments()

  set(work_dir "${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}.bundle")
  set(initialisers "")
  foreach(name IN LISTS names)
    string(APPEND initialisers
      "\n#undef US_BUNDLE_NAME\n#define US_BUNDLE_NAME ${name}\nCPPMICROSERVICES_INITIALIZE_BUNDLE\n")
  endforeach()
  _ostrel_take_manifests()

  add_library(${target} SHARED ${arg_SOURCES})
  target_compile_features(${target} PRIVATE cxx_std_17)
  target_compile_definitions(${target} PRIVATE US_BUNDLE_NAME=${arg_SYMBOLIC_NAME})
  set_target_properties(${target} PROPERTIES US_BUNDLE_NAME "${arg_SYMBOLIC_NAME}")
  _ostrel_name_bundle_file()

  configure_file("${CMAKE_CURRENT_FUNCTION_LIST_DIR}/OstrelBundleInit.cpp.in" "${work_dir}/init.cpp" @ONLY)
  _ostrel_add_generated_unit("${work_dir}/init.cpp")

  get_property(framework GLOBAL PROPERTY OSTREL_BUNDLE_FRAMEWORK)
  if(framework STREQUAL "embedded")
    _ostrel_embed_manifests_by_packer()
  else()
    _ostrel_embed_manifests_by_installed_framework()
  endif()
  if(NOT arg_UNCHECKED)
    add_custom_command(TARGET ${target} POST_BUILD
      COMMAND "${checker}" ${strict} --library "$<TARGET_FILE:${target}>" ${named_manifests}
      VERBATIM)
  endif()
endfunction()

# The helpers below belong to the one function above and read its variables. Nothing that a caller gave is passed to a
# macro, which would evaluate it a second time.

function(_ostrel_bundle_error)
  string(JOIN "" text ${ARGN})
  message(FATAL_ERROR "ostrel_add_bundle(${target}): ${text}")
endfunction()

macro(_ostrel_check_bundle_arguments)
  if(target IN_LIST one_value OR target MATCHES "^(SOURCES|MORE_BUNDLES|RESOURCES|UNCHECKED)$")
    _ostrel_bundle_error("the first argument must be the name of the target, not the keyword ${target}.")
  endif()
  if(TARGET "${target}")
    _ostrel_bundle_error("a target of this name exists already.")
  endif()
  if(NOT "${arg_UNPARSED_ARGUMENTS}" STREQUAL "")
    list(JOIN arg_UNPARSED_ARGUMENTS "', '" listed)
    _ostrel_bundle_error("unknown argument '${listed}'. Known are SYMBOLIC_NAME, MANIFEST, SOURCES, FILE_NAME, "
      "OUTPUT_DIRECTORY, MORE_BUNDLES, RESOURCES, RESOURCE_DIRECTORY and UNCHECKED.")
  endif()
  foreach(keyword IN LISTS one_value ITEMS SOURCES MORE_BUNDLES RESOURCES)
    if("${arg_${keyword}}" STREQUAL "")
      if(keyword IN_LIST arg_KEYWORDS_MISSING_VALUES)
        _ostrel_bundle_error("${keyword} has no value.")
      elseif(keyword MATCHES "^(SYMBOLIC_NAME|MANIFEST|SOURCES)$")
        _ostrel_bundle_error("${keyword} is missing.")
      elseif(keyword IN_LIST given)
        _ostrel_bundle_error("${keyword} is empty.")
      endif()
    endif()
  endforeach()

  list(LENGTH arg_MORE_BUNDLES count)
  math(EXPR odd "${count} % 2")
  if(odd)
    _ostrel_bundle_error("MORE_BUNDLES takes pairs of a symbolic name and a manifest.")
  endif()
  set(names "")
  set(manifests "")
  set(bundles "${arg_SYMBOLIC_NAME}" "${arg_MANIFEST}" ${arg_MORE_BUNDLES})
  while(NOT bundles STREQUAL "")
    list(POP_FRONT bundles name manifest)
    if(NOT name MATCHES "^[A-Za-z_][A-Za-z0-9_]*$")
      _ostrel_bundle_error("the symbolic name '${name}' is not a C identifier (letters, digits and underscores, no "
        "digit first); it becomes a part of function names.")
    endif()
    if(name IN_LIST names)
      _ostrel_bundle_error("the symbolic name '${name}' is given twice.")
    endif()
    list(APPEND names "${name}")
    cmake_path(ABSOLUTE_PATH manifest BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
    get_source_file_property(generated "${manifest}" GENERATED)
    if(NOT generated AND (NOT EXISTS "${manifest}" OR IS_DIRECTORY "${manifest}"))
      _ostrel_bundle_error("the manifest '${manifest}' does not exist or is a directory.")
    endif()
    list(APPEND manifests "${manifest}")
  endwhile()

  if(NOT DEFINED arg_RESOURCE_DIRECTORY)
    set(arg_RESOURCE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
  endif()
  cmake_path(ABSOLUTE_PATH arg_RESOURCE_DIRECTORY BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE)
  foreach(resource IN LISTS arg_RESOURCES)
    if(resource MATCHES "^/|(^|/)\\.\\.?(/|$)|//|\\$<" OR resource STREQUAL "manifest.json")
      _ostrel_bundle_error("the resource '${resource}' must be a path below RESOURCE_DIRECTORY, without '.' and '..', "
        "and not the manifest.")
    endif()
    set(resource "${arg_RESOURCE_DIRECTORY}/${resource}")
    get_source_file_property(generated "${resource}" GENERATED)
    if(NOT generated AND (NOT EXISTS "${resource}" OR IS_DIRECTORY "${resource}"))
      _ostrel_bundle_error("the resource '${resource}' does not exist or is a directory.")
    endif()
  endforeach()
  foreach(source IN LISTS arg_SOURCES)
    _ostrel_check_bundle_source()
  endforeach()
  if("${arg_FILE_NAME}" MATCHES "/" OR "${arg_FILE_NAME}" MATCHES "^\\.\\.?$")
    _ostrel_bundle_error("FILE_NAME '${arg_FILE_NAME}' must be a plain file name; use OUTPUT_DIRECTORY for the place.")
  endif()
endmacro()

# Has the build check the manifests and put them into folders by their bundles' names, from where they are packed.
macro(_ostrel_take_manifests)
  # Read in any case, or CMake would report the option as unused.
  set(strict "")
  if(OSTREL_STRICT_MANIFESTS)
    set(strict --strict)
  endif()
  get_property(checker GLOBAL PROPERTY OSTREL_BUNDLE_CHECKER)
  if("${checker}" STREQUAL "" AND NOT arg_UNCHECKED)
    _ostrel_bundle_error("the target ostrel::bundle_checker is not known. Call find_package(ostrel_us_container CONFIG "
      "REQUIRED) before.")
  endif()
  set(named_manifests "")
  set(taken_manifests "")
  set(copies "")
  foreach(name manifest IN ZIP_LISTS names manifests)
    set(taken "${work_dir}/${name}/manifest.json")
    list(APPEND named_manifests "${name}" "${manifest}")
    list(APPEND taken_manifests "${taken}")
    list(APPEND copies COMMAND "${CMAKE_COMMAND}" -E copy "${manifest}" "${taken}")
    file(MAKE_DIRECTORY "${work_dir}/${name}")
  endforeach()
  set(check COMMAND "${checker}" ${strict} ${named_manifests})
  set(comment "Checking the manifest of bundle ${target}")
  if(arg_UNCHECKED)
    set(check "")
    set(checker "")
    set(comment "Taking the manifest of bundle ${target} as it is")
  endif()
  add_custom_command(
    OUTPUT ${taken_manifests}
    ${check}
    ${copies}
    DEPENDS ${manifests} ${checker}
    COMMENT "${comment}"
    VERBATIM)
endmacro()

# A source may also be made by the build, or lie in the binary directory, as for add_library().
macro(_ostrel_check_bundle_source)
  if(NOT source MATCHES "\\$<")
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}" NORMALIZE OUTPUT_VARIABLE in_source)
    cmake_path(ABSOLUTE_PATH source BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE OUTPUT_VARIABLE in_binary)
    get_source_file_property(generated "${in_source}" GENERATED)
    get_source_file_property(generated_in_binary "${in_binary}" GENERATED)
    if(NOT EXISTS "${in_source}" AND NOT EXISTS "${in_binary}" AND NOT generated AND NOT generated_in_binary)
      _ostrel_bundle_error("the source '${in_source}' does not exist.")
    endif()
  endif()
endmacro()

# The file's name and place are exact: the variables with which a project decorates its libraries do not count.
macro(_ostrel_name_bundle_file)
  set_target_properties(${target} PROPERTIES PREFIX "lib" SUFFIX ".so")
  if(DEFINED arg_FILE_NAME)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME "${arg_FILE_NAME}" SUFFIX "")
  endif()
  if(DEFINED arg_OUTPUT_DIRECTORY)
    # As everywhere in CMake, what is written goes below the binary directory unless the path is absolute.
    cmake_path(ABSOLUTE_PATH arg_OUTPUT_DIRECTORY BASE_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}" NORMALIZE)
    set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY "${arg_OUTPUT_DIRECTORY}")
  endif()
  set(configurations ${CMAKE_CONFIGURATION_TYPES})
  if(NOT configurations)
    set(configurations "${CMAKE_BUILD_TYPE}")
  endif()
  foreach(configuration IN LISTS configurations)
    string(TOUPPER "${configuration}" configuration)
    set_property(TARGET ${target} PROPERTY "${configuration}_POSTFIX" "")
    if(DEFINED arg_OUTPUT_DIRECTORY)
      set_property(TARGET ${target} PROPERTY "LIBRARY_OUTPUT_DIRECTORY_${configuration}" "${arg_OUTPUT_DIRECTORY}")
    endif()
  endforeach()
endmacro()

# Adds a unit that is nobody's to mend: no warnings, no precompiled header, no unity build, no code generators.
macro(_ostrel_add_generated_unit unit)
  target_sources(${target} PRIVATE "${unit}")
  set_source_files_properties("${unit}" PROPERTIES
    COMPILE_OPTIONS "-w"
    SKIP_AUTOGEN ON
    SKIP_PRECOMPILE_HEADERS ON
    SKIP_UNITY_BUILD_INCLUSION ON)
endmacro()

# The property is set directly because target_link_libraries() would bind the author to one of its two signatures.
macro(_ostrel_link_framework framework_target)
  set_property(TARGET ${target} APPEND PROPERTY LINK_LIBRARIES ${framework_target})
endmacro()

macro(_ostrel_embed_manifests_by_packer)
  if(NOT TARGET ostrel::bundle_packer OR NOT TARGET ostrel::framework)
    _ostrel_bundle_error("the targets ostrel::bundle_packer and ostrel::framework are not known in this directory. "
      "Call find_package(ostrel_us_container CONFIG REQUIRED) here or in a directory above.")
  endif()
  set(archive "${work_dir}/bundle.zip")
  set(pairs "")
  foreach(name manifest IN ZIP_LISTS names taken_manifests)
    list(APPEND pairs "${name}" "${manifest}")
  endforeach()
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND ostrel::bundle_packer "${archive}" ${pairs}
    DEPENDS ostrel::bundle_packer ${taken_manifests}
    COMMENT "Packing the manifest of bundle ${target}"
    VERBATIM)
  if(NOT "${arg_RESOURCES}" STREQUAL "")
    _ostrel_add_resources_to_archive()
  endif()
  _ostrel_embed_archive(${target} "${archive}" "${work_dir}/archive.cpp")
  set_property(TARGET ${target} PROPERTY OSTREL_EMBEDDED_ARCHIVE TRUE)
  _ostrel_link_framework(ostrel::framework)
endmacro()

# Makes another archive of the one with the manifests and the resources.
macro(_ostrel_add_resources_to_archive)
  set(manifest_archive "${archive}")
  set(archive "${work_dir}/resources.zip")
  set(files "")
  set(inputs "${manifest_archive}")
  foreach(resource IN LISTS arg_RESOURCES)
    list(APPEND files --res-add "${resource}")
    list(APPEND inputs "${arg_RESOURCE_DIRECTORY}/${resource}")
  endforeach()
  add_custom_command(
    OUTPUT "${archive}"
    COMMAND ostrel::resource_compiler --bundle-name ${arg_SYMBOLIC_NAME} --out-file "${archive}"
      --zip-add "${manifest_archive}" ${files}
    WORKING_DIRECTORY "${arg_RESOURCE_DIRECTORY}"
    DEPENDS ostrel::resource_compiler ${inputs}
    COMMENT "Packing the resources of bundle ${target}"
    VERBATIM)
endmacro()

# The installed framework's own functions, in their LINK mode: the default one appends the archive to the file, and
# strip would cut it off again.
macro(_ostrel_embed_manifests_by_installed_framework)
  # Its functions need variables and targets that are seen only where the package was found.
  if(NOT TARGET CppMicroServices OR NOT TARGET usResourceCompiler OR NOT COMMAND usFunctionEmbedResources
      OR NOT DEFINED US_RCC_EXECUTABLE_TARGET)
    find_package(CppMicroServices 3.8.4 CONFIG QUIET)
  endif()
  if(NOT TARGET CppMicroServices OR NOT COMMAND usFunctionEmbedResources)
    _ostrel_bundle_error("no framework is known in this directory. Call "
      "find_package(ostrel_us_container CONFIG REQUIRED) before, or give the prefix of CppMicroServices 3.8.4 with "
      "-DCMAKE_PREFIX_PATH=<prefix>.")
  endif()
  if(NOT US_RESOURCE_LINKING_AVAILABLE)
    # CMake takes lld for clang where it is installed, which cannot wrap a bare file in an object as it is asked to. The
    # linker of binutils does that part then; the library itself is linked as the project wishes.
    find_program(OSTREL_BINARY_WRAPPER NAMES ld.bfd ld DOC "The linker of binutils, which wraps manifests in objects")
    mark_as_advanced(OSTREL_BINARY_WRAPPER)
    if(NOT OSTREL_BINARY_WRAPPER)
      _ostrel_bundle_error("the linker '${CMAKE_LINKER}' cannot wrap the manifest in an object, and that of binutils "
        "was not found. On Debian: apt-get install binutils")
    endif()
    set(CMAKE_LINKER "${OSTREL_BINARY_WRAPPER}")
    set(US_RESOURCE_LINKING_AVAILABLE 1)
  endif()
  # Its functions write below <binary directory>/<target>, where a bundle with that file name may have to go.
  set(CMAKE_CURRENT_BINARY_DIR "${work_dir}")
  foreach(name IN LISTS names)
    usFunctionAddResources(TARGET ${target} BUNDLE_NAME ${name}
      WORKING_DIRECTORY "${work_dir}/${name}" FILES manifest.json)
  endforeach()
  if(NOT "${arg_RESOURCES}" STREQUAL "")
    usFunctionAddResources(TARGET ${target} BUNDLE_NAME ${arg_SYMBOLIC_NAME}
      WORKING_DIRECTORY "${arg_RESOURCE_DIRECTORY}" FILES ${arg_RESOURCES})
  endif()
  set(resources "")
  usFunctionGetResourceSource(TARGET ${target} OUT resources LINK)
  usFunctionEmbedResources(TARGET ${target} LINK)
  target_sources(${target} PRIVATE ${resources})
  _ostrel_link_framework(CppMicroServices)
endmacro()

cmake_policy(POP)

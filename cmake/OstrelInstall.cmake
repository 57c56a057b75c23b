# What `cmake --install` gives: headers, libraries, programs and a relocatable CMake package. Paths between installed
# files are relative everywhere, so the prefix may be moved. The build tree gets a package of the same kind.
include(CMakePackageConfigHelpers)

set(OSTREL_INSTALL_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/ostrel_us_container")
set(OSTREL_INSTALL_LIBEXECDIR "${CMAKE_INSTALL_LIBEXECDIR}/ostrel_us_container")

# ostrel_set_install_run_path(<target> <directory in which it is installed>)
#
# Installed programs and libraries find each other from where they lie themselves.
function(ostrel_set_install_run_path target directory)
  if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${directory}")
    set(run_path "${CMAKE_INSTALL_FULL_LIBDIR}")
  else()
    file(RELATIVE_PATH way "/prefix/${directory}" "/prefix/${CMAKE_INSTALL_LIBDIR}")
    string(REGEX REPLACE "/$" "" run_path "\$ORIGIN/${way}")
  endif()
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "${run_path}")
  if(OSTREL_FRAMEWORK_TAKEN STREQUAL "system")
    # An installed framework may lie outside of the directories that the loader searches.
    set_target_properties(${target} PROPERTIES INSTALL_RPATH_USE_LINK_PATH ON)
  endif()
endfunction()

ostrel_set_install_run_path(ostrel_us_container "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS ostrel_us_container EXPORT ostrel_us_container-targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET public_headers DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ostrel_us_container")
ostrel_set_install_run_path(ostrel_inspection "${CMAKE_INSTALL_LIBDIR}")
install(TARGETS ostrel_inspection EXPORT ostrel_us_container-targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  FILE_SET public_headers DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/ostrel_us_container")

if(OSTREL_FRAMEWORK_TAKEN STREQUAL "embedded")
  # In a directory of their own, so that they never shadow or overwrite those of an installed CppMicroServices.
  set(directory "${CMAKE_INSTALL_INCLUDEDIR}/ostrel_framework")
  target_include_directories(ostrel_framework INTERFACE "$<INSTALL_INTERFACE:${directory}>")
  install(DIRECTORY "${PROJECT_SOURCE_DIR}/framework/include/cppmicroservices" DESTINATION "${directory}"
    FILES_MATCHING PATTERN "*.h")
  ostrel_set_install_run_path(ostrel_framework "${CMAKE_INSTALL_LIBDIR}")
  install(TARGETS ostrel_framework EXPORT ostrel_framework-targets
    LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}")
  foreach(tool ostrel_bundle_packer ostrel_resource_compiler)
    ostrel_set_install_run_path(${tool} "${OSTREL_INSTALL_LIBEXECDIR}")
    install(TARGETS ${tool} EXPORT ostrel_framework-targets RUNTIME DESTINATION "${OSTREL_INSTALL_LIBEXECDIR}")
  endforeach()
  # A package of its own, so that bundles can be built without what the container needs. Its name keeps it from being
  # found as CppMicroServices unless somebody points there.
  set(OSTREL_INSTALL_FRAMEWORK_CMAKEDIR "${CMAKE_INSTALL_LIBDIR}/cmake/ostrel_framework")
  install(EXPORT ostrel_framework-targets
    FILE ostrel_frameworkTargets.cmake
    NAMESPACE ostrel::
    DESTINATION "${OSTREL_INSTALL_FRAMEWORK_CMAKEDIR}")
  set(framework_files
    "${PROJECT_SOURCE_DIR}/cmake/framework/CppMicroServicesConfig.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/framework/CppMicroServicesConfigVersion.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/framework/OstrelEmbeddedFramework.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/OstrelBundleArchive.cmake"
    "${PROJECT_SOURCE_DIR}/cmake/OstrelBundleArchive.cpp.in"
    "${PROJECT_SOURCE_DIR}/cmake/OstrelResourceFunctions.cmake")
  install(FILES ${framework_files} DESTINATION "${OSTREL_INSTALL_FRAMEWORK_CMAKEDIR}")
else()
  install(TARGETS ostrel_framework EXPORT ostrel_us_container-targets)
endif()

# What ostrel_add_bundle() checks manifests with, and what editors check them with. The program needs no framework.
install(TARGETS ostrel_bundle_checker EXPORT ostrel_us_container-targets
  RUNTIME DESTINATION "${OSTREL_INSTALL_LIBEXECDIR}")
install(FILES "${PROJECT_SOURCE_DIR}/bundle_checker/manifest.schema.json"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/ostrel_us_container")
# What the outputs of ostrel-host and of inspection/ hold.
install(FILES
    "${PROJECT_SOURCE_DIR}/inspection/schemas/explanation.schema.json"
    "${PROJECT_SOURCE_DIR}/inspection/schemas/inspection.schema.json"
    "${PROJECT_SOURCE_DIR}/inspection/schemas/plan.schema.json"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/ostrel_us_container/schemas")

if(TARGET ostrel_host)
  ostrel_set_install_run_path(ostrel_host "${CMAKE_INSTALL_BINDIR}")
  install(TARGETS ostrel_host RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(EXPORT ostrel_us_container-targets
  FILE ostrel_us_containerTargets.cmake
  NAMESPACE ostrel::
  DESTINATION "${OSTREL_INSTALL_CMAKEDIR}")

# The build tree has the same package, in folders named as those of an installation. What the two share is made or
# copied there, and installed from there; where the targets' files lie is what each says by itself.
set(package "${PROJECT_BINARY_DIR}/lib/cmake/ostrel_us_container")
set(package_files ostrel_us_containerConfig.cmake ostrel_us_containerConfigVersion.cmake)
configure_file("${PROJECT_SOURCE_DIR}/cmake/ostrel_us_containerConfig.cmake.in"
  "${package}/ostrel_us_containerConfig.cmake" @ONLY)
write_basic_package_version_file("${package}/ostrel_us_containerConfigVersion.cmake" COMPATIBILITY SameMajorVersion)
# Whoever names the build tree itself, as ostrel_us_container_DIR does, comes there too.
foreach(file IN LISTS package_files)
  file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/${file}" @ONLY
    CONTENT "include(\"\${CMAKE_CURRENT_LIST_DIR}/lib/cmake/ostrel_us_container/@file@\")\n")
endforeach()
# ostrel_add_bundle() with the files that it reads.
foreach(file OstrelAddBundle.cmake OstrelBundleArchive.cmake OstrelBundleArchive.cpp.in OstrelBundleInit.cpp.in)
  configure_file("${PROJECT_SOURCE_DIR}/cmake/${file}" "${package}/${file}" COPYONLY)
  list(APPEND package_files ${file})
endforeach()
list(TRANSFORM package_files PREPEND "${package}/")
install(FILES ${package_files} DESTINATION "${OSTREL_INSTALL_CMAKEDIR}")
export(EXPORT ostrel_us_container-targets NAMESPACE ostrel:: FILE "${package}/ostrel_us_containerTargets.cmake")
if(OSTREL_FRAMEWORK_TAKEN STREQUAL "embedded")
  set(package "${PROJECT_BINARY_DIR}/lib/cmake/ostrel_framework")
  foreach(file IN LISTS framework_files)
    cmake_path(GET file FILENAME name)
    configure_file("${file}" "${package}/${name}" COPYONLY)
  endforeach()
  export(EXPORT ostrel_framework-targets NAMESPACE ostrel:: FILE "${package}/ostrel_frameworkTargets.cmake")
endif()

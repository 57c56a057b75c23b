# The embedded framework of an installed build: its targets, under the names too that projects written for
# CppMicroServices know, and the functions for resources.
include("${CMAKE_CURRENT_LIST_DIR}/ostrel_frameworkTargets.cmake")
if(NOT TARGET CppMicroServices)
  add_library(CppMicroServices ALIAS ostrel::framework)
endif()
if(NOT TARGET usResourceCompiler)
  add_executable(usResourceCompiler ALIAS ostrel::resource_compiler)
endif()
include("${CMAKE_CURRENT_LIST_DIR}/OstrelResourceFunctions.cmake")

# Lets a bundle project that was written for CppMicroServices 3.8.4 be built, unchanged, for the embedded framework:
#
#   cmake -DCppMicroServices_DIR=<prefix>/<libdir>/cmake/ostrel_framework ...
#
# Without that, find_package(CppMicroServices) never comes here.
if(TARGET CppMicroServices)
  get_target_property(_ostrel_original CppMicroServices ALIASED_TARGET)
  if(NOT _ostrel_original STREQUAL "ostrel::framework")
    set(CppMicroServices_FOUND FALSE)
    set(CppMicroServices_NOT_FOUND_MESSAGE
      "the embedded framework cannot be used here, as a target CppMicroServices of another framework exists already.")
    unset(_ostrel_original)
    return()
  endif()
  unset(_ostrel_original)
endif()

include("${CMAKE_CURRENT_LIST_DIR}/OstrelEmbeddedFramework.cmake")

set(US_FOUND TRUE)
set(CppMicroServices_LIBRARIES CppMicroServices)
set(US_LIBRARIES CppMicroServices)
get_target_property(US_RUNTIME_LIBRARY_DIRS ostrel::framework LOCATION)
get_filename_component(US_RUNTIME_LIBRARY_DIRS "${US_RUNTIME_LIBRARY_DIRS}" DIRECTORY)
set(CppMicroServices_RUNTIME_LIBRARY_DIRS "${US_RUNTIME_LIBRARY_DIRS}")
set(US_Framework_FOUND TRUE)
set(US_Framework_LIBRARIES CppMicroServices)
set(US_ENABLE_THREADING_SUPPORT ON)

# Projects use Threads::Threads and CMAKE_THREAD_LIBS_INIT without finding them themselves.
if(NOT CMAKE_THREAD_LIBS_INIT)
  set(THREADS_PREFER_PTHREAD_FLAG 1)
  find_package(Threads REQUIRED)
endif()

# The embedded framework is one library; the original's further components are not there.
foreach(_ostrel_component IN LISTS CppMicroServices_FIND_COMPONENTS)
  if(_ostrel_component STREQUAL "Framework")
    set(CppMicroServices_${_ostrel_component}_FOUND TRUE)
  elseif(CppMicroServices_FIND_REQUIRED_${_ostrel_component})
    set(CppMicroServices_FOUND FALSE)
    set(CppMicroServices_NOT_FOUND_MESSAGE
      "the embedded framework has no component ${_ostrel_component}, only Framework. Use an installed CppMicroServices.")
  endif()
endforeach()
unset(_ostrel_component)

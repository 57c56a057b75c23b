# cmake -DCOMPILER=… -DINCLUDE=… -DHEADER=cppmicroservices/… -DREADME=… -DWORK=… -P AbsentHeader.cmake
#
# Including the header fails for the one reason that it is missing, and the README says that it is left out.
set(ENV{LC_ALL} C)
cmake_path(GET HEADER FILENAME name)
set(source "${WORK}/${name}.cpp")

function(compile header)
  file(WRITE "${source}" "#include <${header}>\nint main() {}\n")
  execute_process(COMMAND "${COMPILER}" -std=c++17 -fsyntax-only "-I${INCLUDE}" "${source}"
    RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
  set(status "${status}" PARENT_SCOPE)
  set(output "${output}" PARENT_SCOPE)
endfunction()

compile(cppmicroservices/Bundle.h)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "a header that is there does not compile either:\n${output}")
endif()
compile("${HEADER}")
if(status EQUAL 0)
  message(FATAL_ERROR "${HEADER} can be included; README.md and this list of absent headers are out of date")
endif()
if(NOT output MATCHES "${name}'?:? (No such file or directory|file not found)")
  message(FATAL_ERROR "${HEADER} fails for another reason than being absent:\n${output}")
endif()

# The README names a header, or the folder of those of the compendium.
file(READ "${README}" readme)
string(REGEX REPLACE "^cppmicroservices/" "" shown "${HEADER}")
if(shown MATCHES "^([a-z]+/)")
  set(shown "${CMAKE_MATCH_1}")
endif()
string(FIND "${readme}" "`${shown}`" position)
if(position EQUAL -1)
  message(FATAL_ERROR "${README} does not say that `${shown}` is left out")
endif()

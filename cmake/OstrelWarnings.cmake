# Warnings for this project's own targets; never part of an installed or exported interface.
add_library(ostrel_warnings INTERFACE)
target_compile_options(ostrel_warnings INTERFACE -Wall -Wextra -Wpedantic)
if(OSTREL_WARNINGS_AS_ERRORS)
  target_compile_options(ostrel_warnings INTERFACE -Werror)
endif()

# The one place for compiler flags that all of our targets share.
add_library(intake_warnings INTERFACE)
target_compile_options(intake_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
if(INTAKE_COVERAGE)
  target_compile_options(intake_warnings INTERFACE --coverage)
  target_link_options(intake_warnings INTERFACE --coverage)
endif()

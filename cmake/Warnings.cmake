# The one place for compiler flags that all of our targets share.
add_library(intake_warnings INTERFACE)
target_compile_options(intake_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
# Clang counts signs among the conversions of C++, g++ does not: both hold to the same set.
target_compile_options(intake_warnings INTERFACE
  $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-sign-conversion>)
# Truths are joined bit by bit where a jump would cost more than both.
target_compile_options(intake_warnings INTERFACE
  $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-bitwise-instead-of-logical>)
# GCC 12 sees overlapping copies in the concatenation of a literal and a std::string, which are none
# (its bug 105651).
target_compile_options(intake_warnings INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
if(INTAKE_COVERAGE)
  target_compile_options(intake_warnings INTERFACE --coverage)
  target_link_options(intake_warnings INTERFACE --coverage)
endif()

# The number in each library's soname. It says what a program can be linked with and is no part of the
# version: ./check abi tells when one must be raised. With one of them change the names of the Debian
# packages that carry it (debian/control) and what loads the libraries by name (system/posix.cpp,
# python/intake/_libraries.py).
set(INTAKE_SONAME_intakedl 0)
set(INTAKE_SONAME_qxbase 0)
set(INTAKE_SONAME_qxfeat 0)
set(INTAKE_SONAME_qxgridio 0)

function(intake_soname library map)
  set_target_properties(${library} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${INTAKE_SONAME_${library}})
  if(BUILD_SHARED_LIBS AND NOT WIN32)
    target_link_options(${library} PRIVATE -Wl,--version-script=${PROJECT_SOURCE_DIR}/cmake/${map})
    set_target_properties(${library} PROPERTIES LINK_DEPENDS ${PROJECT_SOURCE_DIR}/cmake/${map})
  endif()
endfunction()

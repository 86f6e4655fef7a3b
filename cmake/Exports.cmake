# What a library gives to others.

# Where libraries are not ELF files: intake_exports(TARGET HEADER...) exports the functions that the
# headers declare, under their plain names, and nothing else.
function(intake_exports target)
  set(names)
  foreach(header IN LISTS ARGN)
    file(READ ${header} text)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
    string(REGEX MATCHALL "(QX_API[^;(]*|int32_t\nImportFile)\\(" declarations "${text}")
    foreach(declaration IN LISTS declarations)
      string(REGEX REPLACE ".*[^A-Za-z0-9_]([A-Za-z0-9_]+)\\($" "\\1" name "${declaration}")
      list(APPEND names ${name})
    endforeach()
  endforeach()
  list(SORT names)
  list(JOIN names "\n  " lines)
  set(list ${PROJECT_BINARY_DIR}/${target}.def)
  file(CONFIGURE OUTPUT ${list} CONTENT "LIBRARY ${target}.dll\nEXPORTS\n  ${lines}\n")
  target_sources(${target} PRIVATE ${list})
  # The language's own libraries are in it, so that it needs none beside it.
  target_link_options(${target} PRIVATE -static)
  set_target_properties(${target} PROPERTIES PREFIX "" IMPORT_PREFIX "lib")
endfunction()

# The importer, its companions, and the static core that tests and fuzz targets link.
# Sources are found by folder: a new section is a new file, and nothing else.
function(intake_sources variable)
  set(found)
  foreach(folder IN LISTS ARGN)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
    list(APPEND found ${sources})
  endforeach()
  set(${variable} ${found} PARENT_SCOPE)
endfunction()

# What a C or C++ program needs to call the companions and ImportFile.
add_library(intake_host INTERFACE)
target_include_directories(intake_host INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>)

# The operating system: one header, a file a system.
set(intake_system posix)
if(WIN32)
  set(intake_system windows)
  add_compile_definitions(_WIN32_WINNT=0x0A00)
  include(cmake/Exports.cmake)
endif()
add_library(intake_system STATIC system/${intake_system}.cpp)
target_include_directories(intake_system PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
target_link_libraries(intake_system PUBLIC ${CMAKE_DL_LIBS} PRIVATE intake_warnings)

intake_sources(store_sources companions/store)
add_library(qxstore STATIC ${store_sources})
target_link_libraries(qxstore PUBLIC intake_host intake_system PRIVATE intake_warnings)

# Shared companions hold the storage engine each for itself, so that any can be replaced. Of static
# ones qxbase has it for all.
foreach(companion qxbase qxfeat qxgridio)
  intake_sources(companion_sources companions/${companion})
  add_library(${companion} ${companion_sources})
  target_link_libraries(${companion} PUBLIC intake_host PRIVATE $<BUILD_INTERFACE:intake_warnings>)
  intake_soname(${companion} companions.map)
  if(BUILD_SHARED_LIBS)
    target_link_libraries(${companion} PRIVATE qxstore intake_system)
    if(WIN32)
      file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/host/${companion}/*.h)
      intake_exports(${companion} ${headers})
    else()
      target_link_options(${companion} PRIVATE -Wl,--exclude-libs,ALL)
    endif()
  endif()
endforeach()
target_link_libraries(qxfeat PRIVATE qxbase)
target_link_libraries(qxgridio PRIVATE qxbase)
if(NOT BUILD_SHARED_LIBS)
  target_sources(qxbase PRIVATE $<TARGET_OBJECTS:qxstore> $<TARGET_OBJECTS:intake_system>)
endif()

# Typed reading of what is stored, for C++ programs.
intake_sources(datasets_sources datasets)
add_library(intake_datasets STATIC ${datasets_sources})
target_link_libraries(intake_datasets PUBLIC intake_host qxbase qxfeat qxgridio
                      PRIVATE $<BUILD_INTERFACE:intake_warnings>)
set_target_properties(intake_datasets PROPERTIES EXPORT_NAME datasets)

intake_sources(stream_sources stream)
add_library(intake_stream STATIC ${stream_sources})
target_link_libraries(intake_stream PUBLIC intake_host qxbase PRIVATE intake_warnings)

intake_sources(core_sources coverage coverage/spatial_index tables tin raster symbols plots)
intake_sources(entry_sources entry)
add_library(intake_entry OBJECT ${entry_sources})
target_link_libraries(intake_entry PUBLIC intake_host PRIVATE intake_warnings)
add_library(intake_core STATIC ${core_sources} $<TARGET_OBJECTS:intake_entry>)
target_link_libraries(intake_core PUBLIC intake_stream qxfeat qxgridio
                      PRIVATE $<$<BOOL:${BUILD_SHARED_LIBS}>:intake_system> intake_warnings)

# libintakedl exports ImportFile and nothing else. As a static library it is one archive.
if(BUILD_SHARED_LIBS)
  add_library(intakedl SHARED $<TARGET_OBJECTS:intake_entry>)
  target_link_libraries(intakedl PUBLIC intake_host PRIVATE intake_core intake_warnings)
  if(WIN32)
    intake_exports(intakedl ${PROJECT_SOURCE_DIR}/include/intakedl.h)
  endif()
  # A sanitizer's own functions come with the program.
  if(NOT WIN32 AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    target_link_options(intakedl PRIVATE -Wl,--no-undefined)
  endif()
  intake_soname(intakedl intakedl.map)
else()
  target_compile_definitions(intake_entry PRIVATE INTAKE_COMPANIONS_LINKED)
  add_library(intakedl STATIC $<TARGET_OBJECTS:intake_entry> $<TARGET_OBJECTS:intake_core>
    $<TARGET_OBJECTS:intake_stream>)
  target_link_libraries(intakedl PUBLIC intake_host qxfeat qxgridio qxbase ${CMAKE_DL_LIBS})
  set_target_properties(intakedl PROPERTIES LINKER_LANGUAGE CXX)
endif()

# Static libraries beside the shared ones, of the same objects; only the entry is another, since the
# companions are linked to it and not loaded.
set(INTAKE_STATIC_TARGETS)
if(BUILD_SHARED_LIBS AND INTAKE_STATIC_TOO)
  add_library(intake_linked_entry OBJECT ${entry_sources})
  target_compile_definitions(intake_linked_entry PRIVATE INTAKE_COMPANIONS_LINKED)
  target_link_libraries(intake_linked_entry PRIVATE intake_host intake_warnings)
  add_library(intakedl_static STATIC $<TARGET_OBJECTS:intake_linked_entry>
    $<TARGET_OBJECTS:intake_core> $<TARGET_OBJECTS:intake_stream>)
  add_library(qxbase_static STATIC $<TARGET_OBJECTS:qxbase> $<TARGET_OBJECTS:qxstore>
    $<TARGET_OBJECTS:intake_system>)
  add_library(qxfeat_static STATIC $<TARGET_OBJECTS:qxfeat>)
  add_library(qxgridio_static STATIC $<TARGET_OBJECTS:qxgridio>)
  foreach(library intakedl qxbase qxfeat qxgridio)
    set_target_properties(${library}_static PROPERTIES OUTPUT_NAME ${library} LINKER_LANGUAGE CXX)
    list(APPEND INTAKE_STATIC_TARGETS ${library}_static)
  endforeach()
endif()

# Rooms for what is made of datasets; they know of none.
intake_sources(topology_sources topology)
add_library(intake_topology STATIC ${topology_sources})
target_include_directories(intake_topology PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(intake_topology PRIVATE intake_warnings)

# A library without the program needs no library of someone else.
if(INTAKE_PROGRAM)
  find_package(PkgConfig REQUIRED)
  pkg_check_modules(PROJ REQUIRED IMPORTED_TARGET proj>=9.1)
  intake_sources(crs_sources crs)
  add_library(intake_crs STATIC ${crs_sources})
  target_include_directories(intake_crs PUBLIC ${PROJECT_SOURCE_DIR})
  target_link_libraries(intake_crs PUBLIC PkgConfig::PROJ PRIVATE intake_warnings)
endif()

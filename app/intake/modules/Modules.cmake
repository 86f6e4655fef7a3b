# The modules of the program (module.h): a line each, and a file NAME.cpp here that ends in
# INTAKE_MODULE.

# intake_module(NAME SOURCES FILE... LIBRARIES TARGET...) makes lib/intake/NAME.so, which nothing
# links: a library of someone else that it needs is loaded when it is.
function(intake_module name)
  cmake_parse_arguments(PARSE_ARGV 1 module "" "" "SOURCES;LIBRARIES")
  set(target intake_module_${name})
  add_library(${target} MODULE ${module_SOURCES})
  target_link_libraries(${target} PRIVATE intake_host ${module_LIBRARIES} intake_warnings)
  target_compile_definitions(${target} PRIVATE INTAKE_VERSION="${PROJECT_VERSION}")
  target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL)
  set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME ${name}
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_LIBRARY_OUTPUT_DIRECTORY}/intake
    INSTALL_RPATH "$ORIGIN;$ORIGIN/..")
  install(TARGETS ${target} DESTINATION ${CMAKE_INSTALL_LIBDIR}/intake)
  set(INTAKE_MODULE_TARGETS ${INTAKE_MODULE_TARGETS} ${target} PARENT_SCOPE)
endfunction()

pkg_check_modules(CAIRO REQUIRED IMPORTED_TARGET cairo)
intake_module(png SOURCES modules/png.cpp LIBRARIES PkgConfig::CAIRO)
intake_module(geopackage SOURCES modules/geopackage.cpp LIBRARIES intake_geopackage)
intake_module(gather SOURCES modules/gather.cpp LIBRARIES intake_geopackage)
intake_module(geotiff SOURCES modules/geotiff.cpp LIBRARIES intake_geotiff)
intake_module(proj SOURCES modules/proj.cpp LIBRARIES intake_crs)

pkg_check_modules(ARCHIVE REQUIRED IMPORTED_TARGET GLOBAL libarchive zlib)
file(GLOB containers_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/containers/*.cpp)
intake_module(archive SOURCES modules/archive.cpp ${containers_sources}
              LIBRARIES PkgConfig::ARCHIVE)

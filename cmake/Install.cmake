# Installs the libraries, their headers, the program, a CMake package and a pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS intakedl qxbase qxfeat qxgridio intake_host intake_datasets EXPORT intakeTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${CMAKE_INSTALL_INCLUDEDIR}/intake)
if(INTAKE_STATIC_TARGETS)
  install(TARGETS ${INTAKE_STATIC_TARGETS} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
install(FILES include/intakedl.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY host datasets DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/intake
  FILES_MATCHING PATTERN "*.h")
install(EXPORT intakeTargets NAMESPACE intake:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/intake)

configure_package_config_file(cmake/intakeConfig.cmake.in ${PROJECT_BINARY_DIR}/intakeConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/intake)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/intakeConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/intakeConfig.cmake ${PROJECT_BINARY_DIR}/intakeConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/intake)

# By way of its own folder, so that an installed tree can be moved.
file(RELATIVE_PATH to_prefix
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
# Static libraries say what they are made with; beside shared ones it is told to those who ask for
# static ones.
set(pc_more)
set(pc_private "-lstdc++ -lm -ldl")
if(NOT BUILD_SHARED_LIBS)
  set(pc_more "${pc_private}")
  set(pc_private)
endif()
configure_file(cmake/intakedl.pc.in ${PROJECT_BINARY_DIR}/intakedl.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/intakedl.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
  WORKING_DIRECTORY ${PROJECT_BINARY_DIR} USES_TERMINAL)

# SPDX-License-Identifier: MIT
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/Tallyscope)
set(libraries tallyscope_core)
if(TARGET tallyscope_workbench)
  list(APPEND libraries tallyscope_workbench)
endif()
install(TARGETS ${libraries} EXPORT TallyscopeTargets
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/tallyscope)
install(EXPORT TallyscopeTargets NAMESPACE Tallyscope:: DESTINATION ${package_dir})
configure_package_config_file(cmake/TallyscopeConfig.cmake.in ${PROJECT_BINARY_DIR}/TallyscopeConfig.cmake
  INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/TallyscopeConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/TallyscopeConfig.cmake ${PROJECT_BINARY_DIR}/TallyscopeConfigVersion.cmake
  DESTINATION ${package_dir})

if(NOT TALLYSCOPE_CORE_ONLY)
  if(TARGET tallyscope)
  install(TARGETS tallyscope RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
  install(FILES resources/tallyscope.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
  install(FILES resources/tallyscope.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
endif()
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/tallyscope/examples)

# Installation: headers, libraries, the colorconfig program, a CMake package
# (find_package(VerraColorConfig) with the imported targets verra::core and
# verra::colorconfig) and a pkg-config file.
include(CMakePackageConfigHelpers)

set(VERRA_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/VerraColorConfig")

install(TARGETS orv_core verra_colorconfig
  EXPORT VerraColorConfigTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY core/include/ sdk/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(VERRA_BUILD_TOOLS)
  install(TARGETS colorconfig RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT VerraColorConfigTargets
  NAMESPACE verra::
  DESTINATION ${VERRA_CMAKE_DIR})
configure_package_config_file(cmake/VerraColorConfigConfig.cmake.in
  "${PROJECT_BINARY_DIR}/VerraColorConfigConfig.cmake"
  INSTALL_DESTINATION ${VERRA_CMAKE_DIR})
write_basic_package_version_file("${PROJECT_BINARY_DIR}/VerraColorConfigConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${PROJECT_BINARY_DIR}/VerraColorConfigConfig.cmake"
  "${PROJECT_BINARY_DIR}/VerraColorConfigConfigVersion.cmake"
  cmake/VerraFilterIncludes.cmake
  DESTINATION ${VERRA_CMAKE_DIR})

configure_file(cmake/verra-colorconfig.pc.in "${PROJECT_BINARY_DIR}/verra-colorconfig.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/verra-colorconfig.pc"
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

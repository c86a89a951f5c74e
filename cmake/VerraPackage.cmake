# Installation: headers, libraries, the colorconfig program, a CMake package
# (find_package(VerraColorConfig) with the imported targets verra::core,
# verra::colorconfig and verra::colorkit) and a pkg-config file per library
# (verra-colorconfig, verra-colorkit).
include(CMakePackageConfigHelpers)

set(VERRA_CMAKE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/VerraColorConfig")

# Installed binaries find the installed libraries relative to their own
# folder, so that any prefix works (cmake --install --prefix <any>) without
# LD_LIBRARY_PATH: the program looks in ../lib (its libdir), and the module
# library finds verra_core beside itself.
file(RELATIVE_PATH verra_bin_to_lib "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
set_target_properties(orv_core verra_colorconfig verra_colorkit PROPERTIES INSTALL_RPATH "$ORIGIN")
if(VERRA_BUILD_TOOLS)
  set_target_properties(colorconfig PROPERTIES INSTALL_RPATH "$ORIGIN/${verra_bin_to_lib}")
endif()

install(TARGETS orv_core verra_colorconfig verra_colorkit
  EXPORT VerraColorConfigTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY core/include/ sdk/include/ kit/include/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(VERRA_BUILD_TOOLS)
  install(TARGETS colorconfig RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()

install(EXPORT VerraColorConfigTargets
  NAMESPACE verra::
  DESTINATION ${VERRA_CMAKE_DIR})
get_target_property(VERRA_COLORCONFIG_TYPE verra_colorconfig TYPE)
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

# The pkg-config file names its prefix relative to its own folder, so that it
# stays right when the tree is installed with another prefix than the one
# configured, or moved afterwards.
file(RELATIVE_PATH VERRA_PC_PREFIX_FROM_PCFILEDIR
  "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" VERRA_PC_PREFIX_FROM_PCFILEDIR "${VERRA_PC_PREFIX_FROM_PCFILEDIR}")
foreach(pc verra-colorconfig verra-colorkit)
  configure_file(cmake/${pc}.pc.in "${PROJECT_BINARY_DIR}/${pc}.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${pc}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endforeach()

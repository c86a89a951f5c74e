# Finds OpenImageIO (CMake package) and OpenColorIO (pkg-config).
#
# Three traps of the Debian 12 packages are handled here:
# - OpenImageIO's CMake package (in libopenimageio-dev) declares imported
#   targets for its command-line programs and refuses to load unless those
#   programs exist, but they ship in openimageio-tools. .ci/setup-debian
#   installs that package rather than finding OpenImageIO some other way: a
#   host that links our installed package runs the same find_package and would
#   hit the same wall, and the tests compare our output with oiiotool's;
# - OpenColorIO's CMake package lives under /usr/share/cmake, which the default
#   search does not reach, so it is found through OpenColorIO.pc instead;
# - OpenImageIO's imported target lists /usr/include/opencv4 among its include
#   directories whether or not OpenCV is installed; CMake refuses non-existent
#   include directories at generate time, so they are filtered out.
include(CMakeFindDependencyMacro)

find_package(OpenImageIO 2.4 CONFIG REQUIRED)
include(${CMAKE_CURRENT_LIST_DIR}/VerraFilterIncludes.cmake)
verra_filter_missing_includes(OpenImageIO::OpenImageIO)
verra_filter_missing_includes(OpenImageIO::OpenImageIO_Util)

find_package(PkgConfig REQUIRED)
pkg_check_modules(OpenColorIO REQUIRED IMPORTED_TARGET OpenColorIO>=2.1)

# The command-line program's own libraries (header-only but for {fmt}): the
# tests read its JSON with nlohmann/json too, so they are found here, where
# every folder sees them.
if(VERRA_BUILD_TOOLS)
  find_package(CLI11 CONFIG REQUIRED)
  find_package(nlohmann_json 3 CONFIG REQUIRED)
  find_package(fmt CONFIG REQUIRED)
endif()

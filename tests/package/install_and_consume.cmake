# cmake -DMODE=install_layout|find_package|pkg_config -DBUILD_DIR=... ... -P install_and_consume.cmake
#
# Installs the build tree BUILD_DIR into a fresh temporary prefix, then:
#   install_layout  checks that the prefix holds every public header, the
#                   libraries (LIB_FILES, ',' between the names), the program
#                   (TOOL_FILE, when built), the CMake package and the
#                   pkg-config file, and nothing else; runs the installed
#                   `colorconfig --version` without LD_LIBRARY_PATH; with
#                   the Python module (PYTHON_FILES, ',' between them,
#                   relative to the prefix), imports it with PYTHON and a
#                   PYTHONPATH of its folder alone;
#   find_package    configures, builds and runs the CMake project CONSUMER_DIR
#                   with CMAKE_PREFIX_PATH=<prefix>;
#   pkg_config      compiles CONSUMER_DIR/host.cpp with CXX and the flags of
#                   `pkg-config --cflags --libs verra-colorkit`, and runs it
#                   with LD_LIBRARY_PATH=<prefix>/LIBDIR;
#   add_subdirectory configures, builds and runs SUBDIRECTORY_CONSUMER_DIR,
#                   which adds PROJECT_SOURCE with add_subdirectory (nothing
#                   is installed for it), and checks that only the libraries
#                   were built.
# The host runs with HOME and XDG_CONFIG_HOME pointing at an empty folder and
# without OCIO. The temporary folder is removed at the end, on success and on
# failure; nothing is written into the source tree.

cmake_minimum_required(VERSION 3.25)

foreach(var MODE BUILD_DIR PROJECT_SOURCE CONSUMER_DIR VERSION BINDIR LIBDIR INCLUDEDIR LIB_FILES CXX)
  if("${${var}}" STREQUAL "")
    message(FATAL_ERROR "install_and_consume.cmake: -D${var}=... is required")
  endif()
endforeach()
string(REPLACE "," ";" LIB_FILES "${LIB_FILES}")
string(REPLACE "," ";" PYTHON_FILES "${PYTHON_FILES}")
separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
separate_arguments(exe_linker_flags UNIX_COMMAND "${EXE_LINKER_FLAGS}")

# A fresh temporary folder: <work>/prefix, <work>/home (empty), <work>/build.
set(tmp "$ENV{TMPDIR}")
if("${tmp}" STREQUAL "" OR NOT IS_DIRECTORY "${tmp}")
  set(tmp "/tmp")
endif()
string(RANDOM LENGTH 10 suffix)
set(work "${tmp}/verra-package-${MODE}-${suffix}")
set(prefix "${work}/prefix")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}/home" "${work}/build")

macro(fail text)
  file(REMOVE_RECURSE "${work}")
  message(FATAL_ERROR "${text}")
endmacro()

# run(<what> COMMAND ...): runs the command, fails with its output unless it
# exits with 0; leaves the output in `run_output`.
function(run what)
  cmake_parse_arguments(arg "" "" "COMMAND" ${ARGN})
  execute_process(COMMAND ${arg_COMMAND}
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    string(REPLACE ";" " " shown "${arg_COMMAND}")
    fail("${what} failed (${rc}):\n${shown}\n${out}")
  endif()
  set(run_output "${out}" PARENT_SCOPE)
endfunction()

# The host must see no configuration but the built-in one.
macro(isolate_host)
  set(ENV{HOME} "${work}/home")
  set(ENV{XDG_CONFIG_HOME} "${work}/home")
  unset(ENV{OCIO})
endmacro()

function(check_host_output text)
  # The host checks the built-in colour spaces itself.
  foreach(expected "host: all checks passed")
    if(NOT text MATCHES "${expected}")
      fail("the host did not print '${expected}':\n${text}")
    endif()
  endforeach()
endfunction()

set(generator_args -G "${GENERATOR}")
if(NOT "${MAKE_PROGRAM}" STREQUAL "")
  list(APPEND generator_args "-DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM}")
endif()

if(MODE STREQUAL "add_subdirectory")
  run("configuring the add_subdirectory host"
    COMMAND "${CMAKE_COMMAND}" -S "${SUBDIRECTORY_CONSUMER_DIR}" -B "${work}/build" ${generator_args}
      "-DVERRA_SOURCE=${PROJECT_SOURCE}"
      "-DCMAKE_CXX_COMPILER=${CXX}"
      "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
      "-DCMAKE_CXX_FLAGS=${CXX_FLAGS}"
      "-DCMAKE_EXE_LINKER_FLAGS=${EXE_LINKER_FLAGS}")
  run("building the add_subdirectory host" COMMAND "${CMAKE_COMMAND}" --build "${work}/build")
  # Only the libraries: no program, no tests.
  file(GLOB_RECURSE built LIST_DIRECTORIES false "${work}/build/verra/*colorconfig" "${work}/build/verra/*_tests")
  if(built)
    fail("add_subdirectory built more than the libraries: ${built}")
  endif()
  isolate_host()
  run("the add_subdirectory host" COMMAND "${work}/build/host")
  check_host_output("${run_output}")
  message("${run_output}")
  file(REMOVE_RECURSE "${work}")
  return()
endif()

run("cmake --install" COMMAND "${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${prefix}")
set(libdir "${prefix}/${LIBDIR}")
set(package_dir "${libdir}/cmake/VerraColorConfig")
set(pc_dir "${libdir}/pkgconfig")

if(MODE STREQUAL "install_layout")
  # Every public header, under the same relative path as in the source tree.
  set(expected "")
  foreach(include_root "${PROJECT_SOURCE}/core/include" "${PROJECT_SOURCE}/sdk/include"
                       "${PROJECT_SOURCE}/kit/include")
    file(GLOB_RECURSE headers RELATIVE "${include_root}" "${include_root}/*.h")
    foreach(header IN LISTS headers)
      list(APPEND expected "${INCLUDEDIR}/${header}")
    endforeach()
  endforeach()
  if(NOT "${INCLUDEDIR}/verra_sdk/colorconfig.h" IN_LIST expected)
    fail("found no public header in ${PROJECT_SOURCE}")
  endif()
  foreach(file IN LISTS LIB_FILES)
    list(APPEND expected "${LIBDIR}/${file}")
  endforeach()
  if(NOT "${TOOL_FILE}" STREQUAL "")
    list(APPEND expected "${BINDIR}/${TOOL_FILE}")
  endif()
  foreach(file VerraColorConfigConfig.cmake VerraColorConfigConfigVersion.cmake
               VerraColorConfigTargets.cmake VerraFilterIncludes.cmake)
    list(APPEND expected "${LIBDIR}/cmake/VerraColorConfig/${file}")
  endforeach()
  list(APPEND expected "${LIBDIR}/pkgconfig/verra-colorconfig.pc" "${LIBDIR}/pkgconfig/verra-colorkit.pc")
  list(APPEND expected ${PYTHON_FILES})

  file(GLOB_RECURSE installed LIST_DIRECTORIES false RELATIVE "${prefix}" "${prefix}/*")
  foreach(file IN LISTS expected)
    if(NOT file IN_LIST installed)
      fail("not installed: ${file}\ninstalled:\n${installed}")
    endif()
  endforeach()
  # Besides the expected files, only the per-configuration target files of
  # the CMake package (VerraColorConfigTargets-<config>.cmake).
  foreach(file IN LISTS installed)
    if(NOT file IN_LIST expected
       AND NOT file MATCHES "^${LIBDIR}/cmake/VerraColorConfig/VerraColorConfigTargets-[a-z]+\\.cmake$")
      fail("installed but not part of the package: ${file}")
    endif()
  endforeach()

  if(NOT "${TOOL_FILE}" STREQUAL "")
    # The installed program finds the installed libraries by itself.
    unset(ENV{LD_LIBRARY_PATH})
    run("the installed colorconfig --version" COMMAND "${prefix}/${BINDIR}/${TOOL_FILE}" --version)
    if(NOT "${run_output}" STREQUAL "colorconfig ${VERSION}\n")
      fail("the installed colorconfig --version printed:\n${run_output}")
    endif()
  endif()

  if(PYTHON_FILES)
    # The installed module finds the installed libraries by itself: its
    # folder on PYTHONPATH is enough.
    list(GET PYTHON_FILES 0 module)
    get_filename_component(python_dir "${prefix}/${module}" DIRECTORY)
    isolate_host()
    unset(ENV{LD_LIBRARY_PATH})
    set(ENV{PYTHONPATH} "${python_dir}")
    run("importing the installed Python module"
      COMMAND "${PYTHON}" -c "print(*(lambda v: (v.__file__, v.color_spaces()))(__import__('verra_colorconfig')))")
    if(NOT "${run_output}" STREQUAL "${prefix}/${module} ['linear', 'sRGB', 'Rec709']\n")
      fail("the installed Python module printed:\n${run_output}")
    endif()
  endif()

elseif(MODE STREQUAL "find_package")
  run("configuring the find_package host"
    COMMAND "${CMAKE_COMMAND}" -S "${CONSUMER_DIR}" -B "${work}/build" ${generator_args}
      "-DCMAKE_PREFIX_PATH=${prefix}"
      "-DCMAKE_CXX_COMPILER=${CXX}"
      "-DCMAKE_BUILD_TYPE=${BUILD_TYPE}"
      "-DCMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Werror ${CXX_FLAGS}"
      "-DCMAKE_EXE_LINKER_FLAGS=${EXE_LINKER_FLAGS}")
  # The package found is the one just installed, not another copy.
  file(STRINGS "${work}/build/CMakeCache.txt" found REGEX "^VerraColorConfig_DIR:")
  string(REGEX REPLACE "^[^=]*=" "" found "${found}")
  if(NOT "${found}" STREQUAL "${package_dir}")
    fail("find_package found VerraColorConfig in '${found}', not in '${package_dir}'")
  endif()
  run("building the find_package host" COMMAND "${CMAKE_COMMAND}" --build "${work}/build")
  # The imported targets give the host the run path of the installed libraries.
  isolate_host()
  unset(ENV{LD_LIBRARY_PATH})
  run("the find_package host" COMMAND "${work}/build/host")
  check_host_output("${run_output}")
  message("${run_output}")

elseif(MODE STREQUAL "pkg_config")
  if("${PKG_CONFIG}" STREQUAL "")
    fail("-DPKG_CONFIG=... is required")
  endif()
  set(ENV{PKG_CONFIG_PATH} "${pc_dir}")
  # The file found is the one just installed, and it names the prefix it
  # was installed into.
  run("pkg-config --variable=pcfiledir" COMMAND "${PKG_CONFIG}" --variable=pcfiledir verra-colorkit)
  string(STRIP "${run_output}" found)
  if(NOT "${found}" STREQUAL "${pc_dir}")
    fail("pkg-config found verra-colorkit in '${found}', not in '${pc_dir}'")
  endif()
  foreach(variable includedir libdir)
    run("pkg-config --variable=${variable}" COMMAND "${PKG_CONFIG}" --variable=${variable} verra-colorkit)
    string(STRIP "${run_output}" dir)
    file(REAL_PATH "${dir}" real)
    if(variable STREQUAL "includedir")
      set(wanted "${prefix}/${INCLUDEDIR}")
    else()
      set(wanted "${libdir}")
    endif()
    if(NOT "${real}" STREQUAL "${wanted}")
      fail("verra-colorkit.pc: ${variable} is '${dir}', not '${wanted}'")
    endif()
  endforeach()
  run("pkg-config --cflags --libs" COMMAND "${PKG_CONFIG}" --cflags --libs verra-colorkit)
  separate_arguments(pc_flags UNIX_COMMAND "${run_output}")
  run("compiling the pkg-config host"
    COMMAND "${CXX}" -std=c++17 -Wall -Wextra -Wpedantic -Werror ${cxx_flags}
      "${CONSUMER_DIR}/host.cpp" -o "${work}/build/host" ${pc_flags} ${exe_linker_flags})
  isolate_host()
  set(ENV{LD_LIBRARY_PATH} "${libdir}")
  run("the pkg-config host" COMMAND "${work}/build/host")
  check_host_output("${run_output}")
  message("${run_output}")

else()
  fail("unknown MODE '${MODE}'")
endif()

file(REMOVE_RECURSE "${work}")

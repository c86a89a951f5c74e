# cmake -DVALGRIND=... -DSUPPRESSIONS=... -DSHIM=... -DTOOL=... -DMAKE_IMAGES=...
#       -DNAME=... -DMODE=info|png|exr [-DCONFIG=<path in the shared folder>]
#       [-DFROM=<space> -DTO=<space>] -DSKIP_MARKER=... -P run_memcheck.cmake
#
# Runs the colorconfig program once under memcheck:
#   info:     colorconfig info [--config <cfg>]
#   png, exr: colorconfig convert --config <cfg> --from FROM --to TO IN OUT,
#             IN being an 8-bit RGBA PNG or a float RGBA EXR written here.
# The shared folder comes from $VERRA_SHARED_CONFIGS; when CONFIG is given and
# the folder is absent, the script prints SKIP_MARKER, which CTest reports as
# a skip. The program runs with HOME and XDG_CONFIG_HOME pointing at an empty
# folder and without OCIO, so that only --config (or the built-in spaces)
# decides the config. Everything is written in a fresh temporary folder that
# is removed at the end, on success and on failure.

cmake_minimum_required(VERSION 3.25)

foreach(var VALGRIND SUPPRESSIONS SHIM TOOL MAKE_IMAGES NAME MODE SKIP_MARKER)
  if("${${var}}" STREQUAL "")
    message(FATAL_ERROR "run_memcheck.cmake: -D${var}=... is required")
  endif()
endforeach()
if(NOT MODE MATCHES "^(info|png|exr)$")
  message(FATAL_ERROR "run_memcheck.cmake: unknown MODE '${MODE}'")
endif()
if(NOT MODE STREQUAL "info" AND ("${CONFIG}" STREQUAL "" OR "${FROM}" STREQUAL "" OR "${TO}" STREQUAL ""))
  message(FATAL_ERROR "run_memcheck.cmake: MODE ${MODE} needs CONFIG, FROM and TO")
endif()

set(args "")
if(NOT "${CONFIG}" STREQUAL "")
  set(shared "$ENV{VERRA_SHARED_CONFIGS}")
  if("${shared}" STREQUAL "" OR NOT IS_DIRECTORY "${shared}")
    message("${SKIP_MARKER}: VERRA_SHARED_CONFIGS does not name the folder of shared configs")
    return()
  endif()
  set(config_path "${shared}/${CONFIG}")
  if(NOT EXISTS "${config_path}")
    message(FATAL_ERROR "The shared folder has no ${CONFIG}")
  endif()
  list(APPEND args --config "${config_path}")
endif()

# A fresh temporary folder.
set(tmp "$ENV{TMPDIR}")
if("${tmp}" STREQUAL "" OR NOT IS_DIRECTORY "${tmp}")
  set(tmp "/tmp")
endif()
string(RANDOM LENGTH 10 suffix)
set(work "${tmp}/verra-memcheck-${NAME}-${suffix}")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}/home")

macro(fail text)
  file(REMOVE_RECURSE "${work}")
  message(FATAL_ERROR "${text}")
endmacro()

if(MODE STREQUAL "info")
  set(command info ${args})
else()
  execute_process(COMMAND "${MAKE_IMAGES}" "${work}"
    RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT rc EQUAL 0)
    fail("make_test_images failed (${rc}):\n${out}")
  endif()
  if(MODE STREQUAL "png")
    set(input "${work}/rgba8.png")
    set(output "${work}/out.png")
  else()
    set(input "${work}/float.exr")
    set(output "${work}/out.exr")
  endif()
  set(command convert ${args} --from "${FROM}" --to "${TO}" "${input}" "${output}")
endif()

set(ENV{HOME} "${work}/home")
set(ENV{XDG_CONFIG_HOME} "${work}/home")
unset(ENV{OCIO})
# Valgrind keeps its own preload next to this one.
set(ENV{LD_PRELOAD} "${SHIM}")

set(memcheck
  "${VALGRIND}" --tool=memcheck --error-exitcode=99
  --leak-check=full --errors-for-leak-kinds=definite
  "--suppressions=${SUPPRESSIONS}" --num-callers=40)
string(TIMESTAMP started "%s")
execute_process(COMMAND ${memcheck} "${TOOL}" ${command}
  RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
string(TIMESTAMP finished "%s")
math(EXPR seconds "${finished} - ${started}")

string(REPLACE ";" " " shown "${command}")
set(report "colorconfig ${shown}\n--- standard output\n${out}--- standard error (program and memcheck)\n${err}")
if(rc EQUAL 99)
  fail("memcheck found memory errors or definite leaks:\n${report}")
endif()
if(NOT DEFINED EXPECTED_EXIT)
  set(EXPECTED_EXIT 0)
endif()
if(NOT rc EQUAL EXPECTED_EXIT)
  fail("the program under memcheck exited with ${rc}, not ${EXPECTED_EXIT}:\n${report}")
endif()
# Valgrind really ran memcheck to the end, and counted no error.
if(NOT err MATCHES "ERROR SUMMARY: 0 errors from 0 contexts")
  fail("no clean memcheck summary:\n${report}")
endif()
if(DEFINED output AND EXPECTED_EXIT EQUAL 0)
  if(NOT EXISTS "${output}")
    fail("convert wrote no ${output}:\n${report}")
  endif()
  file(SIZE "${output}" size)
  if(size EQUAL 0)
    fail("convert wrote an empty ${output}:\n${report}")
  endif()
endif()

string(REGEX MATCH "ERROR SUMMARY: [^\n]*" summary "${err}")
message("colorconfig ${shown}\nmemcheck: ${summary}; ${seconds} s")
file(REMOVE_RECURSE "${work}")

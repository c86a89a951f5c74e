# verra_set_warnings(<target>): the project's warning set, as errors in CI builds.
option(VERRA_WARNINGS_AS_ERRORS "Treat compiler warnings as errors" OFF)

function(verra_set_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow
    -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
    -Wconversion -Wnull-dereference -Wformat=2)
  if(VERRA_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()

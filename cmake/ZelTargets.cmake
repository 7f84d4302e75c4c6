# Settings shared by every target of the project.

# Warnings are errors on every compiler the legs use.
function(zel_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()

# MinGW: the C++ runtime (libstdc++, libgcc and the winpthread layer under the standard thread
# library) is linked statically, so the DLL and the programs need only the system's DLLs.
function(zel_runtime target)
  if(MINGW)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()

# An executable of the project (tool, example, test, benchmark).
function(zel_executable target)
  add_executable(${target} ${ARGN})
  zel_warnings(${target})
  zel_runtime(${target})
endfunction()

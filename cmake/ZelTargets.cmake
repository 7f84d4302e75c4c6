# Settings shared by every target of the project.

# The project's warnings, on every compiler the legs use; they are errors in the platform legs
# (ZEL_WERROR, set by the presets), never in a user's own build.
function(zel_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra $<$<BOOL:${ZEL_WERROR}>:-Werror>)
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

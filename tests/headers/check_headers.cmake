# Compiles each statement of CASES (see cases.cmake) against the public headers:
# cmake -DCXX=<compiler> -DINCLUDES=<dirs> -DCASES=<file> -DWORK=<scratch dir> -P check_headers.cmake
include(${CASES})
file(MAKE_DIRECTORY ${WORK})
set(flags -std=c++20 -fsyntax-only -Werror=unused-result -Werror=unused-value)
foreach(dir IN LISTS INCLUDES)
  list(APPEND flags -I${dir})
endforeach()

# Compiles `statement`; sets `ok` in the caller to whether it compiled, `log` to the diagnostics.
function(try_statement statement)
  string(MD5 name "${statement}")
  set(source ${WORK}/${name}.cpp)
  file(WRITE ${source} "#include <zel/core.h>\nusing namespace zel;\n"
    "void f(NanoTime t, NanoDiff d, UnixTime u, UnixDiff ud, strptr s, cstring c, DateStruct day) {\n"
    "  (void)t; (void)d; (void)u; (void)ud; (void)s; (void)c; (void)day;\n"
    "  ${statement};\n}\n")
  execute_process(COMMAND ${CXX} ${flags} ${source} RESULT_VARIABLE code ERROR_VARIABLE err)
  if(code EQUAL 0)
    set(ok TRUE PARENT_SCOPE)
  else()
    set(ok FALSE PARENT_SCOPE)
  endif()
  set(log "${err}" PARENT_SCOPE)
endfunction()

set(failures "")
foreach(statement IN LISTS ACCEPTED)
  try_statement("${statement}")
  if(NOT ok)
    string(APPEND failures "does not compile: ${statement}\n${log}\n")
  endif()
endforeach()
foreach(statement IN LISTS REJECTED)
  try_statement("${statement}")
  if(ok)
    string(APPEND failures "compiles, but its result may not be dropped: ${statement}\n")
  elseif(NOT log MATCHES "nodiscard")
    string(APPEND failures "refused for another reason: ${statement}\n${log}\n")
  endif()
endforeach()
if(failures)
  message(FATAL_ERROR "${failures}")
endif()

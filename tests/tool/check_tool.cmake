# Runs one case of the zelcore tool's tests (see CMakeLists.txt beside this file): cmake
# -DCASE=<case file> -DWORK=<scratch directory> -P check_tool.cmake
cmake_policy(SET CMP0007 NEW)  # lists keep their empty elements
include(${CASE})

foreach(assignment IN LISTS ENV)
  string(FIND "${assignment}" "=" at)
  string(SUBSTRING "${assignment}" 0 ${at} name)
  math(EXPR at "${at} + 1")
  string(SUBSTRING "${assignment}" ${at} -1 value)
  set(ENV{${name}} "${value}")
endforeach()

file(MAKE_DIRECTORY ${WORK})
set(input ${WORK}/input)
file(WRITE ${input} "${EXPECT_INPUT}")
run_tool(${input})

# Windows programs write CR LF to a text-mode console; compare with LF.
string(REPLACE "\r\n" "\n" out "${out}")
string(REPLACE "\r\n" "\n" err "${err}")
set(failures "")
if(NOT "${code}" STREQUAL "${EXPECT_EXIT}")
  string(APPEND failures "exit code ${code}, expected ${EXPECT_EXIT}\n")
endif()
if(DEFINED EXPECT_STDOUT AND NOT out MATCHES "${EXPECT_STDOUT}")
  string(APPEND failures "standard output does not match: ${EXPECT_STDOUT}\n")
endif()
if(DEFINED EXPECT_STDERR)
  if(NOT err MATCHES "${EXPECT_STDERR}")
    string(APPEND failures "standard error does not match: ${EXPECT_STDERR}\n")
  endif()
elseif(NOT err STREQUAL "")
  string(APPEND failures "standard error is not empty\n")
endif()
if(failures)
  list(JOIN ARGS " " shown)
  message(FATAL_ERROR "zelcore ${shown}\n${failures}--- standard output:\n${out}--- standard error:\n${err}")
endif()

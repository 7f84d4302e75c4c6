# zelcore kxdir: where the data directory comes from, each case a process of its own (the
# directory is found once per process), with the library's own log line first. On Linux the
# registry is a directory tree that each case points ZEL_REGISTRY at.

set(kxdir_registries ${CMAKE_CURRENT_BINARY_DIR}/kxdir)
set(kxdir_empty ${kxdir_registries}/empty)
file(MAKE_DIRECTORY ${kxdir_empty})
set(kxdir_said "The KXDATA directory is set to ")

# The environment variable when the registry has no value; a directory with its separator stays
# as it is.
zel_tool_test(NAME kxdir_environment ARGS kxdir ENV ZEL_REGISTRY=${kxdir_empty} KXDATA=D:/x/
  STDOUT "^${kxdir_said}D:/x/ based on KXDATA environment variable\nD:/x/\nsource: environment variable KXDATA\n$")
# With neither, the directory KXDATA beside the program.
zel_tool_test(NAME kxdir_program_location ARGS kxdir ENV ZEL_REGISTRY=${kxdir_empty} KXDATA=
  STDOUT "^${kxdir_said}.*bin[/\\\\]KXDATA[/\\\\] based on program location\n.*bin[/\\\\]KXDATA[/\\\\]\nsource: program location\n$")

if(NOT WIN32)
  # The registry value wins over the environment variable (intended), and gets its separator.
  set(kxdir_with_value ${kxdir_registries}/with_value)
  file(WRITE ${kxdir_with_value}/HKEY_LOCAL_MACHINE/Software/Quendari/KXDATA "/data/from-registry")
  zel_tool_test(NAME kxdir_registry ARGS kxdir ENV ZEL_REGISTRY=${kxdir_with_value} KXDATA=/env/
    STDOUT "^${kxdir_said}/data/from-registry/ based on RegKey HKLM\\\\Software\\\\Quendari\\\\KXDATA\n/data/from-registry/\nsource: registry value")
  # Setting it warns of the environment variable it shadows, writes the registry value and makes
  # the directory; the process uses it at once.
  set(kxdir_target ${kxdir_registries}/made/by/set)
  zel_tool_test(NAME kxdir_set ARGS kxdir --set ${kxdir_target}
    ENV ZEL_REGISTRY=${kxdir_registries}/written KXDATA=/env/
    STDOUT "^Warning: there is an environment variable KXDATA, which will be shadowed by the registry key\n${kxdir_said}${kxdir_target}/ programmatically \\(Also saved to HKLM\\\\Software\\\\Quendari\\\\KXDATA\\)\n${kxdir_target}/\nsource: set here \\(saved to the registry value\\)\n$")
endif()

zel_tool_test(NAME kxdir_set_without_value ARGS kxdir --set EXIT 2
  STDERR "^zelcore kxdir: option '--set' needs a value")
zel_tool_test(NAME kxdir_too_many ARGS kxdir extra EXIT 2
  STDERR "^zelcore kxdir: too many arguments")
zel_tool_test(NAME kxdir_help ARGS kxdir --help STDOUT "^usage: zelcore kxdir \\[--set DIR\\]\n")

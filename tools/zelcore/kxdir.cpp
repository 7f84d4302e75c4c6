// `zelcore kxdir`: the data directory the library's programs share.
#include "commands.h"
#include "console_log.h"
#include "usage.h"

#include <zel/file/kx_dir.h>

#include <cstdio>

namespace zelcore {

namespace {

const Usage kKXDirUsage = {
    "kxdir",
    "usage: zelcore kxdir [--set DIR]\n"
    "\n"
    "Prints the library's own log line about the data directory of its programs, then the\n"
    "directory and where it came from. The first of these that is there decides: the registry\n"
    "value KXDATA under HKEY_LOCAL_MACHINE Software\\Quendari (on Linux the file\n"
    "HKEY_LOCAL_MACHINE/Software/Quendari/KXDATA under $ZEL_REGISTRY, /etc/zel/registry by\n"
    "default), the environment variable KXDATA, the directory KXDATA beside the program.\n"
    "  --set DIR  makes DIR the data directory: saves it in the registry value, which later\n"
    "             programs find first, and creates it\n"};

const char *SourceName(zel::KXDirSource source) {
  switch (source) {
    case zel::KXDirSource::kRegistry: return "registry value HKLM\\Software\\Quendari\\KXDATA";
    case zel::KXDirSource::kEnvironment: return "environment variable KXDATA";
    case zel::KXDirSource::kProgramLocation: return "program location";
    case zel::KXDirSource::kSetByProgram: return "set here (saved to the registry value)";
    case zel::KXDirSource::kNotYetFound: break;
  }
  return "unknown";
}

}  // namespace

int KXDir(int argc, char **argv) {
  const char *dir = nullptr;
  if (auto exit = TakeOption(kKXDirUsage, argc, argv, "--set", dir)) return *exit;
  if (auto exit = CheckArguments(kKXDirUsage, argc, argv, 0, 0)) return *exit;
  ConsoleLog console;  // the library says how it decided
  if (dir != nullptr) zel::SetKXDir(dir);
  const zel::cstring found = zel::GetKXDir();
  std::printf("%s\nsource: %s\n", found.text(), SourceName(zel::GetKXDirSource()));
  return 0;
}

}  // namespace zelcore

// `zelcore kxdir`: the data directory the library's programs share.
#include "commands.h"
#include "usage.h"

#include <zel/file/kx_dir.h>

#include <cstdio>

namespace zelcore {

namespace {

const Usage kKXDirUsage = {
    "kxdir",
    "usage: zelcore kxdir [--set DIR]\n"
    "\n"
    "Prints the data directory of the library's programs and where it came from. The first of\n"
    "these that is there decides: the registry value KXDATA under HKEY_LOCAL_MACHINE\n"
    "Software\\Quendari (on Linux the file HKEY_LOCAL_MACHINE/Software/Quendari/KXDATA under\n"
    "$ZEL_REGISTRY, /etc/zel/registry by default), the environment variable KXDATA, the\n"
    "directory KXDATA beside the program.\n"
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
  if (dir != nullptr) zel::SetKXDir(dir);
  const zel::cstring found = zel::GetKXDir();
  std::printf("%s\nsource: %s\n", found.text(), SourceName(zel::GetKXDirSource()));
  return 0;
}

}  // namespace zelcore

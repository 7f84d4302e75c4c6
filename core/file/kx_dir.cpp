// The shared data directory: found once per process, or set by the program.
#include <zel/diag/log.h>
#include <zel/file/kx_dir.h>
#include <zel/file/paths.h>
#include <zel/file/reg_key.h>
#include <zel/text/thread_local_string.h>
#include <zel/thread/critsect.h>

#include "os/os.h"

#include <cstdlib>
#include <new>
#include <utility>

namespace zel {

namespace {

constexpr char kKey[] = "Software\\Quendari";
constexpr char kName[] = "KXDATA";

// The process's directory and its source, under their lock; never destroyed, so that it serves
// static destructors too.
struct KXDir {
  CritSect lock;
  cstring dir;
  KXDirSource source = KXDirSource::kNotYetFound;
};

KXDir &State() {
  static KXDir *const state = new (MallocX(sizeof(KXDir))) KXDir();
  return *state;
}

cstring &EnsureSeparator(cstring &dir) {
  if (!dir.empty() && !dir.EndsWithQ("\\") && !dir.EndsWithQ("/")) dir << os::kPathSeparator;
  return dir;
}

void LogDirectory(const cstring &dir, const char *ending) {
  if (LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  *line << "%C00aa00: The KXDATA directory is set to " << dir << ending << "\r\n";
  PrintLog(*line);
}

// The directory from its three sources, in their order.
cstring Resolve(KXDirSource &source) {
  cstring dir;
  RegKey key;
  if (key.Open(kKey) && key.GetString(kName, dir)) {
    source = KXDirSource::kRegistry;
    LogDirectory(EnsureSeparator(dir), " based on RegKey HKLM\\Software\\Quendari\\KXDATA");
  } else if (const char *variable = std::getenv(kName)) {
    dir = variable;
    source = KXDirSource::kEnvironment;
    LogDirectory(EnsureSeparator(dir), " based on KXDATA environment variable");
  } else {
    dir = GetModuleDir();
    EnsureSeparator(dir) << kName;
    source = KXDirSource::kProgramLocation;
    LogDirectory(EnsureSeparator(dir), " based on program location");
  }
  return dir;
}

}  // namespace

temp_cstring GetKXDir() {
  KXDir &state = State();
  {
    CritSectLock hold(state.lock);
    if (!state.dir.empty()) return temp_cstring(cstring(state.dir));
  }
  // Two first calls at once may both resolve it; they find the same, and the later store wins.
  KXDirSource source;
  cstring dir = Resolve(source);
  CritSectLock hold(state.lock);
  state.dir = dir;
  state.source = source;
  return temp_cstring(std::move(dir));
}

KXDirSource GetKXDirSource() {
  KXDir &state = State();
  CritSectLock hold(state.lock);
  return state.source;
}

void SetKXDir(const strptr &dir) {
  cstring copy(dir);
  EnsureSeparator(copy);
  if (std::getenv(kName) != nullptr && LogCategory::n_global_clients >= 1)
    PrintLog(
        "%W: Warning: there is an environment variable KXDATA, which will be shadowed by "
        "the registry key\r\n");
  {
    KXDir &state = State();
    CritSectLock hold(state.lock);
    state.dir = copy;
    state.source = KXDirSource::kSetByProgram;
  }
  RegKey key;
  if (key.Create(kKey)) key.SetString(kName, copy);
  CreateDirectoryRecursively(copy);
  LogDirectory(copy, " programmatically (Also saved to HKLM\\Software\\Quendari\\KXDATA)");
}

}  // namespace zel

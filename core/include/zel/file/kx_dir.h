// The data directory that every program built on the library shares.
#pragma once

#include <zel/text/cstring.h>

namespace zel {

// The data directory, ending in a path separator, found on the first call of the process and
// remembered: the registry value "KXDATA" under HKEY_LOCAL_MACHINE "Software\Quendari" (on Linux
// the file <$ZEL_REGISTRY or /etc/zel/registry>/HKEY_LOCAL_MACHINE/Software/Quendari/KXDATA),
// else the environment variable "KXDATA", else the directory "KXDATA" beside the program. The
// registry wins over the environment, which wins over the program's place (intended). A directory
// without a trailing separator gets one ("\" on Windows, "/" on Linux). Logs "%C00aa00: The KXDATA
// directory is set to <dir> based on RegKey HKLM\Software\Quendari\KXDATA" (or "... based on
// KXDATA environment variable", "... based on program location") when the log has a listener.
// Never fails. Any thread.
[[nodiscard]] ZEL_API temp_cstring GetKXDir();

// Makes `dir` (with a trailing separator ensured) the data directory of this process at once, and
// of later ones: writes it to the registry value and creates the directory and its missing
// parents. Failures of those two are not reported beyond what they log themselves; this process
// uses `dir` in any case. Logs "%W: Warning: there is an environment variable KXDATA, which will
// be shadowed by the registry key" when that variable is set, and "%C00aa00: The KXDATA directory
// is set to <dir> programmatically (Also saved to HKLM\Software\Quendari\KXDATA)", when the log
// has a listener. Any thread.
ZEL_API void SetKXDir(const strptr &dir);

// Where the data directory came from.
enum class KXDirSource { kNotYetFound, kRegistry, kEnvironment, kProgramLocation, kSetByProgram };
// The source of the directory GetKXDir gives (kSetByProgram after SetKXDir).
ZEL_API KXDirSource GetKXDirSource();

}  // namespace zel

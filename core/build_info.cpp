// What identifies this build of the library.
#include <zel/config.h>

#ifndef ZEL_LEG
#define ZEL_LEG "custom"
#endif

namespace zel {

const char *LibraryVersion() { return ZEL_VERSION_STRING; }

const char *BuildLeg() { return ZEL_LEG; }

}  // namespace zel

// The memory-usage report: objects that hold memory add what they hold to it.
#pragma once

#include <zel/config.h>

namespace zel {

class cstring;

// Three sums over the objects asked: the bytes that hold data, the bytes allocated for it (slack
// included), and the number of allocations. An object adds its share through its
// AddMemUsage(used, allocated, blocks).
struct ZEL_API MemUsageInfo {
  double used = 0;
  double allocated = 0;
  double blocks = 0;

  // Adds one allocation of `allocated` bytes of which `used` hold data.
  void Add(double used_bytes, double allocated_bytes) {
    used += used_bytes;
    allocated += allocated_bytes;
    blocks += 1;
  }
  // Appends "<used> used, <allocated> allocated in <blocks> blocks" (sizes as bytes, KB, MB).
  void Print(cstring &out) const;
};

}  // namespace zel

// The memory-usage report's text.
#include <zel/mem/mem_usage.h>
#include <zel/text/cstring.h>

namespace zel {

namespace {

// Bytes, kilobytes or megabytes, whichever reads best.
void PrintBytes(cstring &out, double bytes) {
  if (bytes < 1024)
    out << bytes << " bytes";
  else if (bytes < 1024 * 1024)
    out << bytes / 1024 << " KB";
  else
    out << bytes / (1024 * 1024) << " MB";
}

}  // namespace

void MemUsageInfo::Print(cstring &out) const {
  PrintBytes(out, used);
  out << " used, ";
  PrintBytes(out, allocated);
  out << " allocated in " << blocks << " blocks";
}

}  // namespace zel

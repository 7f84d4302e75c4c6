// The performance counter and the system time.
#include "os/os.h"

#include "os/win32/win.h"

namespace zel::os {

int64_t PerfCounter() {
  LARGE_INTEGER count;
  QueryPerformanceCounter(&count);
  return count.QuadPart;
}

int64_t PerfFrequency() {
  static const int64_t frequency = [] {
    LARGE_INTEGER f;
    QueryPerformanceFrequency(&f);
    return f.QuadPart;
  }();
  return frequency;
}

int64_t SystemTime100ns() {
  FILETIME ft;
  GetSystemTimeAsFileTime(&ft);
  return static_cast<int64_t>((uint64_t{ft.dwHighDateTime} << 32) | ft.dwLowDateTime);
}

}  // namespace zel::os

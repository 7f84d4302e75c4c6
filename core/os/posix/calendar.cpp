// Calendar: localtime_r and gmtime_r.
#include "os/os.h"

#include <stdlib.h>
#include <time.h>

namespace zel::os {

bool LocalTime(int64_t t, std::tm &out) {
  const time_t seconds = static_cast<time_t>(t);
  return localtime_r(&seconds, &out) != nullptr;
}

bool UtcTime(int64_t t, std::tm &out) {
  const time_t seconds = static_cast<time_t>(t);
  return gmtime_r(&seconds, &out) != nullptr;
}

void SetTimeZone(const char *tz) {
  setenv("TZ", tz, 1);
  tzset();
}

}  // namespace zel::os

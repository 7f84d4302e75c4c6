// Calendar: the runtime's localtime_s and gmtime_s.
#include "os/os.h"

#include <stdlib.h>
#include <time.h>

namespace zel::os {

bool LocalTime(int64_t t, std::tm &out) {
  const time_t seconds = static_cast<time_t>(t);
  return localtime_s(&out, &seconds) == 0;
}

bool UtcTime(int64_t t, std::tm &out) {
  const time_t seconds = static_cast<time_t>(t);
  return gmtime_s(&out, &seconds) == 0;
}

void SetTimeZone(const char *tz) {
  _putenv_s("TZ", tz);
  _tzset();
}

}  // namespace zel::os

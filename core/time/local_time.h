// The calendar's common steps: breaking a UnixTime down in local time and composing one again.
#pragma once

#include <zel/time/unix_time.h>

#include <ctime>

namespace zel {

// `t` broken down in local time; false (and `out` all zero) when the runtime cannot.
bool BreakDown(UnixTime t, std::tm &out);
// The local time `fields` describe, normalised by mktime; 0 when mktime fails.
UnixTime Compose(std::tm fields);
// As Compose, leaving `fields` normalised as mktime leaves them: when it succeeds, the broken-down
// form of the result, as BreakDown would give it.
UnixTime Normalize(std::tm &fields);

}  // namespace zel

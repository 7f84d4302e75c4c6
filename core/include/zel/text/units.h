// Numbers with units: "90 secs", "1.5 hours", "2days".
#pragma once

#include <zel/text/strptr.h>

namespace zel {

// The kinds of quantity a number with a unit may measure.
struct Unit {
  enum Type {
    kPlain,  // a bare number: no unit is allowed
    kTime,   // a duration in seconds: "ms", "msec(s)", "millisecond(s)"; "s", "sec(s)",
             // "second(s)"; "m", "min(s)", "minute(s)"; "h", "hr(s)", "hour(s)"; "d", "day(s)";
             // "w", "week(s)" (any case)
  };
};

// Reads a number (as StringIter::MaybeParseDouble does) and, after optional white space, an
// optional unit of `type`, and returns the number in the type's base unit (seconds for kTime):
// "90 secs" is 90, "1.5 hours" 5400, "2days" 172800, and "7" is 7. Text that is empty, white or does
// not begin with a number gives `def`. Throws ErrorX "Invalid unit: <rest>" when anything but one
// of the type's units follows the number.
ZEL_API double StringToNumber(const strptr &text, Unit::Type type, double def);

}  // namespace zel

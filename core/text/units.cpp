// Numbers with units.
#include <zel/diag/error.h>
#include <zel/text/string_iter.h>
#include <zel/text/thread_local_string.h>
#include <zel/text/units.h>

namespace zel {

namespace {

// The names of each unit of time, blank-separated, and its length in seconds.
constexpr struct {
  const char *names;
  double seconds;
} kTimeUnits[] = {
    {"ms msec msecs millisecond milliseconds", 0.001},
    {"s sec secs second seconds", 1},
    {"m min mins minute minutes", 60},
    {"h hr hrs hour hours", 3600},
    {"d day days", 86400},
    {"w week weeks", 604800},
};

// The factor of `unit` among the units of `type`; false when it is not one of them.
bool FindUnit(const strptr &unit, Unit::Type type, double &factor) {
  if (type != Unit::kTime) return false;
  for (const auto &u : kTimeUnits) {
    StringIter names(u.names);
    for (strptr name = names.GetWord(); !name.empty(); name = names.GetWord()) {
      if (unit.EqualNoCase(name)) {
        factor = u.seconds;
        return true;
      }
    }
  }
  return false;
}

}  // namespace

double StringToNumber(const strptr &text, Unit::Type type, double def) {
  StringIter it(text);
  double value;
  if (!it.MaybeParseDouble(value)) return def;
  const strptr unit = it.Rest().Trimmed();
  if (unit.empty()) return value;
  double factor;
  if (!FindUnit(unit, type, factor)) {
    ThreadLocalString message;
    *message << "Invalid unit: " << unit;
    ThrowErrorX(*message);
  }
  return value * factor;
}

}  // namespace zel

// The counter registry: named statistics (integer or floating-point) that a report can list.
#pragma once

#include <zel/text/cstring.h>

#include <cstdint>

namespace zel {

// A named statistic of type T. It reads its value when asked, through `read(source)`.
template <typename T>
class Counter {
 public:
  using Reader = T (*)(const void *source);
  Counter(const strptr &name, Reader read, const void *source)
      : name_(name), read_(read), source_(source) {}

  const cstring &Name() const { return name_; }
  const void *Source() const { return source_; }
  T Value() const { return read_(source_); }

 private:
  cstring name_;
  Reader read_;
  const void *source_;
};

using IntCounter = Counter<int64_t>;
using FloatCounter = Counter<double>;

// Registers a counter (the registry keeps it until RemoveCounters of its source). Any thread.
ZEL_API void AddIntCounter(const strptr &name, IntCounter::Reader read, const void *source);
ZEL_API void AddFloatCounter(const strptr &name, FloatCounter::Reader read, const void *source);
// Removes every counter registered with `source`.
ZEL_API void RemoveCounters(const void *source);
// Reads the first counter named `name` (case-sensitive) into `value`; false when there is none.
ZEL_API bool ReadCounter(const strptr &name, double &value);
// Appends one line per counter, in registration order: the name, ": ", the value, "\r\n".
ZEL_API void PrintCounters(cstring &out);

}  // namespace zel

// Arbitrary text read as times, durations and dates. The first byte picks one of a few formats,
// or says that the next byte is the length of a format taken from the input; the rest is the
// text. ParseTimeX may only fail with ParserErrorX; the quiet readers and ParseDate must keep
// their position inside the text; the time read is printed back through the same format.
#include <zel/parse/parser_error.h>
#include <zel/time.h>

#include <cstdint>
#include <cstdlib>

#include "os/os.h"

namespace {

using zel::StringIter;
using zel::strptr;

void Check(bool ok) {
  if (!ok) std::abort();
}

void CheckInside(const StringIter &it) {
  Check(it.position() >= 0 && it.position() <= it.length());
}

const char *const kFormats[] = {"%Y/%m/%d %H:%M:%S.%X", "%a %b %d, %y %I %P", "%T", "%.0H:%.3M %%"};
constexpr int kFormatCount = sizeof kFormats / sizeof kFormats[0];

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const bool zone_set = (zel::os::SetTimeZone("EST5EDT"), true);
  (void)zone_set;
  if (size < 2) return 0;
  const char *bytes = reinterpret_cast<const char *>(data);
  strptr format, text;
  const int pick = data[0] % (kFormatCount + 1);
  if (pick < kFormatCount) {
    format = kFormats[pick];
    text = strptr(bytes + 1, static_cast<int>(size - 1));
  } else {
    const int length = static_cast<int>(size_t{data[1]} < size - 2 ? size_t{data[1]} : size - 2);
    format = strptr(bytes + 2, length);
    text = strptr(bytes + 2 + length, static_cast<int>(size) - 2 - length);
  }

  zel::ParserBase p(text);
  try {
    zel::ParseTimeX(p, format);
  } catch (const zel::ParserErrorX &) {
  }
  Check(p.position() >= 0 && p.position() <= text.length());

  StringIter it(text);
  zel::ParseTime(it, format);
  CheckInside(it);
  it.SetPosition(0);
  const zel::NanoTime t = zel::ParseNanoTime(it, format);
  CheckInside(it);
  for (const bool allow_relative : {false, true}) {
    it.SetPosition(0);
    ParseDate(it, allow_relative);
    CheckInside(it);
  }
  it.SetPosition(0);
  zel::ParseNanoDiff(it, format);
  CheckInside(it);
  it.SetPosition(0);
  zel::ParseUnixDiff(it, format);
  CheckInside(it);

  zel::cstring printed;
  printed << zel::PrintNanoTime(t, format);
  return 0;
}

// Printing a NanoTime through a format: cstring << PrintNanoTime.
#include <zel/time/time_text.h>

#include "text/integer_digits.h"
#include "time/local_time.h"
#include "time/names.h"

namespace zel {

namespace {

int Clamped(int v, int high) { return v < 0 ? 0 : v > high ? high : v; }

// Collects the printed characters on the stack and appends them to the string in few calls.
class Writer {
 public:
  explicit Writer(cstring &out) : out_(out) {}
  Writer(const Writer &) = delete;
  Writer &operator=(const Writer &) = delete;

  void Char(char c) {
    if (used_ == kRoom) Flush();
    buffer_[used_++] = c;
  }
  void Text(const char *text) {
    for (; *text != 0; ++text) Char(*text);
  }
  // `value` (not negative) in decimal with at least `digits` digits, zeros in front.
  void Number(int value, int digits = 1) {
    const IntegerDigits<10> number(static_cast<uint32_t>(value < 0 ? 0 : value));
    for (int i = number.length(); i < digits; ++i) Char('0');
    for (int i = 0; i < number.length(); ++i) Char(number.text()[i]);
  }
  void Flush() {
    out_.AddNonOverlapping(buffer_, used_);
    used_ = 0;
  }

 private:
  static constexpr int kRoom = 256;
  cstring &out_;
  char buffer_[kRoom];
  int used_ = 0;
};

// One conversion of `letter` for the local time `f`, `fraction` 100-ns units into its second.
void PrintConversion(Writer &w, char letter, const std::tm &f, int fraction) {
  switch (letter) {
    case 'H': w.Number(f.tm_hour, 2); break;
    // Hours up to 12 as they are, so midnight prints "00" (intended).
    case 'I': w.Number(f.tm_hour > 12 ? f.tm_hour - 12 : f.tm_hour, 2); break;
    case 'M': w.Number(f.tm_min, 2); break;
    case 'S': w.Number(f.tm_sec, 2); break;
    case 'P': w.Text(f.tm_hour >= 12 ? "PM" : "AM"); break;
    case 'X': w.Number(fraction / 10000, 3); break;
    case 'x': w.Number(fraction / 1000000, 1); break;
    case 'Y': w.Number(f.tm_year + 1900, 4); break;
    case 'y': w.Number(f.tm_year < 100 ? f.tm_year : f.tm_year - 100, 2); break;
    case 'a': w.Text(kWeekdayNames[Clamped(f.tm_wday, 6)]); break;
    case 'b': w.Text(kMonthNames[Clamped(f.tm_mon, 11)]); break;
    case 'd': w.Number(f.tm_mday); break;
    case 'm': w.Number(f.tm_mon + 1); break;
    default: w.Char(letter);  // "%%" and any other letter print the letter
  }
}

}  // namespace

cstring &operator<<(cstring &out, const PrintNanoTime &p) {
  // In whole units rather than double seconds: the same limits and truncations, without rounding
  // that depends on the floating-point unit (x87 keeps excess precision). Compared before
  // subtracting, so that no time overflows.
  constexpr int64_t kUnitsPerSecond = 10000000;
  if (p.time.value < NanoTime::kUnixEpoch) return out << "<invalid time>";
  const int64_t units = p.time.value - NanoTime::kUnixEpoch;
  if (units >= int64_t{INT32_MAX} * kUnitsPerSecond) return out << "<invalid time>";
  const auto whole = static_cast<int32_t>(units / kUnitsPerSecond);
  if (whole == 0) return out;
  std::tm f;
  BreakDown(UnixTime(whole), f);
  const auto fraction = static_cast<int>(units % kUnitsPerSecond);
  const strptr format = p.format;
  Writer w(out);
  for (int i = 0; i < format.length(); ++i) {
    if (format[i] != '%')
      w.Char(format[i]);
    else if (++i < format.length())  // a "%" ending the format prints nothing
      PrintConversion(w, format[i], f, fraction);
  }
  w.Flush();
  return out;
}

}  // namespace zel

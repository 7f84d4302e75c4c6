// Reading absolute times through a format: ParseTimeX, which reports every mismatch through the
// parser, and the quiet ParseTime and ParseNanoTime.
#include <zel/text/thread_local_string.h>
#include <zel/time/calendar.h>
#include <zel/time/time_text.h>

#include <concepts>

#include "time/local_time.h"
#include "time/names.h"
#include "time/time_format.h"

namespace zel {

namespace {

// A ParserBase whose failures are reported at its position (ParserErrorX).
class ReportingInput {
 public:
  explicit ReportingInput(ParserBase &p) : p_(p) {}

  bool AtEnd() const { return p_.AtEnd(); }
  char Peek() const { return p_.Peek(); }
  void Next() { p_.Advance(); }
  // The parser's own white space and comments.
  int SkipWhite() {
    const int start = p_.position();
    p_.SkipWs();
    return p_.position() - start;
  }
  // The parser's digit reader reports a missing digit.
  bool ExpectDigit() {
    if (!DigitCharQ(p_.Peek())) p_.GetDigit();
    return true;
  }
  [[noreturn]] bool Fail(const char *message) { p_.Error(message); }
  template <std::invocable<cstring &> Compose>
  [[noreturn]] bool Fail(const Compose &compose) {
    ThreadLocalString message;
    compose(*message);
    p_.Error(message);
  }
  // "AM" or "PM", in capitals.
  bool ReadAmPm(bool &pm) {
    pm = p_.SkipStr("PM");
    return pm || p_.SkipStr("AM");
  }
  // White space, then an identifier ("Identifier expected" without one).
  bool ReadName(strptr &word) {
    p_.SkipWs();
    word = p_.GetIdent();
    return true;
  }

 private:
  ParserBase &p_;
};

// What the conversions have read so far.
struct TimeFields {
  std::tm tm{};
  int ms = 0;
};

template <typename Input>
bool ReadYear(Input &in, int width, TimeFields &t) {
  int n = 0;
  if (!ReadNumber(in, width, n)) return false;
  if (n >= 0 && n < 70) {
    n += 2000;
  } else if (n >= 70 && n < 100) {
    n += 1900;
  } else if (n < 1970 || n > 2037) {
    // Refuses 2038, which %Y takes (intended).
    return in.Fail(
        "ParseTime: Invalid Year; Must be from between 00 and 99 or between 1970 and 2038.");
  }
  t.tm.tm_year = n - 1900;
  return true;
}

template <typename Input>
bool ReadConversion(Input &in, char letter, int width, TimeFields &t) {
  std::tm &tm = t.tm;
  int n = 0;
  strptr word;
  switch (letter) {
    case '%': return SkipLiteral(in, '%') || in.Fail("ParseTime: '%' expected");
    case 'H':
      return ReadBelow(in, Capped(width, 2), 24, tm.tm_hour, "ParseTime: Invalid hour ",
                       "; Must be between 0 and 23");
    case 'M':
      return ReadBelow(in, Capped(width, 2), 60, tm.tm_min, "ParseTime: Invalid minute ",
                       "; Must be between 0 and 59");
    case 'S':
      return ReadBelow(in, Capped(width, 2), 60, tm.tm_sec, "ParseTime: Invalid second ",
                       "; Must be between 0 and 59");
    case 'X':
      return ReadBelow(in, Capped(width, 6), 1000000, t.ms, "ParseNanoTimeX: Invalid millisecond ",
                       "; Must be between 0 and 1000,000");
    case 'P': {
      bool pm = false;
      if (!in.ReadAmPm(pm)) return in.Fail("AM or PM expected");
      if (pm) tm.tm_hour += 12;
      return true;
    }
    case 'Y':
      if (!ReadNumber(in, Capped(width, 4), n)) return false;
      if (n < 1970 || n > 2038) {
        return in.Fail([n](cstring &m) {
          m << "ParseTime: Invalid year " << n << "; Must be between 1970 and 2038.";
        });
      }
      tm.tm_year = n - 1900;
      return true;
    case 'y': return ReadYear(in, width, t);
    case 'd': return ReadNumber(in, Capped(width, 2), tm.tm_mday);
    case 'm':
      if (!ReadNumber(in, Capped(width, 2), n)) return false;
      if (n < 1 || n > 12) {
        // The number shown is one less than the one read (intended).
        return in.Fail([n](cstring &m) {
          m << "ParseTime: Invalid month number " << n - 1 << "; Must be between 1 and 12";
        });
      }
      tm.tm_mon = n - 1;
      return true;
    case 'b':
      if (!in.ReadName(word)) return false;
      n = GetMonthZeroBased(word);
      if (n < 0) {
        return in.Fail([&word](cstring &m) {
          m << "ParseTime: Invalid month name " << word << "; Must be one of the following: ";
          AppendNameList(m, kMonthNames, 12);
        });
      }
      tm.tm_mon = n;
      return true;
    case 'a':
      if (!in.ReadName(word)) return false;
      if (GetWeekday(word) >= 0) return true;  // required, not stored
      return in.Fail([&word](cstring &m) {
        m << "ParseTime: Invalid weekday name " << word << "; Must be one of the following: ";
        AppendNameList(m, kWeekdayNames, 7);
      });
    default:
      return in.Fail([letter](cstring &m) {
        m << "ParseTime: Unknown formatting character " << strptr(&letter, letter != '\0')
          << "; Must be one of S,M,H,Y,y,d,m,b,%.";
      });
  }
}

// Reads `format` starting from midnight, January 1 of `year`, and gives the local time as Unix
// seconds with the milliseconds: 0 when mktime fails, whatever milliseconds were read, and 0 for a
// time outside the 32-bit seconds of UnixTime. False at the first mismatch.
template <typename Input>
bool ReadTime(Input &in, const strptr &format, int year, double &seconds) {
  TimeFields t;
  t.tm.tm_mday = 1;
  t.tm.tm_isdst = -1;
  t.tm.tm_year = year - 1900;
  auto convert = [&](char letter, int width) { return ReadConversion(in, letter, width, t); };
  if (!WalkFormat(in, format, convert)) return false;

  // February always allows the 29th; mktime rolls it over in a common year.
  static constexpr int kMonthDays[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const int day = t.tm.tm_mday, month = t.tm.tm_mon;
  if (day < 1 || day > kMonthDays[month]) {
    return in.Fail([day, month](cstring &m) {
      m << "ParseTime: Invalid month day " << day << " for month " << kMonthNames[month];
    });
  }
  const UnixTime composed = Compose(t.tm);
  seconds = composed.value() == 0 ? 0 : composed.value() + t.ms * 0.001;
  if (seconds < -2147483648.0 || seconds > 2147483647.0) seconds = 0;
  return true;
}

// The quiet readers start in the year 2000, not the current one (intended).
constexpr int kQuietStartYear = 2000;

}  // namespace

UnixTime ParseTimeX(ParserBase &p, const strptr &format) {
  ReportingInput in(p);
  double seconds = 0;
  ReadTime(in, format, DateStruct::Current().year, seconds);
  return NanoTime(static_cast<int64_t>(seconds * 1e7 + 1.16444736e17)).ToUnixTime();
}

UnixTime ParseTimeX(const strptr &text, const strptr &format) {
  ParserBase p(text);
  return ParseTimeX(p, format);
}

UnixTime ParseTime(StringIter &it, const strptr &format) {
  QuietInput in(it);
  double seconds = 0;
  if (!ReadTime(in, format, kQuietStartYear, seconds)) return UnixTime();
  return UnixTime(static_cast<int32_t>(seconds));
}

NanoTime ParseNanoTime(StringIter &it, const strptr &format) {
  QuietInput in(it);
  double seconds = 0;
  if (!ReadTime(in, format, kQuietStartYear, seconds) || seconds == 0.0) return NanoTime();
  return NanoTime(static_cast<int64_t>(seconds * 1e7 + 1.16444736e17));
}

}  // namespace zel

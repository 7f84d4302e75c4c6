// `zelcore time parse` and `zelcore time print`: times read and printed through the library's
// format of "%" letters.
#include "commands.h"
#include "usage.h"

#include <zel/text/charset.h>
#include <zel/text/string_iter.h>
#include <zel/time/time_text.h>

#include <cstdint>
#include <cstdio>

namespace zelcore {

namespace {

const Usage kTimeUsage = {
    "time",
    "usage: zelcore time parse FORMAT TEXT\n"
    "       zelcore time print FORMAT [UNIX-SECONDS|now]\n"
    "\n"
    "Reads and prints local times through a format of \"%\" letters, such as\n"
    "\"%Y/%m/%d %H:%M:%S\".\n"
    "  parse   reads TEXT laid out by FORMAT; prints the time, its Unix seconds and its NanoTime\n"
    "  print   prints a time, now by default, through FORMAT\n"
    "'zelcore time parse --help' and 'zelcore time print --help' list the letters of each.\n"};

const Usage kParseUsage = {
    "time parse",
    "usage: zelcore time parse FORMAT TEXT\n"
    "\n"
    "Reads TEXT as a local time laid out by FORMAT, and prints the time, its Unix seconds and its\n"
    "NanoTime value (100-ns units since 1601-01-01 UTC). In FORMAT a blank skips white space (at\n"
    "least one character of it), \"%\" starts a conversion, and any other character must match:\n"
    "  %Y  year, 1970-2038          %y  year, 00-69 for 2000-2069, 70-99 for 1970-1999\n"
    "  %m  month, 1-12              %b  month name, or any start of one (\"Sep\")\n"
    "  %d  day of the month         %a  weekday (\"Mon\"), checked but not used\n"
    "  %H  hour, 0-23               %P  AM or PM (\"PM\" adds 12 to the hour)\n"
    "  %M  minute, 0-59             %S  second, 0-59\n"
    "  %X  milliseconds, checked but dropped: the time is read in whole seconds\n"
    "  %%  a \"%\"                    %.3H  at most 3 digits (%.0H any number)\n"
    "Fields not read start at midnight on January 1 of the current year. Fails (exit code 1)\n"
    "when TEXT does not fit FORMAT or is no time after 1970-01-01 00:00:00 UTC.\n"};

const Usage kPrintUsage = {
    "time print",
    "usage: zelcore time print FORMAT [UNIX-SECONDS|now]\n"
    "\n"
    "Prints a time in local time through FORMAT: now by default, or UNIX-SECONDS after\n"
    "1970-01-01 00:00:00 UTC (0 to 2147483647, with up to seven decimals). In FORMAT \"%\"\n"
    "starts a conversion and any other character is printed as it is:\n"
    "  %Y  year, 4 digits           %y  year, 2 digits\n"
    "  %m  month, 1-12              %b  month name (\"January\")\n"
    "  %d  day of the month         %a  weekday (\"Sun\")\n"
    "  %H  hour, 00-23              %I  hour, 00-12 (midnight is 00)\n"
    "  %M  minute, 00-59            %S  second, 00-59\n"
    "  %P  AM or PM                 %X  milliseconds, 3 digits; %x tenths, 1 digit\n"
    "  %%  a \"%\"; \"%\" before any other character prints that character\n"
    "Times from 2038-01-19 03:14:07 UTC on print as \"<invalid time>\", and a time within the\n"
    "first second of 1970 prints nothing.\n"};

int Parse(int argc, char **argv) {
  if (auto exit = CheckArguments(kParseUsage, argc, argv, 2, 2)) return *exit;
  const zel::strptr format(argv[0]);
  const zel::strptr text(argv[1]);
  try {
    zel::ParserBase parser(text);
    const zel::UnixTime time = zel::ParseTimeX(parser, format);
    parser.SkipWs();
    if (!parser.AtEnd()) parser.Error("Unexpected text after the time");
    if (time.value() == 0)
      parser.Error("No time after 1970-01-01 00:00:00 UTC that the calendar can hold");
    zel::cstring out;
    out << "time: " << time << "\nunix seconds: " << time.value()
        << "\nNanoTime: " << zel::NanoTime().Set(time).value << '\n';
    std::fputs(out.text(), stdout);
    return 0;
  } catch (const zel::ErrorX &error) {
    return Failure(kParseUsage, error);
  }
}

// Reads whole Unix seconds from 0 to INT32_MAX with up to seven decimals, exactly (no detour
// through a double, whose fraction would lose the last unit).
bool ReadUnixSeconds(const zel::strptr &text, zel::NanoTime &time) {
  zel::StringIter in(text);
  long long seconds = 0;
  if (!in.MaybeParseInteger64(seconds) || seconds < 0 || seconds > INT32_MAX) return false;
  int64_t units = 0;
  if (in.Peek() == '.') {
    in.SkipNChars(1);
    for (int64_t scale = 1000000; scale > 0 && zel::DigitCharQ(in.Peek()); scale /= 10) {
      units += (in.Peek() - '0') * scale;
      in.SkipNChars(1);
    }
  }
  if (!in.AtEnd()) return false;
  time = zel::NanoTime(zel::NanoTime::kUnixEpoch + seconds * 10000000 + units);
  return true;
}

int Print(int argc, char **argv) {
  if (auto exit = CheckArguments(kPrintUsage, argc, argv, 1, 2)) return *exit;
  zel::NanoTime time = zel::NanoTime::Current();
  if (argc == 2 && zel::strptr(argv[1]) != "now" && !ReadUnixSeconds(argv[1], time)) {
    zel::cstring problem;
    problem << "'" << argv[1] << "' is neither \"now\" nor Unix seconds from 0 to 2147483647";
    return UsageError(kPrintUsage, problem);
  }
  zel::cstring out;
  out << zel::PrintNanoTime(time, argv[0]) << '\n';
  std::fputs(out.text(), stdout);
  return 0;
}

}  // namespace

int Time(int argc, char **argv) {
  if (argc > 0 && zel::strptr(argv[0]) == "parse") return Parse(argc - 1, argv + 1);
  if (argc > 0 && zel::strptr(argv[0]) == "print") return Print(argc - 1, argv + 1);
  if (argc == 0) return UsageError(kTimeUsage, "missing 'parse' or 'print'");
  if (auto exit = CheckArguments(kTimeUsage, argc, argv, 0, argc)) return *exit;
  zel::cstring problem;
  problem << "unknown time command '" << argv[0] << "'";
  return UsageError(kTimeUsage, problem);
}

}  // namespace zelcore

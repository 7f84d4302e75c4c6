// `zelcore next` and `zelcore contains`: cron-like time intervals.
#include "commands.h"
#include "usage.h"

#include <zel/parse/parser_base.h>
#include <zel/text/string_iter.h>
#include <zel/time/time_interval.h>
#include <zel/time/time_text.h>

#include <cstdio>

namespace zelcore {

namespace {

#define ZELCORE_INTERVAL_HELP                                                                     \
  "An INTERVAL is \"years/months/days hours:minutes:seconds\" in local time, each field a list\n" \
  "of values, inclusive ranges and names separated by \",\", or \"*\" for any value:\n"           \
  "\"*/*/* 06:59:00\" is every day at 06:59, \"*/* *:0,15,30,45:00\" every quarter hour,\n"       \
  "\"Dec/31 *:00:00\" every hour of New Year's Eve (no years: any year), \"*/Jan/Fri,13\n"        \
  "00:00:00\" midnight of every Friday the 13th of January. Days of 0 or less are weekdays\n"     \
  "(Sun, Mon...). The six lists may also be given apart: \"* * * 06 59 00\".\n"                   \
  "A TIME is \"YYYY/MM/DD HH:MM:SS\" in local time.\n"

const Usage kNextUsage = {
    "next",
    "usage: zelcore next INTERVAL [--from TIME] [-n N]\n"
    "\n"
    "Prints the next N times (1 by default) of INTERVAL after TIME (now by default), one a line,\n"
    "or \"none\" where the interval has no further time before 2038.\n"
    "\n" ZELCORE_INTERVAL_HELP
    "Fails (exit code 1) for an INTERVAL or TIME the library cannot read.\n"};

const Usage kContainsUsage = {
    "contains",
    "usage: zelcore contains INTERVAL TIME\n"
    "\n"
    "Says whether TIME is one of the times of INTERVAL: prints \"yes\" (exit code 0) or \"no\"\n"
    "(exit code 1). The years and months are compared as the library does, raw: as years since\n"
    "1900 and months from 0, so only INTERVALs with \"*\" years and months answer as a calendar.\n"
    "\n" ZELCORE_INTERVAL_HELP
    "Fails (exit code 1, with the library's message) for an INTERVAL or TIME it cannot read.\n"};

// Reads the whole of `text` as an interval; throws the library's ParserErrorX.
TimeInterval ReadInterval(const zel::strptr &text) {
  zel::ParserBase parser(text);
  TimeInterval interval;
  interval.ParseX(parser);
  parser.SkipWs();
  if (!parser.AtEnd()) parser.Error("Unexpected text after the interval");
  return interval;
}

// Reads the whole of `text` as a local time; throws the library's ParserErrorX.
zel::UnixTime ReadTime(const zel::strptr &text) {
  zel::ParserBase parser(text);
  const zel::UnixTime time = zel::ParseTimeX(parser, "%Y/%m/%d %H:%M:%S");
  parser.SkipWs();
  if (!parser.AtEnd()) parser.Error("Unexpected text after the time");
  return time;
}

}  // namespace

int Next(int argc, char **argv) {
  const char *from = nullptr, *count_text = nullptr;
  if (auto exit = TakeOption(kNextUsage, argc, argv, "--from", from)) return *exit;
  if (auto exit = TakeOption(kNextUsage, argc, argv, "-n", count_text)) return *exit;
  if (auto exit = CheckArguments(kNextUsage, argc, argv, 1, 1)) return *exit;
  int count = 1;
  if (count_text != nullptr) {
    zel::StringIter it(count_text);
    if (!it.MaybeParseInteger(count) || !it.AtEnd() || count < 1)
      return UsageError(kNextUsage, "-n needs a count of 1 or more");
  }
  try {
    const TimeInterval interval = ReadInterval(argv[0]);
    zel::UnixTime t = from != nullptr ? ReadTime(from) : zel::UnixTime::Current();
    zel::cstring out;
    for (int i = 0; i < count; ++i) {
      t = interval.GetNextTime(t);
      if (t.value() == 0) {
        out << "none\n";
        break;
      }
      out << t << '\n';
    }
    std::fputs(out.text(), stdout);
    return 0;
  } catch (const zel::ErrorX &error) {
    return Failure(kNextUsage, error);
  }
}

int Contains(int argc, char **argv) {
  if (auto exit = CheckArguments(kContainsUsage, argc, argv, 2, 2)) return *exit;
  try {
    const TimeInterval interval = ReadInterval(argv[0]);
    const bool in = interval.Contains(ReadTime(argv[1]));
    std::fputs(in ? "yes\n" : "no\n", stdout);
    return in ? 0 : kExitFailure;
  } catch (const zel::ErrorX &error) {
    return Failure(kContainsUsage, error);
  }
}

}  // namespace zelcore

// `zelcore date`: the library's reader of loose dates.
#include "commands.h"
#include "usage.h"

#include <zel/text/print.h>
#include <zel/text/string_iter.h>
#include <zel/time/time_text.h>

#include <cstdio>

namespace zelcore {

namespace {

const Usage kDateUsage = {
    "date",
    "usage: zelcore date TEXT\n"
    "\n"
    "Reads a loose date and prints it and its local midnight. The date is \"today\",\n"
    "\"yesterday\", or numbers and month names (or starts of them, \"Sept\") separated\n"
    "by any of \",/\" and white space: \"2003/Jan/03\", \"Jan 5, 07\", \"5 Jan 99\". Of two\n"
    "numbers, one below 32 is the day and the other the year; a lone number is the year\n"
    "from 32 on or after a month name and a comma, else the day. Two-digit years below 69\n"
    "are 20xx, from 69 on 19xx.\n"
    "Fails (exit code 1) when TEXT holds more than a date, or lacks its year, month or day.\n"};

// "Incomplete date; not found: year, day" for the fields of `date` that were not read, or "" when
// all were.
zel::cstring MissingFields(const DateStruct &date) {
  zel::cstring missing;
  const struct {
    int value;
    const char *name;
  } fields[] = {{date.year, "year"}, {date.month, "month"}, {date.day, "day"}};
  for (const auto &field : fields) {
    if (field.value != 0) continue;
    missing << (missing.empty() ? "Incomplete date; not found: " : ", ") << field.name;
  }
  return missing;
}

}  // namespace

int Date(int argc, char **argv) {
  if (auto exit = CheckArguments(kDateUsage, argc, argv, 1, 1)) return *exit;
  const zel::strptr text(argv[0]);
  try {
    zel::StringIter in(text);
    const DateStruct date = ParseDate(in, true);
    const zel::strptr rest = in.Rest().TrimmedLeft();
    if (!rest.empty())
      ThrowParseError(text, text.length() - rest.length(), "Unexpected text after the date");
    const zel::cstring missing = MissingFields(date);
    if (!missing.empty()) ThrowParseError(text, in.position(), missing);
    zel::cstring out;
    out << "date: " << zel::PrintInt(date.year, 4) << '-' << zel::PrintInt(date.month, 2) << '-'
        << zel::PrintInt(date.day, 2) << "\nlocal midnight: " << date.ToUnixTime() << '\n';
    std::fputs(out.text(), stdout);
    return 0;
  } catch (const zel::ErrorX &error) {
    return Failure(kDateUsage, error);
  }
}

}  // namespace zelcore

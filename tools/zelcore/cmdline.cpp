// `zelcore cmdline`: text command lines shown argument by argument, and checked for coming back
// the same when written and read again.
#include "commands.h"
#include "usage.h"

#include <zel/mem/tary.h>
#include <zel/parse/cmdline.h>
#include <zel/parse/types.h>
#include <zel/text/print.h>

#include <cstdio>

namespace zelcore {

namespace {

const Usage kCmdLineUsage = {
    "cmdline",
    "usage: zelcore cmdline LINE\n"
    "       zelcore cmdline --check\n"
    "\n"
    "Reads LINE as a command line: a command word, then blank-separated values and name:value\n"
    "pairs, quoted when they hold anything but letters, digits and \"_;&*^%$@.!-\" (\"a b\", with\n"
    "escapes \\\" \\\\ \\n \\r \\t and three octal digits, \\012). Prints the command, a table of "
    "the\n"
    "arguments in the order given, and the line as the library writes it back (canonical).\n"
    "In the table, a positional argument is named by its place among the positional ones, #0,\n"
    "#1, ...; other names and all values are shown as tokens of a line, quoted when they are\n"
    "not plain words (\"\" is an empty value). The columns int, double, bool and date are what\n"
    "GetInteger, GetDouble, GetBool and GetDate return for the argument's place or name, \"-\"\n"
    "where the value does not read as that type; a date is its local midnight. A name that\n"
    "repeats finds its first argument (letter case ignored, but not by GetDate), so later rows\n"
    "of that name show what the first reads as.\n"
    "Reading ends at a token that begins with \"#\" (a comment) and early at an empty token "
    "(\"\",\n"
    "a lone \":\", a quote never closed, which takes the rest of the line with it). A note\n"
    "follows when the line does not come back the same: when reading stopped before the end\n"
    "(at a column counted from 1 over the whole LINE), at a quote never closed, or when an\n"
    "empty command cannot be written. The exit code is 0 all the same. A LINE that begins\n"
    "with \"--\" or is \"-h\" is taken for an option: start it with a blank.\n"
    "\n"
    "--check reads lines from standard input (each ended by LF or CR LF) and reports on\n"
    "standard output every line that is not read back the same from its canonical form, as\n"
    "\"line N: <reason>\", then a count. Exit code 0 when every line comes back, 1 otherwise.\n"};

// `text` as one token of a line, as the writer writes it ("" when empty), or a name:value pair
// when `name` is not empty. Kept on one line: the writer breaks long quoted text with a
// backslash and CR LF, which the reader drops.
zel::cstring Token(const zel::strptr &name, const zel::strptr &text) {
  zel::cstring token;
  zel::CmdLine::Append(token, name, text);
  token.Replace("\\\r\n", "");
  return token;
}

zel::cstring Token(const zel::strptr &text) { return Token(zel::strptr(), text); }

// The line as the writer puts it: the command as a positional token, then each argument (the
// named form writes the value alone for an empty name).
zel::cstring Written(const zel::CmdLine &line) {
  zel::cstring out;
  zel::CmdLine::Append(out, line.Command());
  for (const zel::CmdLine::Arg &arg : line.Args()) zel::CmdLine::Append(out, arg.name, arg.value);
  return out;
}

// True when reading `text` ends in a quoted string that is never closed: the reader drops it and
// passes over the rest of the text, so the text seems read to its end. Told by reading it again
// with a line end and a lone ":" after it: any other reading stops before the ":", while such a
// string, failing at the end, takes the ":" with it.
bool EndsInOpenQuote(const zel::strptr &text) {
  const zel::cstring probe(text, "\n:");
  return zel::CmdLine(probe, false).ParsedText().length() == probe.length();
}

// Why `line`, read from `text`, is not what reading its written form gives, or "" when it is.
zel::cstring RoundTripProblem(const zel::CmdLine &line, const zel::strptr &text) {
  zel::cstring problem;
  const zel::strptr rest = text.Mid(line.ParsedText().length()).TrimmedLeft();
  if (!rest.empty() && rest[0] != line.comment_char()) {
    problem << "parsing stopped at column " << text.length() - rest.length() + 1;
    return problem;
  }
  if (EndsInOpenQuote(text)) {
    problem << "a quoted string is never closed";
    return problem;
  }
  const zel::cstring written = Written(line);
  const zel::CmdLine again(written, false);
  if (again.Command() != line.Command()) {
    problem << "the command " << Token(line.Command()) << " reads back as "
            << Token(again.Command());
    return problem;
  }
  const zel::aryptr<const zel::CmdLine::Arg> args = line.Args(), back = again.Args();
  for (int i = 0; i < args.count && i < back.count; ++i) {
    if (args[i].name == back[i].name && args[i].value == back[i].value) continue;
    problem << "the argument " << Token(args[i].name, args[i].value) << " reads back as "
            << Token(back[i].name, back[i].value);
    return problem;
  }
  if (args.count != back.count) problem << args.count << " arguments read back as " << back.count;
  return problem;
}

// --- The table of arguments ---

constexpr int kColumns = 6;

struct Row {
  zel::cstring cells[kColumns];
};

// `read` when it is the same as `other`, read with another default, else "-" (the getter fell
// back to its default).
template <typename T>
void AddReading(zel::cstring &cell, T read, T other) {
  if (read == other)
    zel::PrintValue(cell, read, false);
  else
    cell << '-';
}

// The last four cells of an argument's row: what the typed getters give for `key`, the
// argument's place or its name.
template <typename Key>
void AddReadings(Row &row, const zel::CmdLine &line, const Key &key) {
  AddReading(row.cells[2], line.GetInteger(key, 0), line.GetInteger(key, 1));
  AddReading(row.cells[3], line.GetDouble(key, 0.0), line.GetDouble(key, 1.0));
  AddReading(row.cells[4], line.GetBool(key, false), line.GetBool(key, true));
  const zel::UnixTime date = line.GetDate(key);
  if (date.value() != 0)
    row.cells[5] << date;
  else
    row.cells[5] << '-';
}

// The rows in columns two blanks apart.
zel::cstring Table(const zel::TAry<Row> &rows) {
  int widths[kColumns] = {};
  for (const Row &row : rows)
    for (int c = 0; c < kColumns; ++c)
      if (row.cells[c].length() > widths[c]) widths[c] = row.cells[c].length();
  zel::cstring out;
  for (const Row &row : rows) {
    for (int c = 0; c + 1 < kColumns; ++c)
      out << row.cells[c] << zel::PrintNTimes(' ', widths[c] - row.cells[c].length() + 2);
    out << row.cells[kColumns - 1] << '\n';
  }
  return out;
}

int Show(const zel::strptr &text) {
  const zel::CmdLine line(text, false);
  zel::TAry<Row> rows;
  rows.Add(Row{{"argument", "value", "int", "double", "bool", "date"}});
  int place = 0;
  for (const zel::CmdLine::Arg &arg : line.Args()) {
    Row &row = rows.Add();
    row.cells[1] = Token(arg.value);
    if (arg.name.empty()) {
      row.cells[0] << '#' << place;
      AddReadings(row, line, place++);
    } else {
      row.cells[0] = Token(arg.name);
      AddReadings(row, line, arg.name);
    }
  }
  zel::cstring out;
  out << "command: " << Token(line.Command()) << '\n';
  if (line.ArgCount() == 0)
    out << "arguments: none\n";
  else
    out << Table(rows);
  out << "canonical: " << Written(line) << '\n';
  const zel::cstring problem = RoundTripProblem(line, text);
  if (!problem.empty()) out << "note: " << problem << '\n';
  std::fputs(out.text(), stdout);
  return 0;
}

// --- Checking lines ---

// Standard input, whole. On Windows it is read in text mode, so its CR LF are already LF.
zel::cstring ReadAll(std::FILE *in) {
  zel::cstring text;
  char buffer[4096];
  for (size_t n; (n = std::fread(buffer, 1, sizeof buffer, in)) > 0;)
    text.Add(zel::strptr(buffer, static_cast<int>(n)));
  return text;
}

int Check(int argc, char **argv) {
  if (auto exit = CheckArguments(kCmdLineUsage, argc, argv, 0, 0)) return *exit;
  const zel::cstring input = ReadAll(stdin);
  const zel::strptr all = input.view();
  int count = 0;
  int failing = 0;
  for (int from = 0; from < all.length();) {
    int end = all.FindFrom('\n', from);
    if (end < 0) end = all.length();
    zel::strptr text = all.Mid(from, end - from);
    if (text.EndsWithQ("\r")) text = text.Left(text.length() - 1);
    from = end + 1;
    ++count;
    const zel::cstring problem = RoundTripProblem(zel::CmdLine(text, false), text);
    if (problem.empty()) continue;
    ++failing;
    zel::cstring report;
    report << "line " << count << ": " << problem << '\n';
    std::fputs(report.text(), stdout);
  }
  zel::cstring summary;
  summary << count << (count == 1 ? " line, " : " lines, ") << failing
          << (failing == 1 ? " does" : " do") << " not round-trip\n";
  std::fputs(summary.text(), stdout);
  return failing == 0 ? 0 : kExitFailure;
}

}  // namespace

int CommandLine(int argc, char **argv) {
  if (argc > 0 && zel::strptr(argv[0]) == "--check") return Check(argc - 1, argv + 1);
  if (auto exit = CheckArguments(kCmdLineUsage, argc, argv, 1, 1)) return *exit;
  return Show(argv[0]);
}

}  // namespace zelcore

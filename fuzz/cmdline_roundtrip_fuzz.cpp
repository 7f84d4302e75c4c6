// Arbitrary bytes written into command lines and read back. As text: one line holding the bytes as
// a positional value, as a named value, as a name, as a typed variable and always quoted, which
// CmdLine must parse back to the same command, names and values. As a binary line: a string
// argument holding the bytes, and a line nesting that one, printed as text; CmdLine must read the
// bytes back, and for the nested line its printed text, which read in turn gives the bytes.
#include <zel/parse/bcmdline.h>
#include <zel/parse/cmdline.h>
#include <zel/parse/types.h>
#include <zel/text/print.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

using zel::BCmdLine;
using zel::CmdLine;
using zel::cstring;
using zel::strptr;

// Prints what went wrong, with the line read, and aborts.
[[noreturn]] void Fail(const char *what, const strptr &expected, const strptr &actual,
                       const cstring &line) {
  cstring report;
  report << what << "\nwritten  " << zel::PrintMemory(expected.text(), expected.length())
         << "\nread     " << zel::PrintMemory(actual.text(), actual.length()) << "\nline     "
         << zel::PrintMemory(line.text(), line.length()) << "\n";
  std::fputs(report.text(), stderr);
  std::abort();
}

void RequireSame(const char *what, const strptr &expected, const strptr &actual,
                 const cstring &line) {
  if (!actual.Equal(expected)) Fail(what, expected, actual, line);
}

// `parsed` read `line` to command "cmd" and `count` arguments.
void RequireShape(const CmdLine &parsed, int count, const cstring &line) {
  RequireSame("command", "cmd", parsed.Command(), line);
  if (parsed.ArgCount() != count) {
    cstring counts;
    counts << count << " arguments";
    Fail(counts.text(), line, parsed.ParsedText(), line);
  }
}

void RequireArg(const CmdLine &parsed, int i, const strptr &name, const strptr &value,
                const cstring &line) {
  RequireSame("name", name, parsed.Args()[i].name, line);
  RequireSame("value", value, parsed.Args()[i].value, line);
}

void CheckText(const strptr &bytes) {
  cstring line("cmd");
  // An empty positional value writes nothing.
  CmdLine::Append(line, bytes);
  CmdLine::Append(line, "k", bytes);
  CmdLine::Append(line, bytes, "v");
  CmdLine::Append(line, "t", zel::TypedVar<cstring>(cstring(bytes)));
  line << " q:";
  zel::PrintValue(line, bytes, true);

  const CmdLine parsed(line, false);
  RequireShape(parsed, bytes.empty() ? 4 : 5, line);
  int i = 0;
  if (!bytes.empty()) RequireArg(parsed, i++, "", bytes, line);
  RequireArg(parsed, i++, "k", bytes, line);
  // An empty name writes the value alone.
  RequireArg(parsed, i++, bytes, "v", line);
  RequireArg(parsed, i++, "t", bytes, line);
  RequireArg(parsed, i++, "q", bytes, line);
}

// `printed` read as a line with one argument `name`: its value.
strptr ReadPrinted(const cstring &printed, const char *name, const CmdLine &parsed) {
  RequireShape(parsed, 1, printed);
  RequireSame("name", name, parsed.Args()[0].name, printed);
  return parsed.Args()[0].value;
}

void CheckBinary(const strptr &bytes) {
  const zel::StringID command = zel::InternString("cmd");
  BCmdLine inner(command);
  inner.AddString(zel::InternString("k"), bytes);
  cstring printed;
  printed << inner;
  const CmdLine parsed(printed, false);
  RequireSame("binary value", bytes, ReadPrinted(printed, "k", parsed), printed);

  BCmdLine outer(command);
  outer.AddCmdLine(zel::InternString("sub"), inner);
  cstring outer_printed;
  outer_printed << outer;
  // The nested value is the inner line's text, which has just been read back to the bytes.
  const CmdLine outer_parsed(outer_printed, false);
  RequireSame("nested text", printed, ReadPrinted(outer_printed, "sub", outer_parsed),
              outer_printed);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  const strptr bytes(reinterpret_cast<const char *>(data), static_cast<int>(size));
  CheckText(bytes);
  CheckBinary(bytes);
  return 0;
}

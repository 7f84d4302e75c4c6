// Arbitrary bytes parsed as a command line, with and without a command, and from the middle of the
// text into a line that already holds arguments. Parsing must not throw; every name and value must
// lie inside the text or be a separate copy (its bytes are all read, for the sanitizer to check),
// the parsed stretch must lie inside the text, and the getters must agree with one another: a
// Maybe form finds a value exactly when its X form does not throw, and both give the same value.
#include <zel/diag/error.h>
#include <zel/parse/cmdline.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <ctime>

namespace {

using zel::CmdLine;
using zel::ErrorX;
using zel::strptr;

void Require(bool condition) {
  if (!condition) std::abort();
}

void RequireInside(const strptr &view, const strptr &text) {
  Require(view.length() >= 0 && view.text() >= text.text() && view.end() <= text.end());
}

// Inside the text, or a copy that shares no byte with it; every byte is read.
void RequireSound(const strptr &view, const strptr &text) {
  Require(view.length() >= 0);
  if (view.empty()) return;
  const bool inside = view.text() >= text.text() && view.end() <= text.end();
  const bool apart = view.end() <= text.text() || view.text() >= text.end();
  Require(inside || apart);
  unsigned sum = 0;
  for (char c : view) sum += static_cast<unsigned char>(c);
  volatile unsigned sink = sum;
  (void)sink;
}

bool SameDouble(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }

// The by-name getters of one name, checked against each other.
void CheckNamed(const CmdLine &line, const strptr &name) {
  strptr text;
  const bool has_text = line.MaybeGetString(name, text);
  Require(line.GetString(name, "?").Equal(has_text ? text : strptr("?")));
  try {
    const strptr x = line.GetStringX(name);
    Require(has_text && x.Equal(text));
  } catch (const ErrorX &) {
    Require(!has_text);
  }

  int i = 0;
  const bool has_int = line.MaybeGetInteger(name, i);
  Require(line.GetInteger(name, -7) == (has_int ? i : -7));
  try {
    const int x = line.GetIntegerX(name);
    Require(has_int && x == i);
  } catch (const ErrorX &) {
    Require(!has_int);
  }

  double d = 0;
  const bool has_double = line.MaybeGetDouble(name, d);
  Require(SameDouble(line.GetDouble(name, -7.5), has_double ? d : -7.5));
  try {
    const double x = line.GetDoubleX(name);
    Require(has_double && SameDouble(x, d));
  } catch (const ErrorX &) {
    Require(!has_double);
  }
  try {
    line.GetDouble(name, zel::Unit::kTime, 0);  // a unit that is not one throws, as documented
  } catch (const ErrorX &) {
  }

  bool b = false;
  const bool has_bool = line.MaybeGetBool(name, b);
  if (has_bool) Require(line.GetBool(name, !b) == b);
  try {
    const bool x = line.GetBoolX(name);
    Require(has_bool && x == b);
  } catch (const ErrorX &) {
    Require(!has_bool);
  }

  line.GetDate(name);
}

void CheckPositional(const CmdLine &line, int n) {
  line.GetInteger(n, 0);
  line.GetDouble(n, 0);
  line.GetBool(n, false);
  line.GetDate(n);
}

// `line` parsed `text` from `start` on.
void Check(const CmdLine &line, const strptr &text, int start) {
  RequireInside(line.ParsedText(), text);
  Require(line.ParsedText().text() == text.text() + start);
  RequireSound(line.Command(), text);
  int positional = 0;
  for (const CmdLine::Arg &arg : line.Args()) {
    RequireSound(arg.name, text);
    RequireSound(arg.value, text);
    if (!arg.name.empty()) continue;
    const strptr found = line.GetString(positional++);
    Require(found.text() == arg.value.text() && found.length() == arg.value.length());
  }
  Require(line.GetString(positional).empty());
  // Dates go through mktime, which is slow: only the first few.
  for (int i = 0; i < line.ArgCount() && i < 8; ++i) CheckNamed(line, line.Args()[i].name);
  for (int n = 0; n <= positional && n < 8; ++n) CheckPositional(line, n);
  CheckNamed(line, "absent");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  static const bool utc = [] {
    // Dates are read at local midnight: a fixed zone keeps runs alike and mktime quick.
    setenv("TZ", "UTC", 1);
    tzset();
    return true;
  }();
  (void)utc;
  const strptr text(reinterpret_cast<const char *>(data), static_cast<int>(size));

  const CmdLine with_command(text, false);
  Check(with_command, text, 0);

  CmdLine args_only;
  args_only.Reset(text, true);
  Check(args_only, text, 0);

  // Parsing on from the middle appends to what the line holds, and the parsed stretch runs from
  // there to where the iterator stopped.
  const int half = text.length() / 2;
  zel::StringIter it(text);
  it.SetPosition(half);
  args_only.Parse(it, true);
  Check(args_only, text, half);
  Require(it.position() >= half && it.position() <= text.length());
  Require(args_only.ParsedText().end() == text.text() + it.position());
  return 0;
}

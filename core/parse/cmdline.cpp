// CmdLine: parsing, and the queries by position and by name.
#include <zel/diag/error.h>
#include <zel/parse/cmdline.h>
#include <zel/text/thread_local_string.h>
#include <zel/time/time_text.h>

#include "parse/cmd_text.h"
#include "text/char_tests.h"

namespace zel {

CmdLine::CmdLine() = default;

CmdLine::CmdLine(const strptr &text, bool args_only) {
  StringIter it(text);
  Parse(it, args_only);
}

void CmdLine::Parse(StringIter &it, bool args_only) {
  const int start = it.position() < 0             ? 0
                    : it.position() > it.length() ? it.length()
                                                  : it.position();
  it.SetPosition(start);
  if (!args_only) command_ = it.ParseCmdArg(pool_);
  for (;;) {
    while (!it.AtEnd() && text::IsWhite(it.Peek())) it.SkipNChars(1);
    if (it.AtEnd() || it.Peek() == comment_char_) break;
    const strptr token = it.ParseCmdArg(pool_);
    if (token.empty()) break;
    if (!it.AtEnd() && it.Peek() == ':') {
      it.SkipNChars(1);
      const strptr value = it.ParseCmdArg(pool_);
      args_.Add(Arg{token, value});
    } else {
      args_.Add(Arg{strptr(), token});
    }
  }
  const int end = it.position() > it.length() ? it.length() : it.position();
  parsed_ = strptr(it.text() + start, end > start ? end - start : 0);
}

void CmdLine::Reset(const strptr &text, bool args_only) {
  Flush();
  pool_.Flush();
  cursor_ = 0;
  StringIter it(text);
  Parse(it, args_only);
}

void CmdLine::Flush() {
  target_ = nullptr;
  command_ = strptr();
  parsed_ = strptr();
  cursor_ = -1;
  args_.Flush();
}

// --- Finding arguments ---

namespace {

// Names compare ignoring the case of A-Z, as strptr::EqualNoCase does; inline, since looking a
// name up compares it with every name before it.
bool SameName(const strptr &a, const strptr &b) {
  if (a.length() != b.length()) return false;
  for (int i = 0; i < a.length(); ++i)
    if (a[i] != b[i] && ToLowerAscii(a[i]) != ToLowerAscii(b[i])) return false;
  return true;
}

}  // namespace

const CmdLine::Arg *CmdLine::Find(const strptr &name) const {
  for (const Arg &arg : args_)
    if (SameName(arg.name, name)) return &arg;
  return nullptr;
}

const CmdLine::Arg *CmdLine::FindExact(const strptr &name) const {
  for (const Arg &arg : args_)
    if (arg.name.Equal(name)) return &arg;
  return nullptr;
}

const CmdLine::Arg *CmdLine::FindPositional(int n) const {
  if (n < 0) return nullptr;
  for (const Arg &arg : args_)
    if (arg.name.empty() && n-- == 0) return &arg;
  return nullptr;
}

// --- Texts ---

strptr CmdLine::GetString(int n) const {
  const Arg *arg = FindPositional(n);
  return arg != nullptr ? arg->value : strptr();
}

strptr CmdLine::GetString(const strptr &name) const { return GetString(name, strptr()); }

strptr CmdLine::GetString(const strptr &name, const strptr &def) const {
  const Arg *arg = Find(name);
  return arg != nullptr ? arg->value : def;
}

namespace {

[[noreturn]] void ThrowAbout(const strptr &name, const char *problem) {
  ThreadLocalString message;
  *message << name << problem;
  ThrowErrorX(*message);
}

constexpr char kNotInteger[] = " should be a valid integer";
constexpr char kNotBool[] = " should be a valid boolean (yes,no,true,false,0,1,etc)";

// Reads the number of `arg`, when there is one; `value` changes only when it reads.
template <typename T>
bool ReadArg(const CmdLine::Arg *arg, T &value) {
  return arg != nullptr && ReadNumber(arg->value, value);
}

UnixTime ReadDate(const strptr &text) {
  StringIter it(text);
  const DateStruct date = ParseDate(it, true);
  if (date.year == 0 || date.month == 0 || date.day == 0) return UnixTime();
  return date.ToUnixTime();
}

}  // namespace

strptr CmdLine::GetStringX(const strptr &name) const {
  const Arg *arg = Find(name);
  if (arg == nullptr) ThrowAbout(name, " should be specified");
  return arg->value;
}

bool CmdLine::MaybeGetString(const strptr &name, strptr &value) const {
  const Arg *arg = Find(name);
  if (arg == nullptr) return false;
  value = arg->value;
  return true;
}

// --- Integers ---

int CmdLine::GetInteger(int n, int def) const {
  ReadArg(FindPositional(n), def);
  return def;
}

int CmdLine::GetInteger(const strptr &name, int def) const {
  ReadArg(Find(name), def);
  return def;
}

int CmdLine::GetIntegerX(const strptr &name) const {
  int value;
  if (!ReadArg(Find(name), value)) ThrowAbout(name, kNotInteger);
  return value;
}

bool CmdLine::MaybeGetInteger(const strptr &name, int &value) const {
  return ReadArg(Find(name), value);
}

// --- Doubles ---

double CmdLine::GetDouble(int n, double def) const {
  ReadArg(FindPositional(n), def);
  return def;
}

double CmdLine::GetDouble(const strptr &name, double def) const {
  ReadArg(Find(name), def);
  return def;
}

double CmdLine::GetDouble(const strptr &name, Unit::Type unit, double def) const {
  return StringToNumber(GetString(name), unit, def);
}

double CmdLine::GetDoubleX(const strptr &name) const {
  double value;
  // The integer wording is intended: it is what callers have always matched.
  if (!ReadArg(Find(name), value)) ThrowAbout(name, kNotInteger);
  return value;
}

bool CmdLine::MaybeGetDouble(const strptr &name, double &value) const {
  return ReadArg(Find(name), value);
}

// --- Booleans ---

int CmdLine::InterpretBool(const strptr &s, int def) {
  static constexpr struct {
    const char *word;
    int value;
  } kWords[] = {{"false", 0}, {"true", 1}, {"0", 0},  {"1", 1},
                {"off", 0},   {"on", 1},   {"no", 0}, {"yes", 1}};
  for (const auto &w : kWords)
    if (s.EqualNoCase(w.word)) return w.value;
  return def;
}

bool CmdLine::GetBool(int n, bool def) const { return InterpretBool(GetString(n), def) != 0; }

bool CmdLine::GetBool(const strptr &name, bool def) const {
  return InterpretBool(GetString(name), def) != 0;
}

bool CmdLine::GetBoolX(const strptr &name) const {
  bool value;
  if (!MaybeGetBool(name, value)) ThrowAbout(name, kNotBool);
  return value;
}

bool CmdLine::MaybeGetBool(const strptr &name, bool &value) const {
  const Arg *arg = Find(name);
  if (arg == nullptr) return false;
  const int read = InterpretBool(arg->value, -1);
  if (read < 0) return false;
  value = read != 0;
  return true;
}

// --- Dates ---

UnixTime CmdLine::GetDate(int n) const {
  const Arg *arg = FindPositional(n);
  return arg != nullptr ? ReadDate(arg->value) : UnixTime();
}

UnixTime CmdLine::GetDate(const strptr &name) const {
  const Arg *arg =
      FindExact(name);  // letter case counts here, unlike every other lookup (intended)
  return arg != nullptr ? ReadDate(arg->value) : UnixTime();
}

}  // namespace zel

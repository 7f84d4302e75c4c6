// CmdLine: the library's text form of commands and settings records, one line of blank-separated
// tokens: an optional command word, then positional values and name:value pairs.
//
//   set-window title:"Main window" 640 480 visible:yes
//
// A token is a word (up to a blank, TAB, CR, LF, ":" or a quote) or a quoted string (see
// StringIter::ParseString: escapes, octal bytes, raw strings over several lines). A name is
// followed by ":" with no blank in between; blanks and line ends may stand before its value. A
// token starting with the comment character ("#") ends the line, as does an empty token: an
// empty quoted string, a lone ":" or a quote that is never closed.
#pragma once

#include <zel/mem/tary.h>
#include <zel/text/cstring.h>
#include <zel/text/string_iter.h>
#include <zel/text/units.h>
#include <zel/time/unix_time.h>

namespace zel {

class AnyVar;

// A parsed command line. Names and values are views: of the parsed text, which must therefore
// outlive the CmdLine unchanged, or of unescaped copies in the CmdLine's own string pool. Nothing
// here throws except the X getters, GetDouble with a unit, allocation failure and Serialize's
// writing (allocation only). One CmdLine is used by one thread at a time.
class ZEL_API CmdLine {
 public:
  // One argument: a positional value has an empty name.
  struct Arg {
    strptr name;
    strptr value;
  };

  // Empty: comment character "#", positional cursor 0.
  CmdLine();
  // As CmdLine(), then Parse over the whole of `text`.
  CmdLine(const strptr &text, bool args_only);
  // Moving keeps every view valid; copying would not, so there is none.
  CmdLine(CmdLine &&) noexcept = default;
  CmdLine &operator=(CmdLine &&) noexcept = default;
  CmdLine(const CmdLine &) = delete;
  CmdLine &operator=(const CmdLine &) = delete;

  // --- Parsing ---

  // Appends the arguments read from the iterator's position (a position outside the text is first
  // moved to its nearer end); unless `args_only`, the first token is the command (possibly empty).
  // Stops at the end, at a token that begins with the comment character, and at an empty token;
  // malformed input ends the parse early and what was read stays. The iterator is left where
  // parsing stopped, and ParsedText() spans what it passed. Never throws but for allocation
  // failure.
  void Parse(StringIter &it, bool args_only);
  // Clears the command, the parsed span, the serialize target, the arguments and the string pool,
  // sets the positional cursor to 0 and parses `text`.
  void Reset(const strptr &text, bool args_only);
  // Clears the serialize target, the command, the parsed span and the arguments, and sets the
  // positional cursor to -1 (so positional Serialize reads find nothing until it is set again);
  // the string pool is kept, and with it the views into it.
  void Flush();

  char comment_char() const { return comment_char_; }
  void set_comment_char(char c) { comment_char_ = c; }
  // The command word, or empty.
  strptr Command() const { return command_; }
  // The stretch of the text that the last Parse passed over.
  strptr ParsedText() const { return parsed_; }
  // The arguments in input order.
  aryptr<const Arg> Args() const { return args_.View(); }
  int ArgCount() const { return args_.Count(); }

  // --- Queries ---
  //
  // By position: the n-th argument without a name, counting from 0. By name: the first argument
  // whose name equals `name` ignoring the case of A-Z (GetDate excepted). Numbers are read with
  // StringIter::MaybeParseInteger / MaybeParseDouble, so a value counts when it begins with a
  // number ("12px" reads as 12).

  strptr GetString(int n) const;
  strptr GetString(const strptr &name) const;
  strptr GetString(const strptr &name, const strptr &def) const;
  // The value, possibly empty; throws ErrorX "<name> should be specified" when it is missing.
  strptr GetStringX(const strptr &name) const;
  bool MaybeGetString(const strptr &name, strptr &value) const;

  int GetInteger(int n, int def) const;
  int GetInteger(const strptr &name, int def) const;
  // Throws ErrorX "<name> should be a valid integer" when the value is missing or not a number.
  int GetIntegerX(const strptr &name) const;
  bool MaybeGetInteger(const strptr &name, int &value) const;

  double GetDouble(int n, double def) const;
  double GetDouble(const strptr &name, double def) const;
  // StringToNumber of the value (of "" when it is missing) with `unit` and `def`: "90 secs" read
  // as Unit::kTime is 90. Throws ErrorX "Invalid unit: ..." as StringToNumber does.
  double GetDouble(const strptr &name, Unit::Type unit, double def) const;
  // Throws ErrorX "<name> should be a valid integer" when the value is missing or not a number
  // (the integer wording is intended for doubles too).
  double GetDoubleX(const strptr &name) const;
  bool MaybeGetDouble(const strptr &name, double &value) const;

  // InterpretBool of the value.
  bool GetBool(int n, bool def) const;
  bool GetBool(const strptr &name, bool def) const;
  // Throws ErrorX "<name> should be a valid boolean (yes,no,true,false,0,1,etc)" when the value
  // is missing or not one of the words.
  bool GetBoolX(const strptr &name) const;
  bool MaybeGetBool(const strptr &name, bool &value) const;

  // The value read as a loose date (ParseDate, "today" and "yesterday" allowed) at local
  // midnight; 0 when it is missing or its year, month or day is not found. The name must match
  // exactly, letter case included (unlike every other lookup; intended).
  UnixTime GetDate(int n) const;
  UnixTime GetDate(const strptr &name) const;

  // 0 for "false", "0", "off" and "no"; 1 for "true", "1", "on" and "yes" (any case); `def` for
  // anything else.
  static int InterpretBool(const strptr &s, int def);

  // --- Writing ---
  //
  // Each form first separates from what `out` holds with a blank (MaybeSpace), then writes. A
  // text is written as it stands when it is not empty and every character is one of
  // "a-zA-Z0-9_;&*^%$@.!-", otherwise between double quotes with escapes (PrintQuotedString's
  // short form); names follow the same rule. Parsing the result gives back the same names and
  // texts. A named form with an empty name writes the value alone.

  // The value as a positional token; an empty value writes nothing (it cannot be read back).
  static void Append(cstring &out, const strptr &value);
  static void Append(cstring &out, const cstring &value) { Append(out, value.view()); }
  static void Append(cstring &out, const char *value) { Append(out, strptr(value)); }
  // name:value; an empty value is written as "".
  static void Append(cstring &out, const strptr &name, const strptr &value);
  static void Append(cstring &out, const strptr &name, const cstring &value) {
    Append(out, name, value.view());
  }
  static void Append(cstring &out, const strptr &name, const char *value) {
    Append(out, name, strptr(value));
  }
  static void Append(cstring &out, const strptr &name, int value);
  // The value as `cstring << double` writes it (six significant digits).
  static void Append(cstring &out, const strptr &name, double value);
  static void Append(cstring &out, const strptr &name, bool value);
  // name:, then the variable's Print(out, false).
  static void Append(cstring &out, const strptr &name, const AnyVar &value);

  // --- Serialize: one call reads or writes, by the serialize target ---
  //
  // With a target set, each call appends to it (after a blank unless it is empty) name:value or
  // the value alone, written as by Append (an empty text as ""). Without one, the named forms
  // store the value found under `name` when it reads as the variable's type (a bool through
  // InterpretBool with the current value as default, a text as it stands), and the positional
  // forms read the value at the positional cursor and then advance the cursor, found or not.
  // Otherwise the variable keeps its value.

  void SetSerializeTarget(cstring *target) { target_ = target; }
  cstring *SerializeTarget() const { return target_; }
  int PositionalCursor() const { return cursor_; }
  void SetPositionalCursor(int n) { cursor_ = n; }

  void Serialize(const strptr &name, int &v);
  void Serialize(const strptr &name, float &v);
  void Serialize(const strptr &name, double &v);
  void Serialize(const strptr &name, bool &v);
  void Serialize(const strptr &name, cstring &v);
  void Serialize(int &v);
  void Serialize(float &v);
  void Serialize(double &v);
  void Serialize(bool &v);
  void Serialize(cstring &v);

 private:
  const Arg *Find(const strptr &name) const;
  const Arg *FindExact(const strptr &name) const;
  const Arg *FindPositional(int n) const;
  // The value under `name` (positional at the cursor when null), advancing the cursor then.
  const Arg *ReadTarget(const strptr *name);
  template <typename T>
  void SerializeValue(const strptr *name, T &v);

  char comment_char_ = '#';
  TAry<cstring> pool_;
  cstring *target_ = nullptr;
  strptr command_;
  strptr parsed_;
  int cursor_ = 0;
  TAry<Arg> args_;
};

}  // namespace zel

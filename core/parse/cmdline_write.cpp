// CmdLine: writing lines with Append, and Serialize, which reads or writes one variable.
#include <zel/parse/cmdline.h>
#include <zel/parse/types.h>

#include "parse/cmd_text.h"

namespace zel {

namespace {

// MaybeSpace, then "name:" unless the name is empty.
cstring &StartNamed(cstring &out, const strptr &name) {
  MaybeSpace(out);
  if (!name.empty()) AppendCmdToken(out, name) << ':';
  return out;
}

}  // namespace

void CmdLine::Append(cstring &out, const strptr &value) {
  MaybeSpace(out);
  if (!value.empty()) AppendCmdToken(out, value);
}

void CmdLine::Append(cstring &out, const strptr &name, const strptr &value) {
  AppendCmdToken(StartNamed(out, name), value);
}

void CmdLine::Append(cstring &out, const strptr &name, int value) {
  StartNamed(out, name) << value;
}

void CmdLine::Append(cstring &out, const strptr &name, double value) {
  StartNamed(out, name) << value;
}

void CmdLine::Append(cstring &out, const strptr &name, bool value) {
  PrintValue(StartNamed(out, name), value, false);
}

void CmdLine::Append(cstring &out, const strptr &name, const AnyVar &value) {
  value.Print(StartNamed(out, name), false);
}

// --- Serialize ---

namespace {

// The forms Serialize writes and reads, by type. A reader changes its variable only when the text
// reads as the variable's type.
void WriteValue(cstring &out, int v) { out << v; }
void WriteValue(cstring &out, float v) { out << v; }
void WriteValue(cstring &out, double v) { out << v; }
void WriteValue(cstring &out, bool v) { PrintValue(out, v, false); }
void WriteValue(cstring &out, const cstring &v) { AppendCmdToken(out, v); }

void ReadValue(const strptr &text, int &v) { ReadNumber(text, v); }
void ReadValue(const strptr &text, double &v) { ReadNumber(text, v); }
void ReadValue(const strptr &text, float &v) {
  double wide;
  if (ReadNumber(text, wide)) v = static_cast<float>(wide);
}

void ReadValue(const strptr &text, bool &v) { v = CmdLine::InterpretBool(text, v) != 0; }

void ReadValue(const strptr &text, cstring &v) { v = text; }

}  // namespace

const CmdLine::Arg *CmdLine::ReadTarget(const strptr *name) {
  if (name != nullptr) return Find(*name);
  const Arg *arg = FindPositional(cursor_);
  ++cursor_;
  return arg;
}

template <typename T>
void CmdLine::SerializeValue(const strptr *name, T &v) {
  if (target_ != nullptr) {
    if (!target_->empty()) *target_ << ' ';
    if (name != nullptr && !name->empty()) AppendCmdToken(*target_, *name) << ':';
    WriteValue(*target_, v);
    return;
  }
  if (const Arg *arg = ReadTarget(name)) ReadValue(arg->value, v);
}

void CmdLine::Serialize(const strptr &name, int &v) { SerializeValue(&name, v); }
void CmdLine::Serialize(const strptr &name, float &v) { SerializeValue(&name, v); }
void CmdLine::Serialize(const strptr &name, double &v) { SerializeValue(&name, v); }
void CmdLine::Serialize(const strptr &name, bool &v) { SerializeValue(&name, v); }
void CmdLine::Serialize(const strptr &name, cstring &v) { SerializeValue(&name, v); }
void CmdLine::Serialize(int &v) { SerializeValue(nullptr, v); }
void CmdLine::Serialize(float &v) { SerializeValue(nullptr, v); }
void CmdLine::Serialize(double &v) { SerializeValue(nullptr, v); }
void CmdLine::Serialize(bool &v) { SerializeValue(nullptr, v); }
void CmdLine::Serialize(cstring &v) { SerializeValue(nullptr, v); }

}  // namespace zel

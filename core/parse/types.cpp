// The type tags, made while the library starts, and the printing of typed values.
#include <zel/parse/types.h>

#include "parse/cmd_text.h"

namespace zel {

namespace {

enum TypeIndex { kBool, kInt, kInt64, kFloat, kDouble, kString, kCmdLine, kBCmdLine, kTypeCount };

StringID g_type_ids[kTypeCount];

// Interned before the default-priority initialisers of every program and library, so that their
// static objects may already use the tags.
struct TypeIdMaker {
  TypeIdMaker() {
    const char *const names[kTypeCount] = {"bool",   "int",    "int_64",  "float",
                                           "double", "string", "CmdLine", "BCmdLine"};
    for (int i = 0; i < kTypeCount; ++i) g_type_ids[i] = InternString(names[i]);
  }
} g_type_id_maker __attribute__((init_priority(102)));

}  // namespace

const StringID &_id_bool = g_type_ids[kBool];
const StringID &_id_int = g_type_ids[kInt];
const StringID &_id_int_64 = g_type_ids[kInt64];
const StringID &_id_float = g_type_ids[kFloat];
const StringID &_id_double = g_type_ids[kDouble];
const StringID &_id_string = g_type_ids[kString];
const StringID &_id_CmdLine = g_type_ids[kCmdLine];
const StringID &_id_BCmdLine = g_type_ids[kBCmdLine];

AnyVar::~AnyVar() = default;

void PrintValue(cstring &out, bool value, bool) { out << (value ? "true" : "false"); }
void PrintValue(cstring &out, int value, bool) { out << value; }
void PrintValue(cstring &out, long long value, bool) { out << value; }
void PrintValue(cstring &out, float value, bool) { out << value; }
void PrintValue(cstring &out, double value, bool) { out << value; }

void PrintValue(cstring &out, const strptr &value, bool quoted) {
  if (quoted)
    out << PrintQuotedString(value, false);
  else
    AppendCmdToken(out, value);
}

}  // namespace zel

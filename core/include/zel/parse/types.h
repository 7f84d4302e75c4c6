// Typed variables: the type tags of the built-in types, Types (which maps C++ types to their tags)
// and AnyVar, a value of a known type that can print itself.
#pragma once

#include <zel/text/cstring.h>
#include <zel/text/string_table.h>

#include <utility>

namespace zel {

// The type tags: the StringIDs of the type names "bool", "int", "int_64", "float", "double",
// "string", "CmdLine" and "BCmdLine". They are interned while the library starts, before the
// static initialisers of the programs and libraries that use it run (in a static build, too: they
// are made at the first initialisation priority after the clock's), and read as null before that.
ZEL_API extern const StringID &_id_bool;
ZEL_API extern const StringID &_id_int;
ZEL_API extern const StringID &_id_int_64;
ZEL_API extern const StringID &_id_float;
ZEL_API extern const StringID &_id_double;
ZEL_API extern const StringID &_id_string;
ZEL_API extern const StringID &_id_CmdLine;
ZEL_API extern const StringID &_id_BCmdLine;

// The registry of value types: the type tag of each C++ type a typed variable may hold.
struct Types {
  // The tag of T: _id_bool for bool, _id_int for int, _id_int_64 for long long, _id_float,
  // _id_double, and _id_string for cstring. Other types do not compile.
  template <typename T>
  static StringID Of() = delete;
};
template <>
inline StringID Types::Of<bool>() {
  return _id_bool;
}
template <>
inline StringID Types::Of<int>() {
  return _id_int;
}
template <>
inline StringID Types::Of<long long>() {
  return _id_int_64;
}
template <>
inline StringID Types::Of<float>() {
  return _id_float;
}
template <>
inline StringID Types::Of<double>() {
  return _id_double;
}
template <>
inline StringID Types::Of<cstring>() {
  return _id_string;
}

// A value of a known type, seen through its tag.
class ZEL_API AnyVar {
 public:
  virtual ~AnyVar();
  // The tag of the value's type.
  virtual StringID GetType() const = 0;
  // Appends the value as text, as PrintValue does.
  virtual void Print(cstring &out, bool quoted) const = 0;
};

// Values as typed variables print them: a bool as "true" or "false", numbers as `cstring <<`
// writes them. Text is one token of a command line: as it stands when it is not empty and every
// character is one of "a-zA-Z0-9_;&*^%$@.!-", otherwise quoted as PrintQuotedString's short form
// writes it; with `quoted`, it is always quoted. Either way the command-line reader gives the text
// back.
ZEL_API void PrintValue(cstring &out, bool value, bool quoted);
ZEL_API void PrintValue(cstring &out, int value, bool quoted);
ZEL_API void PrintValue(cstring &out, long long value, bool quoted);
ZEL_API void PrintValue(cstring &out, float value, bool quoted);
ZEL_API void PrintValue(cstring &out, double value, bool quoted);
ZEL_API void PrintValue(cstring &out, const strptr &value, bool quoted);

// A typed variable holding a T of the built-in types (see Types::Of).
template <typename T>
class TypedVar final : public AnyVar {
 public:
  TypedVar() = default;
  explicit TypedVar(T v) : value(std::move(v)) {}

  StringID GetType() const override { return Types::Of<T>(); }
  void Print(cstring &out, bool quoted) const override { PrintValue(out, value, quoted); }

  T value{};
};

}  // namespace zel

// BCmdLine: the binary twin of CmdLine, a command and its typed, named arguments packed in one
// block of bytes, so that commands cross between threads without text parsing. BCmdLinePtr views
// such a block, and BCmdLineArg is one argument inside it.
//
// Each argument is packed with no padding, in the machine's byte order: its type tag (a StringID,
// see types.h), its name (a StringID), then its value:
//
//   _id_bool      1 byte, 0 false, anything else true
//   _id_int       4 bytes, signed           _id_int_64  8 bytes, signed
//   _id_float     4 bytes, IEEE single      _id_double  8 bytes, IEEE double
//   _id_string    a 4-byte length L, then L bytes (no terminator)
//   _id_BCmdLine  a nested command line: its command (a StringID), a 4-byte length L, then L bytes
//                 of arguments packed the same way
//   other tags    no bytes
//
// StringIDs are as wide as pointers: on 32-bit builds an int argument takes 12 bytes, a string of
// two characters 14, a bool 9. Since the block holds addresses of interned texts, it means
// something only inside the process that built it: a queueing format, never a file format.
#pragma once

#include <zel/parse/types.h>
#include <zel/text/cstring.h>
#include <zel/text/string_table.h>

#include <cstdint>
#include <cstring>

namespace zel {

class BCmdLineArg;

// A view of a command and its packed arguments, with a search cursor. It owns nothing: the block
// must outlive it. The cursor changes even through a const view, so one view is searched by one
// thread at a time.
class ZEL_API BCmdLinePtr {
 public:
  constexpr BCmdLinePtr() = default;
  // `length` bytes of packed arguments at `args`.
  BCmdLinePtr(StringID command, const void *args, int length)
      : command_(command), args_(static_cast<const char *>(args)), length_(length) {}

  StringID Command() const { return command_; }
  // The packed arguments and their length in bytes.
  const char *Data() const { return args_; }
  int Length() const { return length_; }
  bool empty() const { return length_ <= 0; }

  // The next argument named `name` (compared as StringIDs), searching from the cursor to the end
  // of the block and then from its start up to where the search began; the cursor moves past
  // each argument examined. Null when there is none (the cursor then after the last argument
  // examined). So looking arguments up in the order they are stored examines one argument per
  // lookup, and a name stored twice is found first and then second.
  const BCmdLineArg *Find(StringID name) const;
  // Sets the cursor back to the first argument.
  void Rewind() const { cursor_ = nullptr; }

  // Walks the arguments in stored order: `for (const BCmdLineArg &arg : view)`.
  class Iterator {
   public:
    explicit Iterator(const char *at) : at_(at) {}
    const BCmdLineArg &operator*() const { return *reinterpret_cast<const BCmdLineArg *>(at_); }
    Iterator &operator++();
    bool operator==(const Iterator &other) const { return at_ >= other.at_; }

   private:
    const char *at_;
  };
  Iterator begin() const { return Iterator(args_); }
  Iterator end() const { return Iterator(args_ + (length_ > 0 ? length_ : 0)); }

 private:
  StringID command_ = nullptr;
  const char *args_ = nullptr;
  int length_ = 0;
  mutable const char *cursor_ = nullptr;  // null: the start
};

// One argument, seen in place inside its block (never made on its own). Its bytes need no
// alignment: every value is read by copying.
class ZEL_API BCmdLineArg {
 public:
  BCmdLineArg() = delete;
  BCmdLineArg(const BCmdLineArg &) = delete;
  BCmdLineArg &operator=(const BCmdLineArg &) = delete;

  StringID GetType() const { return ReadField<StringID>(0); }
  StringID GetName() const { return ReadField<StringID>(sizeof(StringID)); }
  // The size of the value in bytes, by the type tag (see the table above).
  int GetSize() const;
  // The address just past this argument; the caller checks it against the end of the block.
  const BCmdLineArg *Next_() const {
    return reinterpret_cast<const BCmdLineArg *>(Value() + GetSize());
  }
  // The value's bytes.
  const char *Value() const { return Bytes() + 2 * sizeof(StringID); }

  // The value, when the argument is of the type read; otherwise false, 0 or empty. A bool reads as
  // true for any non-zero byte.
  bool GetBool() const;
  int GetInt() const;
  long long GetInt64() const;
  float GetFloat() const;
  double GetDouble() const;
  // A view of the string's bytes inside the block.
  strptr GetString() const;
  // For a nested command line, a view of it in place (its cursor at the start); for any other
  // type an empty view with a null command.
  BCmdLinePtr GetCmdLine() const;

 private:
  const char *Bytes() const { return reinterpret_cast<const char *>(this); }
  template <typename T>
  T ReadField(size_t offset) const {
    T value;
    std::memcpy(&value, Bytes() + offset, sizeof(T));
    return value;
  }
};

// An owned binary command line: a command and a growable block of packed arguments (grown by the
// library's array rule, from the global allocator). The Add functions append one argument each
// and keep every earlier argument as it was; views taken before an Add may point to the old block.
// Allocation failure throws ErrorX.
class ZEL_API BCmdLine {
 public:
  explicit BCmdLine(StringID command = nullptr) : command_(command) {}
  BCmdLine(const BCmdLine &other);
  BCmdLine &operator=(const BCmdLine &other);
  BCmdLine(BCmdLine &&other) noexcept;
  BCmdLine &operator=(BCmdLine &&other) noexcept;
  ~BCmdLine();

  StringID Command() const { return command_; }
  void SetCommand(StringID command) { command_ = command; }
  const char *Data() const { return args_; }
  // Bytes of arguments, and bytes owned for them.
  int Length() const { return length_; }
  int Capacity() const { return capacity_; }
  // A view of the command and the arguments as they are now.
  BCmdLinePtr View() const { return BCmdLinePtr(command_, args_, length_); }
  operator BCmdLinePtr() const { return View(); }

  void AddBool(StringID name, bool value);
  void AddInt(StringID name, int value);
  void AddInt64(StringID name, long long value);
  void AddFloat(StringID name, float value);
  void AddDouble(StringID name, double value);
  void AddString(StringID name, const strptr &value);
  // A nested command line: sub's command, its length and a copy of its arguments. `sub` may view
  // this very block.
  void AddCmdLine(StringID name, const BCmdLinePtr &sub);

  // Drops the arguments, keeping the memory and the command.
  void Flush() { length_ = 0; }

 private:
  // Appends the header of an argument and room for `size` value bytes; returns where they go.
  char *AddArg(StringID type, StringID name, int size);

  StringID command_;
  char *args_ = nullptr;
  int length_ = 0;
  int capacity_ = 0;
};

// The command's text, then each argument after a blank. The result is a text command line with
// the same names and values (CmdLine reads it back), which is how a binary command is logged.
ZEL_API cstring &operator<<(cstring &out, const BCmdLinePtr &line);
inline cstring &operator<<(cstring &out, const BCmdLine &line) { return out << line.View(); }
// The name's text as it stands, ":", and the value: a bool as "true" or "false", numbers as
// `cstring <<` writes them, a string as it stands when it is not empty and every character is one
// of "a-zA-Z0-9_;&*^%$@.!-", else between double quotes with escapes (PrintQuotedString's short
// form, which the command-line reader turns back into the same text); a nested command line
// printed in full and then written as one such string.
ZEL_API cstring &operator<<(cstring &out, const BCmdLineArg &arg);

}  // namespace zel

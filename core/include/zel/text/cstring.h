// cstring, the library's owned and growable text, and temp_cstring, a cstring handed back by value.
#pragma once

#include <zel/text/strptr.h>

#include <cstdarg>
#include <cstdint>
#include <cstring>

namespace zel {

class CharSet;
class bitptr;
class temp_cstring;

// An owned, growable, always NUL-terminated buffer of 8-bit characters.
//
// A cstring either owns its buffer (capacity > 0; the memory comes from the global allocator) or
// borrows text it does not own (capacity 0): the static empty text, which every empty string made
// from nothing or from empty text points to, so that empty strings allocate nothing; or a literal
// given to Borrow. Copying a borrowing string borrows the same text. Every operation that writes
// into the characters first turns a borrowing string into an owning one, allocating exactly what
// it holds (copy on first write). Appending grows the buffer by the library's growth rule
// (GrowCapacity); constructors, copies and Set allocate exactly.
//
// Allocation failure throws ErrorX (from MallocX / ReallocX). Positions are not range-checked
// except where a comment says so. One string is used by one thread at a time.
class ZEL_API cstring {
 public:
  // An empty string, borrowing the static empty text.
  cstring() noexcept;
  cstring(const char *text) : cstring(strptr(text)) {}
  cstring(const char *text, int length) : cstring(strptr(text, length)) {}
  cstring(const strptr &text);
  // The concatenation of the texts.
  cstring(const strptr &a, const strptr &b);
  cstring(const strptr &a, const strptr &b, const strptr &c);
  cstring(const cstring &other);
  // Takes over the other's buffer; the other is left empty.
  cstring(cstring &&other) noexcept;
  cstring &operator=(const cstring &other);
  cstring &operator=(cstring &&other) noexcept;
  cstring &operator=(const strptr &text) { return Set(text); }
  cstring &operator=(const char *text) { return Set(text); }
  ~cstring();

  // A string borrowing `literal`, NUL-terminated text that outlives it and every copy of it.
  static cstring Borrow(const char *literal);

  // The characters, always followed by a NUL.
  const char *text() const { return text_; }
  int length() const { return stored_ - 1; }
  bool empty() const { return stored_ == 1; }
  // Bytes owned at text(); 0 while the text is borrowed.
  int capacity() const { return capacity_; }
  bool IsBorrowing() const { return capacity_ == 0; }
  char operator[](int i) const { return text_[i]; }
  operator strptr() const { return strptr(text_, stored_ - 1); }
  strptr view() const { return strptr(text_, stored_ - 1); }
  const char *begin() const { return text_; }
  const char *end() const { return text_ + stored_ - 1; }

  // Replaces the contents; `text` may lie inside this string.
  cstring &Set(const strptr &text);
  // Appends; `text` may lie inside this string (appending a string to itself doubles it).
  cstring &Add(const strptr &text);
  // Appends `n` characters known not to lie inside this string.
  cstring &AddNonOverlapping(const char *text, int n) {
    // Inline: the short appends of the number forms and of formatting are the hot path.
    if (n <= 0) return *this;
    const int length = stored_ - 1;
    if (stored_ + n > capacity_) Grow(stored_ + n);
    std::memcpy(text_ + length, text, static_cast<size_t>(n));
    SetLength(length + n);
    return *this;
  }
  // Appends `n` copies of `c` (nothing for n <= 0).
  cstring &AddN(int n, char c);
  // Appends `n` unset characters and returns the view of exactly those `n` characters, for the
  // caller to fill through writable_text() (an empty view for n <= 0).
  strptr AddN(int n);
  // Makes room for a length of at least `length` characters (allocating exactly that when it has
  // to grow) without changing the contents.
  void Reserve(int length);
  // Shrinks an owned buffer to exactly what it holds.
  void Compact();

  // Sets the character at `i`; an index not below the length is ignored.
  void SetAt(int i, char c);
  // Direct writing: with n >= length, grows to n characters (those past the old end unset) and
  // returns the writable text; otherwise only makes the string owning.
  char *GetBuffer(int n);
  // Ends direct writing: the length becomes `n`, or with -1 the position of the first NUL.
  void ReleaseBuffer(int n = -1);

  // Drop leading / trailing white characters (blank, TAB, LF, CR).
  void TrimLeft();
  void TrimRight();
  // Drops every character in `set`, up to the first NUL.
  void DeleteCharSet(const CharSet &set);
  // Drops the characters whose bits are set among the first min(bit count, length) positions;
  // characters beyond the bit set's size are dropped too.
  void Remove(const bitptr &bits);
  // Drops the last character, if any.
  void Chop();
  // Truncates to at most `n` characters.
  void LimitLength(int n);
  // Truncates, or pads with `fill`, to exactly `n` characters.
  cstring &MakeLength(int n, char fill = ' ');
  // Empties the string, keeping an owned buffer.
  void Flush();

  bool StartsWithQ(const strptr &prefix, bool case_sensitive = true) const {
    return view().StartsWithQ(prefix, case_sensitive);
  }
  bool EndsWithQ(const strptr &suffix, bool case_sensitive = true) const {
    return view().EndsWithQ(suffix, case_sensitive);
  }

  // Splits at the first character found in the NUL-terminated list `delimiters` (without case
  // sensitivity a character matches when its upper- or lower-case form is in the list): `rest`
  // receives what follows the delimiter, this string keeps what precedes it. The string's own
  // terminating NUL always matches, so without a delimiter the string is unchanged and `rest`
  // empty. A null list changes nothing but `rest`.
  cstring &CrackOn(const char *delimiters, cstring &rest, bool case_sensitive = true);
  // The same at the last delimiter; with none, nothing changes and `rest` is empty.
  cstring &CrackOnRev(const char *delimiters, cstring &rest, bool case_sensitive = true);
  // Keeps what stands before the first delimiter (the whole string when there is none).
  cstring &CutOn(const char *delimiters, bool case_sensitive = true);
  // Keeps what stands before the last delimiter (the whole string when there is none).
  cstring &CutOnRev(const char *delimiters, bool case_sensitive = true);

  // Replaces every occurrence of `what` by `with` (matches do not overlap); returns how many.
  // With `preserve_case` (effective only when not case-sensitive and `with` is not empty) each
  // replacement takes the letter case of the text it replaces (see AddPreservingCase).
  int Replace(const strptr &what, const strptr &with, bool case_sensitive = true,
              bool preserve_case = false);
  // The same into a new string; stores the count through `count` when it is not null (0 when
  // `what` is empty).
  [[nodiscard]] temp_cstring Replaced(const strptr &what, const strptr &with,
                                      bool case_sensitive = true, bool preserve_case = false,
                                      int *count = nullptr) const;
  // Opens a gap of `n` unset characters at `at`, moving the rest up, and returns the view of
  // exactly those `n` characters for the caller to fill (an empty view for n <= 0).
  strptr InsertRegion(int at, int n);
  // Replaces the `n` characters at `at` by `text`, which may lie inside this string.
  void ReplaceRegion(int at, int n, const strptr &text);

  void Swap(cstring &other) noexcept;

  // Replaces the contents with what the C runtime's printf family writes for `format` and the
  // arguments. An argument may point into this string. A format the runtime rejects leaves the
  // string empty.
  cstring &Format(const char *format, ...) ZEL_PRINTF(2, 3);
  cstring &FormatV(const char *format, va_list args) ZEL_PRINTF(2, 0);

  // Appending text and numbers; the number forms write what printf's "%d", "%u", "%lld", "%llu"
  // and "%g" write.
  cstring &operator<<(const strptr &text) { return Add(text); }
  cstring &operator<<(const char *text) { return Add(strptr(text)); }
  cstring &operator<<(const cstring &text) { return Add(text.view()); }
  cstring &operator<<(char c);
  cstring &operator<<(signed char c) { return *this << static_cast<char>(c); }
  cstring &operator<<(int v);
  cstring &operator<<(short v) { return *this << static_cast<int>(v); }
  cstring &operator<<(unsigned int v);
  cstring &operator<<(unsigned short v) { return *this << static_cast<unsigned int>(v); }
  cstring &operator<<(long long v);
  cstring &operator<<(unsigned long long v);
  cstring &operator<<(long v) { return *this << static_cast<long long>(v); }
  cstring &operator<<(unsigned long v) { return *this << static_cast<unsigned long long>(v); }
  cstring &operator<<(double v);
  cstring &operator<<(float v) { return *this << static_cast<double>(v); }
  // There is deliberately no bool form.
  cstring &operator<<(bool) = delete;

 private:
  // Room for a stored count (characters and the NUL) of `need`, by the growth rule.
  void Grow(int need);
  // Room for exactly `need` stored bytes when the buffer is smaller; a borrowing string becomes
  // owning in any case.
  void GrowExact(int need);
  // Appends `value` as std::to_chars writes it with `format` (the number forms of `<<`).
  template <typename T, typename... Style>
  cstring &AddNumber(T value, Style... style);
  // Copy on first write: a borrowing string takes an owned copy of its text.
  void MakeOwning();
  // Copies the borrowed text into an owned buffer of max(size, stored count) bytes.
  void TakeOwnership(int size);
  void SetLength(int n) {
    stored_ = n + 1;
    text_[n] = 0;
  }

  char *text_;
  int stored_;    // characters including the NUL: an empty string has 1
  int capacity_;  // 0: the text is borrowed
};

// A cstring handed back by value: the receiver takes over its buffer without copying.
class temp_cstring : public cstring {
 public:
  temp_cstring() = default;
  temp_cstring(cstring &&s) noexcept : cstring(static_cast<cstring &&>(s)) {}
};

// A new string holding what cstring::Format writes.
ZEL_API temp_cstring Formatted(const char *format, ...) ZEL_PRINTF(1, 2);

// Appends "\r\n" when the string is not empty and does not end in LF or CR.
ZEL_API cstring &MaybeEOL(cstring &s);
// Appends a blank when the string is not empty and does not end in a white character.
ZEL_API cstring &MaybeSpace(cstring &s);
// The text with every line end (CR LF, a lone CR, a lone LF) written as CR LF.
[[nodiscard]] ZEL_API temp_cstring FixNewlines(const strptr &text);
// Appends `text` shaped after the letter case of `model`: all upper case when every letter of the
// model's first min(len(model), len(text)) characters is upper case (or there is none: intended),
// all lower case when every one is lower case, else character by character.
ZEL_API void AddPreservingCase(cstring &out, const strptr &model, const strptr &text);

}  // namespace zel

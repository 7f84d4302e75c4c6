// shstring, an immutable view into a reference-counted character buffer, and ShStringPool, which
// packs many short shared strings into common blocks.
#pragma once

#include <zel/mem/allocator.h>
#include <zel/text/cstring.h>
#include <zel/text/strptr.h>

#include <atomic>
#include <cstdint>

namespace zel {

// An immutable view of `length` characters inside a shared buffer. Copying, assigning and taking
// sub-views that lie in the same buffer never copy characters: they add one reference, changed
// only atomically, so copies may be made and released on any threads at once (one shstring object
// is still used by one thread at a time). Whoever drops the last reference frees the buffer.
// Several strings may view different stretches of one buffer. The viewed characters are never
// changed through a shstring; a private copy is made explicitly with Sever.
//
// The empty string has no buffer. The viewed text is not necessarily NUL-terminated. Equality
// compares characters as strncmp does, so a NUL inside both texts ends the comparison.
class ZEL_API shstring {
 public:
  // The shared buffer: a 12-byte header, then `buffer_length` characters, in one block from the
  // global allocator.
  struct strbuf {
    std::atomic<int32_t> references;
    int32_t buffer_length;
    int32_t length;  // equal to buffer_length when the buffer is made

    char *chars() { return reinterpret_cast<char *>(this + 1); }
    const char *chars() const { return reinterpret_cast<const char *>(this + 1); }
    int RefCount() const { return references.load(std::memory_order_relaxed); }
    // True when `text` of `length` characters lies within the buffer.
    bool Holds(const char *text, int length) const {
      return text >= chars() && text + length <= chars() + buffer_length;
    }
  };

  // The empty string.
  shstring() = default;
  // A copy of the NUL-terminated `text` in a new buffer; null or "" gives the empty string (no
  // buffer).
  explicit shstring(const char *text);
  // A copy of `text` in a new buffer, also when it is empty (a buffer of 0 characters).
  explicit shstring(const strptr &text);
  explicit shstring(const cstring &text) : shstring(text.view()) {}
  // `count` copies of `c` in a new buffer (0 characters for a negative count).
  shstring(int count, char c);
  // Shares the other's buffer.
  shstring(const shstring &other)
      : buffer_(other.buffer_), text_(other.text_), length_(other.length_) {
    if (buffer_ != nullptr) buffer_->references.fetch_add(1, std::memory_order_relaxed);
  }
  // Takes over the other's reference; the other is left empty.
  shstring(shstring &&other) noexcept
      : buffer_(other.buffer_), text_(other.text_), length_(other.length_) {
    other.Forget();
  }
  // `part` of `base`: shares the base's buffer when the part lies inside that buffer, else copies
  // the part into a new buffer. An empty part gives the empty string.
  shstring(const shstring &base, const strptr &part);
  // The stretch [begin, end) of the base's buffer (not of its view), shared; the empty string when
  // the base has no buffer or end < begin. The stretch must lie within the buffer.
  shstring(const shstring &base, const Range &stretch);
  ~shstring() { Release(); }

  // Shares the other's buffer (releasing the old one unless it is the same buffer).
  shstring &operator=(const shstring &other);
  shstring &operator=(shstring &&other) noexcept;
  // Re-points the view without copying when `text` lies inside the current buffer; else copies
  // it into a new buffer (0 characters for empty text) and releases the old one.
  shstring &operator=(const strptr &text);

  // Becomes shstring(base, part); `base` may be this string.
  void Set(const shstring &base, const strptr &part);
  // Releases the buffer and makes a new one of `count` unset characters, viewed whole; returns
  // them for the caller to fill before the string is shared.
  char *NewEmptyString(int count);
  // When the buffer is shared (two references or more), copies the viewed characters into a
  // private buffer of exactly that size; otherwise does nothing.
  void Sever();

  const char *text() const { return text_; }
  int length() const { return length_; }
  bool empty() const { return length_ == 0; }
  strptr view() const { return strptr(text_, length_); }
  operator strptr() const { return view(); }
  // The shared buffer, or null for the empty string.
  const strbuf *buffer() const { return buffer_; }

  // Equal length and equal characters (letters folded to lower case, ASCII only, when
  // `case_sensitive` is false).
  bool Equal(const strptr &other, bool case_sensitive = true) const;
  bool Equal(const char *other, bool case_sensitive = true) const {
    return Equal(strptr(other), case_sensitive);
  }
  bool Equal(const shstring &other, bool case_sensitive = true) const {
    return Equal(other.view(), case_sensitive);
  }
  // Equal length, and the same text pointer, or no characters, or equal characters.
  bool operator==(const shstring &other) const;

  // Where this string's view lies in `base`'s buffer, [offset, offset + length), when both share
  // one buffer; [0, 0) otherwise.
  Range IndexIn(const shstring &base) const;

  void Swap(shstring &other) noexcept;

 private:
  friend class ShStringPool;

  // A new buffer of `count` unset characters, holding one reference.
  static strbuf *NewBuffer(int count);
  // A view of `length` characters at `text` in `buffer`, taking a reference.
  void Share(strbuf *buffer, const char *text, int length);
  // A new buffer holding a copy of `text`, viewed whole (the old buffer is not released).
  void CopyIn(const strptr &text);
  void Forget() {
    buffer_ = nullptr;
    text_ = nullptr;
    length_ = 0;
  }
  void Release() {
    if (buffer_ != nullptr && buffer_->references.fetch_sub(1, std::memory_order_acq_rel) == 1)
      FreeX(buffer_);
  }

  strbuf *buffer_ = nullptr;
  const char *text_ = nullptr;
  int length_ = 0;
};

static_assert(sizeof(shstring::strbuf) == 12, "the shared buffer's header is 12 bytes");

// Packs short shared strings into blocks: each string added is a NUL-terminated copy in the
// current block, and a string that does not fit starts a new block (of the next block size, or of
// the string's own size when that is larger). The pool holds one reference to its current block;
// a block is freed once the pool has moved on and the last string in it is released. Not locked.
class ZEL_API ShStringPool {
 public:
  // An empty pool whose first block will be `block_size` bytes; each new block multiplies the
  // size of the next by `growth`.
  ShStringPool(int block_size, int growth);
  ShStringPool(const ShStringPool &) = delete;
  ShStringPool &operator=(const ShStringPool &) = delete;

  // A NUL-terminated copy of `text` in the current block, viewed without the NUL.
  shstring Add(const strptr &text);

 private:
  shstring block_;  // the current block, viewed whole
  int used_ = 0;
  int next_block_size_;
  int growth_;
};

}  // namespace zel

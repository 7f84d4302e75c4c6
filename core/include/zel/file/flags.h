// QFlags, a set of the bits of an enumeration, and FileFlags_, the bits that say how a file is
// opened and how a failure to open it is reported.
#pragma once

#include <zel/config.h>

#include <cstdint>

namespace zel {

// A 32-bit set of the bits of the enumeration E. Enumerators convert to it, so a single bit or a
// union of bits (`FileRead | FileThrowErrors`) is passed where a set is taken; `{}` is the empty set.
template <typename E>
class QFlags {
 public:
  constexpr QFlags() = default;
  constexpr QFlags(E bits) : bits_(static_cast<uint32_t>(bits)) {}

  // The set holding exactly `bits`.
  static constexpr QFlags FromBits(uint32_t bits) {
    QFlags flags;
    flags.bits_ = bits;
    return flags;
  }
  constexpr uint32_t Bits() const { return bits_; }
  // Are all the bits of `bits` in the set?
  constexpr bool Has(QFlags bits) const { return (bits_ & bits.bits_) == bits.bits_; }
  // The set without the bits of `bits`.
  [[nodiscard]] constexpr QFlags Without(QFlags bits) const { return FromBits(bits_ & ~bits.bits_); }

  constexpr QFlags &operator|=(QFlags other) {
    bits_ |= other.bits_;
    return *this;
  }
  friend constexpr QFlags operator|(QFlags a, QFlags b) { return a |= b; }
  constexpr bool operator==(const QFlags &) const = default;

 private:
  uint32_t bits_ = 0;
};

// How OpenFile opens a file and reports a failure.
enum FileFlags_ : uint32_t {
  // Read access; other handles may then read, write and delete the file meanwhile.
  FileRead = 0x00001,
  // Write access; other handles may not write meanwhile.
  FileWrite = 0x00002,
  // Hints to the system's caching: the file is read from start to end, or at random places.
  FileSequentialScan = 0x00004,
  FileRandomAccess = 0x00008,
  // Write access to a file created when missing, positioned at its end.
  FileAppend = 0x00020,
  // With FileWrite: the file is created empty even when FileRead is also given.
  FileTruncate = 0x00040,
  // A failure is written to the log / thrown as ErrorX.
  FileLogErrors = 0x08000,
  FileThrowErrors = 0x10000,
  // The handle is for overlapped (asynchronous) reads.
  FileOverlapped = 0x20000,
};

constexpr QFlags<FileFlags_> operator|(FileFlags_ a, FileFlags_ b) {
  return QFlags<FileFlags_>(a) | b;
}

}  // namespace zel

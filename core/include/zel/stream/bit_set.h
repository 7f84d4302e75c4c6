// Bit sets and their byte-stream record.
//
// The record: the signature "bitset", the 4-byte bit count N, the ceil(N / 32) 32-bit words of the
// bits (bit i is bit i mod 32 of word i / 32), then the 4-byte RecordChecksum of those word bytes.
#pragma once

#include <zel/mem/tary.h>
#include <zel/stream/bitptr.h>
#include <zel/stream/byte_stream.h>

#include <cstdint>

namespace zel {

// What a bit set offers to ReadBitSet.
class ZEL_API IBitSet {
 public:
  virtual ~IBitSet();
  // Makes the set `count` bits long (count >= 0), keeping the words it has up to the new length,
  // and returns its words: at least ceil(count / 32) of them.
  virtual uint32_t *Resize(int count) = 0;
};

// A growable set of bits in 32-bit words; new bits are clear.
class ZEL_API BitSet : public IBitSet {
 public:
  uint32_t *Resize(int count) override;

  int Count() const { return count_; }
  bool Test(int i) const { return View().Test(i); }
  // Sets bit i (0 <= i < Count()) to `on`.
  void Set(int i, bool on);
  bitptr View() const { return bitptr(words_.begin(), count_); }

 private:
  TAry<uint32_t> words_;
  int count_ = 0;
};

// Writes `bits` as a bit-set record.
ZEL_API void WriteBitSet(VirtByteDest &dest, const bitptr &bits);

// Reads a bit-set record into `bits`, growing it as the words arrive, so a count larger than the
// source holds fails at the source's end without first allocating that many bits. Throws ErrorX
// when the signature is wrong (as ReadSignature), for a negative count ("Invalid bit count"), at
// the end of the source (as ReadX) and "CRC check failed" when the checksum differs; the set then
// holds what was read.
ZEL_API void ReadBitSet(VirtByteSource &source, IBitSet &bits);

}  // namespace zel

// Buffering adapters: BufferedByteSource reads another source in large blocks, BufferedByteDest
// collects small writes into large ones for another destination.
#pragma once

#include <zel/stream/byte_stream.h>

namespace zel {

// A source that refills a buffer of its own from `inner` (not owned, which must outlive it) with
// reads of the whole buffer capacity. Not copyable.
class ZEL_API BufferedByteSource : public VirtByteSource {
 public:
  static constexpr int kDefaultCapacity = 65536;

  explicit BufferedByteSource(VirtByteSource &inner, int capacity = kDefaultCapacity);
  ~BufferedByteSource() override;
  BufferedByteSource(const BufferedByteSource &) = delete;
  BufferedByteSource &operator=(const BufferedByteSource &) = delete;

  // Delivers up to `n` bytes (0 for n < 1): the buffered ones, then refills. Once the inner source
  // returned less than a full buffer it is not asked again, and the count can fall short of `n`.
  int Read(void *buffer, int n) override;

 private:
  VirtByteSource *inner_;
  unsigned char *buffer_;
  int held_ = 0;
  int capacity_;
  bool end_reached_ = false;
  int next_ = 0;
};

// A destination that collects bytes in a buffer of its own and hands them to `inner` (not owned,
// which must outlive it) a full buffer at a time, and the rest on WriteOut. Not copyable.
class ZEL_API BufferedByteDest : public VirtByteDest {
 public:
  static constexpr int kDefaultCapacity = 65536;

  explicit BufferedByteDest(VirtByteDest &inner, int capacity = kDefaultCapacity);
  // Writes out what is pending (a failure goes unnoticed: call WriteOut to see it).
  ~BufferedByteDest() override;
  BufferedByteDest(const BufferedByteDest &) = delete;
  BufferedByteDest &operator=(const BufferedByteDest &) = delete;

  // Takes `n` bytes (0 for n < 1). A full buffer is handed to the inner destination before more
  // bytes go in; when it accepts less than all of it, the buffer is emptied (those bytes are lost)
  // and the result is the number of the caller's bytes taken until then, less than `n`.
  int Write(const void *buffer, int n) override;
  // Hands the pending bytes to the inner destination; true when there were none or all were
  // accepted. Nothing is pending afterwards either way.
  bool WriteOut();

 private:
  VirtByteDest *inner_;
  unsigned char *buffer_;
  int capacity_;
  int pending_ = 0;
};

}  // namespace zel

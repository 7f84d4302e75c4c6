// SerialAlloc: blocks handed out one after another and freed all together.
#pragma once

#include <zel/mem/mem_usage.h>

namespace zel {

// Hands out blocks one after another from chunks taken from the global allocator and frees every
// chunk when it goes; a single block is never given back. For nodes that live as long as their
// container. Not locked.
class SerialAlloc {
 public:
  // Chunks of `chunk_size` bytes (or, for a larger block, of that block's size and the header).
  explicit SerialAlloc(int chunk_size) : chunk_size_(chunk_size) {}
  ~SerialAlloc();
  SerialAlloc(const SerialAlloc &) = delete;
  SerialAlloc &operator=(const SerialAlloc &) = delete;

  // `size` bytes aligned to 8.
  void *Alloc(int size);

  // Adds each chunk: the bytes handed out of it, and its size.
  void AddMemUsage(MemUsageInfo &usage) const;

 private:
  // The header of a chunk; its blocks follow.
  struct alignas(8) Chunk {
    Chunk *previous;
    int size;  // bytes for blocks
    int used;
  };
  static constexpr int kHeader = static_cast<int>(sizeof(Chunk));

  const int chunk_size_;
  Chunk *chunk_ = nullptr;  // the newest
};

}  // namespace zel

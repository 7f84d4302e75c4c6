// SerialAlloc: chunks carved from the front, freed together.
#include "mem/serial_alloc.h"

#include <zel/mem/allocator.h>

#include <new>

namespace zel {

SerialAlloc::~SerialAlloc() {
  while (chunk_ != nullptr) {
    Chunk *previous = chunk_->previous;
    FreeX(chunk_);
    chunk_ = previous;
  }
}

void *SerialAlloc::Alloc(int size) {
  size = (size + 7) & ~7;
  if (chunk_ == nullptr || chunk_->used + size > chunk_->size) {
    const int room = chunk_size_ - kHeader > size ? chunk_size_ - kHeader : size;
    chunk_ = new (MallocX(kHeader + room)) Chunk{chunk_, room, 0};
  }
  void *block = reinterpret_cast<char *>(chunk_) + kHeader + chunk_->used;
  chunk_->used += size;
  return block;
}

void SerialAlloc::AddMemUsage(MemUsageInfo &usage) const {
  for (const Chunk *c = chunk_; c != nullptr; c = c->previous)
    usage.Add(c->used, kHeader + c->size);
}

}  // namespace zel

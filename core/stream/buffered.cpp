// The buffering source and destination.
#include <zel/mem/allocator.h>
#include <zel/stream/buffered.h>

#include <cstring>

namespace zel {

namespace {
int Smaller(int a, int b) { return a < b ? a : b; }
}  // namespace

BufferedByteSource::BufferedByteSource(VirtByteSource &inner, int capacity)
    : inner_(&inner),
      buffer_(static_cast<unsigned char *>(MallocX(capacity))),
      capacity_(capacity) {}

BufferedByteSource::~BufferedByteSource() { FreeX(buffer_); }

int BufferedByteSource::Read(void *buffer, int n) {
  auto *out = static_cast<unsigned char *>(buffer);
  int delivered = 0;
  while (delivered < n) {
    if (next_ == held_) {
      if (end_reached_) break;
      held_ = inner_->Read(buffer_, capacity_);
      next_ = 0;
      if (held_ < capacity_) end_reached_ = true;
      if (held_ < 0) held_ = 0;  // a failing inner source counts as its end
      continue;
    }
    int k = Smaller(n - delivered, held_ - next_);
    std::memcpy(out + delivered, buffer_ + next_, static_cast<size_t>(k));
    next_ += k;
    delivered += k;
  }
  return delivered;
}

BufferedByteDest::BufferedByteDest(VirtByteDest &inner, int capacity)
    : inner_(&inner),
      buffer_(static_cast<unsigned char *>(MallocX(capacity))),
      capacity_(capacity) {}

BufferedByteDest::~BufferedByteDest() {
  WriteOut();
  FreeX(buffer_);
}

int BufferedByteDest::Write(const void *buffer, int n) {
  const auto *in = static_cast<const unsigned char *>(buffer);
  int taken = 0;
  while (taken < n) {
    if (pending_ == capacity_ && !WriteOut()) return taken;
    int k = Smaller(n - taken, capacity_ - pending_);
    std::memcpy(buffer_ + pending_, in + taken, static_cast<size_t>(k));
    pending_ += k;
    taken += k;
  }
  return taken;
}

bool BufferedByteDest::WriteOut() {
  if (pending_ == 0) return true;
  int pending = pending_;
  pending_ = 0;
  return inner_->Write(buffer_, pending) == pending;
}

}  // namespace zel

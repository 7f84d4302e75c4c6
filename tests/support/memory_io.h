// An in-memory byte stream for tests: what is written is appended to `data`, reads take from it
// from `next` on; it records the sizes asked of Read and Write, and can refuse bytes.
#pragma once

#include <zel/stream/byte_stream.h>

#include <climits>
#include <string>
#include <vector>

namespace zel::test {

class MemoryIO final : public VirtByteIO {
 public:
  explicit MemoryIO(std::string bytes = {}, bool writing = false)
      : VirtByteIO(writing), data(std::move(bytes)) {}

  int Read(void *buffer, int n) override {
    reads.push_back(n);
    size_t taken = data.copy(static_cast<char *>(buffer), static_cast<size_t>(n), next);
    next += taken;
    return static_cast<int>(taken);
  }
  int Write(const void *buffer, int n) override {
    writes.push_back(n);
    int taken = n < accept ? n : accept;
    accept -= taken;
    data.append(static_cast<const char *>(buffer), static_cast<size_t>(taken));
    return taken;
  }

  std::string data;
  size_t next = 0;
  int accept = INT_MAX;  // bytes still accepted by Write
  std::vector<int> reads, writes;
};

}  // namespace zel::test

// A byte destination that keeps what is written, for fuzz targets that write back what they read.
#pragma once

#include <zel/stream/byte_stream.h>

#include <string>

namespace fuzz {

class ByteSink : public zel::VirtByteDest {
 public:
  int Write(const void *buffer, int n) override {
    bytes.append(static_cast<const char *>(buffer), static_cast<size_t>(n));
    return n;
  }
  std::string bytes;
};

}  // namespace fuzz

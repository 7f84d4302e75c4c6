// The byte-stream interfaces: VirtByteSource (something to read from), VirtByteDest (something to
// write to) and VirtByteIO (one or the other by a direction flag), and MemoryByteSource, a source
// over a block of memory.
#pragma once

#include <zel/config.h>

namespace zel {

// Something bytes can be read from.
class ZEL_API VirtByteSource {
 public:
  virtual ~VirtByteSource();
  // Reads up to `n` bytes into `buffer`; returns how many were read (fewer only at the end).
  virtual int Read(void *buffer, int n) = 0;
  // Reads exactly `n` bytes or throws ErrorX "Unexpected end of file: <n> bytes requested,
  // <got> bytes read." (what was read stays consumed).
  virtual void ReadX(void *buffer, int n);
};

// Something bytes can be written to.
class ZEL_API VirtByteDest {
 public:
  virtual ~VirtByteDest();
  // Writes up to `n` bytes; returns how many were taken.
  virtual int Write(const void *buffer, int n) = 0;
  // Writes exactly `n` bytes or throws ErrorX "Write failed".
  virtual void WriteX(const void *buffer, int n);
};

// Both a source and a destination, used in one direction at a time: routines that take a
// VirtByteIO write when WritingQ() and otherwise read the same layout.
class ZEL_API VirtByteIO : public VirtByteSource, public VirtByteDest {
 public:
  explicit VirtByteIO(bool writing) : writing_(writing) {}

  bool WritingQ() const { return writing_; }
  void SetWriting(bool writing) { writing_ = writing; }

 private:
  bool writing_;
};

// A source over `count` bytes of memory it does not own.
class ZEL_API MemoryByteSource : public VirtByteSource {
 public:
  MemoryByteSource(const void *data, int count)
      : next_(static_cast<const unsigned char *>(data)), remaining_(count) {}

  int Read(void *buffer, int n) override;
  // Reads exactly `n` bytes or, consuming nothing, throws ErrorX "Unexpected EOF".
  void ReadX(void *buffer, int n) override;
  // Skips up to `n` bytes; returns how many.
  int Skip(int n);
  // Skips exactly `n` bytes or, consuming nothing, throws ErrorX "Unexpected EOF".
  void SkipX(int n);
  // The bytes not read yet.
  int operator~() const { return remaining_; }

 private:
  const unsigned char *next_;
  int remaining_;
};

}  // namespace zel

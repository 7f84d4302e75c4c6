// Signatures against arbitrary bytes. Twice the first byte gives the length of an expected text
// signature taken from the input's end; it is read from the bytes after the first, and so is the
// integer form with the last four input bytes as the expected value. Each read succeeds exactly
// when the bytes match, and otherwise fails with ErrorX.
#include <zel/diag/error.h>
#include <zel/stream/signature.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// Whether `found` matches `expected` as the signature reader compares: in pieces of 128 bytes,
// each as C strings.
bool Matches(const char *found, const char *expected, int n) {
  for (int at = 0; at < n; at += 128) {
    const int piece = n - at < 128 ? n - at : 128;
    if (std::strncmp(found + at, expected + at, static_cast<size_t>(piece)) != 0) return false;
  }
  return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  if (size < 5) return 0;
  const auto *text = reinterpret_cast<const char *>(data);
  const int length = static_cast<int>(size) - 1;
  const int wanted = data[0] * 2 < length ? data[0] * 2 : length;
  const zel::strptr expected(text + size - static_cast<size_t>(wanted), wanted);

  zel::MemoryByteSource source(text + 1, length);
  bool matched = true;
  try {
    zel::ReadSignature(source, expected);
  } catch (const zel::ErrorX &) {
    matched = false;
  }
  // The source always holds enough bytes, so only the comparison decides.
  if (matched != Matches(text + 1, expected.text(), wanted)) std::abort();
  if (matched && ~source != length - wanted) std::abort();

  int32_t value;
  std::memcpy(&value, data + size - 4, 4);
  zel::MemoryByteSource rest(text + 1, length);
  try {
    zel::ReadSignature(rest, value);
    if (std::memcmp(text + 1, &value, 4) != 0) std::abort();
  } catch (const zel::ErrorX &) {
    if (std::memcmp(text + 1, &value, 4) == 0) std::abort();
  }
  return 0;
}

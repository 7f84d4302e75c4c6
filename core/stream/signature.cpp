// Text and integer signatures.
#include <zel/diag/error.h>
#include <zel/stream/signature.h>
#include <zel/text/thread_local_string.h>

#include <cstdint>
#include <cstring>

namespace zel {

namespace {

constexpr int kPiece = 128;

// Reads and checks one piece of at most kPiece bytes.
void ReadPiece(VirtByteSource &source, const strptr &expected) {
  char found[kPiece];
  const int n = expected.length();
  source.ReadX(found, n);
  // A C-string comparison: bytes after a zero byte that both have are not compared (intended).
  if (std::strncmp(found, expected.text(), static_cast<size_t>(n)) == 0) return;
  ThreadLocalString message;
  *message << "Invalid signature read from file: expected " << expected << ", found '";
  char *shown = message->AddN(n).writable_text();
  for (int i = 0; i < n; ++i) {
    const auto byte = static_cast<unsigned char>(found[i]);
    shown[i] = byte >= 0x20 && byte < 0x7F ? found[i] : ' ';
  }
  *message << "'";
  ThrowErrorX(*message);
}

}  // namespace

void WriteSignature(VirtByteDest &dest, const strptr &signature) {
  dest.WriteX(signature.text(), signature.length());
}

void ReadSignature(VirtByteSource &source, const strptr &signature) {
  for (int at = 0; at < signature.length(); at += kPiece)
    ReadPiece(source, signature.Mid(at, kPiece));
}

void WriteSignature(VirtByteDest &dest, int signature) {
  const int32_t value = signature;
  dest.WriteX(&value, sizeof value);
}

void ReadSignature(VirtByteSource &source, int signature) {
  int32_t found;
  source.ReadX(&found, sizeof found);
  if (found == signature) return;
  ThreadLocalString message;
  // Unlike the text form, the value found is not quoted (intended).
  *message << "Invalid signature read from file: expected " << signature << ", found " << found;
  ThrowErrorX(*message);
}

void SerializeSignature(VirtByteIO &io, const strptr &signature) {
  if (io.WritingQ()) {
    WriteSignature(io, signature);
  } else {
    ReadSignature(io, signature);
  }
}

void SerializeSignature(VirtByteIO &io, int signature) {
  if (io.WritingQ()) {
    WriteSignature(io, signature);
  } else {
    ReadSignature(io, signature);
  }
}

}  // namespace zel

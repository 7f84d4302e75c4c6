// The bit-set record: signature, bit count, words, checksum.
#include <zel/diag/error.h>
#include <zel/stream/bit_set.h>
#include <zel/stream/checksum.h>
#include <zel/stream/signature.h>

namespace zel {

namespace {
constexpr char kSignature[] = "bitset";
// Words read per step: the set grows by at most this much beyond what has arrived.
constexpr int kChunkWords = 16384;
}  // namespace

void WriteBitSet(VirtByteDest &dest, const bitptr &bits) {
  WriteSignature(dest, kSignature);
  const int32_t count = bits.Count();
  dest.WriteX(&count, sizeof count);
  const int bytes = bits.WordCount() * 4;
  dest.WriteX(bits.Words(), bytes);
  const uint32_t checksum = RecordChecksum(bits.Words(), bytes);
  dest.WriteX(&checksum, sizeof checksum);
}

void ReadBitSet(VirtByteSource &source, IBitSet &bits) {
  ReadSignature(source, kSignature);
  int32_t count;
  source.ReadX(&count, sizeof count);
  if (count < 0) ThrowErrorX("Invalid bit count");
  const int words = bitptr(nullptr, count).WordCount();
  uint32_t checksum = 0;
  int done = 0;
  bits.Resize(0);  // then grown as the words arrive
  while (done < words) {
    const int step = words - done < kChunkWords ? words - done : kChunkWords;
    const int64_t upto = int64_t{done + step} * 32;
    uint32_t *word = bits.Resize(upto < count ? static_cast<int>(upto) : count) + done;
    source.ReadX(word, step * 4);
    checksum = RecordChecksum(word, step * 4, checksum);
    done += step;
  }
  uint32_t stored;
  source.ReadX(&stored, sizeof stored);
  if (stored != checksum) ThrowErrorX("CRC check failed");
}

}  // namespace zel

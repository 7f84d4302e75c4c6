// StringTableMT and the process-wide table of StringIDs.
#include <zel/text/shstring.h>
#include <zel/text/str_map.h>
#include <zel/text/string_table.h>

#include "mem/serial_alloc.h"
#include "thread/light_lock.h"

#include <new>
#include <utility>

namespace zel {

namespace {

constexpr int kBlockSize = 1024;
constexpr int kNodeChunkSize = 4096;

// The entries of a string table: each key is the interned copy itself.
class InternMap final : public StrMapBase {
 public:
  explicit InternMap(SerialAlloc &nodes) : nodes_(nodes) {}
  ~InternMap() override { Flush(); }

  // The interned copy equal to `text`, whose hash is `hash`, or null.
  const char *Lookup(const strptr &text, uint32_t hash) const {
    const StrEntryBase *entry = Find(text, hash);
    return entry != nullptr ? entry->key.text() : nullptr;
  }

  // Adds the entry of a new interned copy, rehashing first when the table is crowded.
  void Add(const shstring &copy) {
    GrowWhenCrowded();
    Insert(new (nodes_.Alloc(sizeof(StrEntryBase))) StrEntryBase{copy});
  }

 private:
  uint32_t HashOf(const strptr &key) const override { return StringTableMT::Hash(key); }
  // The node itself goes with the node pool.
  void DestroyEntry(StrEntryBase *entry) override { entry->~StrEntryBase(); }

  SerialAlloc &nodes_;
};

}  // namespace

struct StringTableMT::Tables {
  LightLock lock;
  ShStringPool pool{kBlockSize, 1};
  SerialAlloc nodes{kNodeChunkSize};
  InternMap map{nodes};  // destroyed before the nodes it lives in
  MemUsageInfo pool_usage;
  const shstring::strbuf *newest_block = nullptr;
};

StringTableMT::StringTableMT() : tables_(new (MallocX(sizeof(Tables))) Tables()) {}

StringTableMT::~StringTableMT() {
  tables_->~Tables();
  FreeX(tables_);
}

const char *StringTableMT::GetOrCreateIndex(const strptr &text) {
  const uint32_t hash = Hash(text);  // before the lock: it reads only the caller's text
  Tables &t = *tables_;
  LightLockHold hold(t.lock);
  if (const char *interned = t.map.Lookup(text, hash)) return interned;
  shstring copy = t.pool.Add(text);
  if (copy.buffer() != t.newest_block) {
    t.newest_block = copy.buffer();
    t.pool_usage.Add(0, copy.buffer()->buffer_length);
  }
  t.pool_usage.used += copy.length() + 1;
  t.map.Add(copy);
  return copy.text();
}

const char *StringTableMT::GetIndex(const strptr &text) const {
  const uint32_t hash = Hash(text);
  LightLockHold hold(tables_->lock);
  return tables_->map.Lookup(text, hash);
}

int StringTableMT::Count() const {
  LightLockHold hold(tables_->lock);
  return tables_->map.Count();
}

int StringTableMT::BucketCount() const {
  LightLockHold hold(tables_->lock);
  return tables_->map.BucketCount();
}

void StringTableMT::AddMemUsage(MemUsageInfo &usage) const {
  LightLockHold hold(tables_->lock);
  usage.used += tables_->pool_usage.used;
  usage.allocated += tables_->pool_usage.allocated;
  usage.blocks += tables_->pool_usage.blocks;
  tables_->nodes.AddMemUsage(usage);
  tables_->map.AddMemUsage(usage);
}

namespace {

uint32_t Signed(char c) { return static_cast<uint32_t>(static_cast<signed char>(c)); }

}  // namespace

uint32_t StringTableMT::Hash(const strptr &text) {
  // Four characters a step: h * 33^4 + c0 * 33^3 + c1 * 33^2 + c2 * 33 + c3 is the same sum as
  // four single steps, but its products are independent, so the chain of dependent operations that
  // bounds the speed is a quarter as long.
  constexpr uint32_t k1 = 33, k2 = k1 * 33, k3 = k2 * 33, k4 = k3 * 33;
  const char *c = text.text();
  const int n = text.length();
  uint32_t h = 0;
  int i = 0;
  for (; i + 4 <= n; i += 4)
    h = h * k4 + Signed(c[i]) * k3 + Signed(c[i + 1]) * k2 + Signed(c[i + 2]) * k1 +
        Signed(c[i + 3]);
  for (; i < n; ++i) h = h * k1 + Signed(c[i]);
  return h;
}

namespace {

StringTableMT &ProcessTable() {
  // Never destroyed, so that StringIDs stay valid through every static destructor.
  static StringTableMT *const table = new (MallocX(sizeof(StringTableMT))) StringTableMT();
  return *table;
}

}  // namespace

StringID InternString(const strptr &text) { return ProcessTable().GetOrCreateIndex(text); }

StringID FindInternedString(const strptr &text) { return ProcessTable().GetIndex(text); }

}  // namespace zel

// StrMapBase, the chained hash table keyed by text under the library's string tables.
#pragma once

#include <zel/mem/mem_usage.h>
#include <zel/mem/tary.h>
#include <zel/text/cstring.h>
#include <zel/text/shstring.h>

#include <cstdint>
#include <cstring>

namespace zel {

// An entry of a StrMapBase: its key, the key's hash (set by the table) and the link to the next
// entry of its chain. Derived tables derive their entries from it and add their values.
struct StrEntryBase {
  shstring key;
  StrEntryBase *next = nullptr;
  uint32_t hash = 0;
};

// A chained hash table of entries derived from StrEntryBase. It starts with 7 buckets (the first
// size of the FindHashPrime sequence) and changes its bucket count only through Realloc. The
// derived table chooses the hash (HashOf; a key's bucket is its hash modulo the bucket count),
// makes the entries and destroys them (DestroyEntry);
// its destructor must call Flush, since the base cannot reach DestroyEntry from its own. Not
// locked.
class ZEL_API StrMapBase {
 public:
  StrMapBase();
  virtual ~StrMapBase();
  StrMapBase(const StrMapBase &) = delete;
  StrMapBase &operator=(const StrMapBase &) = delete;

  int Count() const { return count_; }
  int BucketCount() const { return bucket_count_; }

  // Rehashes into `bucket_count` buckets (at least 1); nothing when that is the current count.
  // The bucket array only grows, to exactly the size asked.
  void Realloc(int bucket_count);

  // Appends every key, in bucket order and chain order within a bucket: copied, or shared.
  void GetKeys(TAry<cstring> &keys) const;
  void GetKeys(TAry<shstring> &keys) const;

  // Removes the first entry whose key equals `key` (letters folded, ASCII only, when not
  // `case_sensitive`; such a search walks every chain, as the hash may tell case apart). True when
  // one was removed.
  bool Remove(const strptr &key, bool case_sensitive = true);
  // Removes every entry; the buckets stay.
  void Flush();

  // Adds the bucket array.
  void AddMemUsage(MemUsageInfo &usage) const;

 protected:
  // The hash of a key. Each entry keeps its key's, so that lookups compare texts only when the
  // hashes are equal and rehashing reads no text.
  virtual uint32_t HashOf(const strptr &key) const = 0;
  // Disposes of an entry that the table has let go.
  virtual void DestroyEntry(StrEntryBase *entry) = 0;

  // Takes every entry out of the buckets and returns them chained into one list: each bucket's
  // chain, from the first bucket to the last, is put in front of the list built so far. The
  // buckets are left empty but the entries stay counted: the caller puts every one back, as
  // Realloc does.
  StrEntryBase *CollectBuckets();

  // The first entry of the chain of `hash`, which must be HashOf(key), whose key equals `key`
  // (case-sensitive, as strncmp compares), or null. Inline, as it is every lookup's whole path.
  StrEntryBase *Find(const strptr &key, uint32_t hash) const {
    for (StrEntryBase *e = ChainOf(hash); e != nullptr; e = e->next)
      if (e->hash == hash && SameKey(e->key, key)) return e;
    return nullptr;
  }
  // Adds a new entry at the head of its chain, storing its key's hash.
  void Insert(StrEntryBase *entry);
  // Rehashes to the next prime above the entry count once there are more than 3 entries per
  // bucket.
  void GrowWhenCrowded();

 private:
  // The chain of a hash.
  StrEntryBase *&ChainOf(uint32_t hash) const {
    return buckets_[hash % static_cast<uint32_t>(bucket_count_)];
  }
  // Equal lengths and, as strncmp sees them, equal characters. memcmp settles the usual case, in
  // which keys of equal hashes and lengths are equal; strncmp then catches texts that differ only
  // after a NUL in both, which count as equal (intended).
  static bool SameKey(const shstring &key, const strptr &text) {
    const int n = text.length();
    if (key.length() != n) return false;
    if (n == 0) return true;  // either text may then be null
    const size_t size = static_cast<size_t>(n);
    return std::memcmp(key.text(), text.text(), size) == 0 ||
           std::strncmp(key.text(), text.text(), size) == 0;
  }
  // Puts an entry at the head of its chain.
  void PushOnChain(StrEntryBase *entry);
  // Unlinks the entry at `*link` and destroys it.
  void Unlink(StrEntryBase **link);

  StrEntryBase **buckets_ = nullptr;
  int bucket_count_ = 0;
  int bucket_slots_ = 0;  // allocated
  int count_ = 0;
};

}  // namespace zel

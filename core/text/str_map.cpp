// StrMapBase: chains, rehashing and removal.
#include <zel/text/hash_primes.h>
#include <zel/text/str_map.h>

namespace zel {

namespace {

constexpr int kPointer = static_cast<int>(sizeof(StrEntryBase *));

}  // namespace

StrMapBase::StrMapBase()
    : buckets_(static_cast<StrEntryBase **>(MallocX(FindHashPrime(0) * kPointer))),
      bucket_count_(FindHashPrime(0)),
      bucket_slots_(bucket_count_) {
  for (int i = 0; i < bucket_count_; ++i) buckets_[i] = nullptr;
}

StrMapBase::~StrMapBase() { FreeX(buckets_); }

void StrMapBase::Realloc(int bucket_count) {
  if (bucket_count < 1) bucket_count = 1;
  if (bucket_count == bucket_count_) return;
  StrEntryBase *list = CollectBuckets();
  if (bucket_slots_ < bucket_count) {
    buckets_ = static_cast<StrEntryBase **>(ReallocX(buckets_, bucket_count * kPointer));
    bucket_slots_ = bucket_count;
  }
  bucket_count_ = bucket_count;
  for (int i = 0; i < bucket_count_; ++i) buckets_[i] = nullptr;
  while (list != nullptr) {
    StrEntryBase *entry = list;
    list = list->next;
    PushOnChain(entry);
  }
}

StrEntryBase *StrMapBase::CollectBuckets() {
  StrEntryBase *list = nullptr;
  for (int i = 0; i < bucket_count_; ++i) {
    StrEntryBase *chain = buckets_[i];
    if (chain == nullptr) continue;
    StrEntryBase *last = chain;
    while (last->next != nullptr) last = last->next;
    last->next = list;
    list = chain;
    buckets_[i] = nullptr;
  }
  return list;
}

void StrMapBase::GetKeys(TAry<cstring> &keys) const {
  for (int i = 0; i < bucket_count_; ++i)
    for (const StrEntryBase *e = buckets_[i]; e != nullptr; e = e->next) keys.Add(e->key.view());
}

void StrMapBase::GetKeys(TAry<shstring> &keys) const {
  for (int i = 0; i < bucket_count_; ++i)
    for (const StrEntryBase *e = buckets_[i]; e != nullptr; e = e->next) keys.Add(e->key);
}

bool StrMapBase::Remove(const strptr &key, bool case_sensitive) {
  const int first =
      case_sensitive ? static_cast<int>(HashOf(key) % static_cast<uint32_t>(bucket_count_)) : 0;
  const int last = case_sensitive ? first : bucket_count_ - 1;
  for (int i = first; i <= last; ++i) {
    for (StrEntryBase **link = &buckets_[i]; *link != nullptr; link = &(*link)->next) {
      if ((*link)->key.Equal(key, case_sensitive)) {
        Unlink(link);
        return true;
      }
    }
  }
  return false;
}

void StrMapBase::Flush() {
  for (int i = 0; i < bucket_count_; ++i)
    while (buckets_[i] != nullptr) Unlink(&buckets_[i]);
}

void StrMapBase::AddMemUsage(MemUsageInfo &usage) const {
  usage.Add(double{kPointer} * bucket_count_, double{kPointer} * bucket_slots_);
}

void StrMapBase::Insert(StrEntryBase *entry) {
  entry->hash = HashOf(entry->key);
  PushOnChain(entry);
  ++count_;
}

void StrMapBase::GrowWhenCrowded() {
  if (count_ > 3 * int64_t{bucket_count_}) Realloc(FindNextHashPrime(count_));
}

void StrMapBase::PushOnChain(StrEntryBase *entry) {
  StrEntryBase *&head = ChainOf(entry->hash);
  entry->next = head;
  head = entry;
}

void StrMapBase::Unlink(StrEntryBase **link) {
  StrEntryBase *entry = *link;
  *link = entry->next;
  --count_;
  DestroyEntry(entry);
}

}  // namespace zel

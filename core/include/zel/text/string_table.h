// StringTableMT, which interns text, and StringID, the address of a text interned for the whole
// process.
#pragma once

#include <zel/mem/mem_usage.h>
#include <zel/text/strptr.h>

#include <cstdint>

namespace zel {

// Interns text: equal texts give one stable, NUL-terminated copy, so that names can afterwards be
// compared by pointer. Case-sensitive: "Name" and "name" are two texts. The copies are packed in
// 1024-byte blocks of a ShStringPool; the entries sit in a chained table that holds up to 3
// entries per bucket and then rehashes to the next prime of the FindHashPrime sequence above the
// entry count. Entries are never removed, so interned texts stay valid as long as the table.
//
// Any thread may call any operation: a light lock (an atomic counter with a semaphore behind it;
// one atomic operation when uncontended) serialises them. Allocation failure throws ErrorX.
class ZEL_API StringTableMT {
 public:
  // An empty table with 7 buckets.
  StringTableMT();
  ~StringTableMT();
  StringTableMT(const StringTableMT &) = delete;
  StringTableMT &operator=(const StringTableMT &) = delete;

  // The interned copy of `text`, made when the text is new.
  const char *GetOrCreateIndex(const strptr &text);
  // The interned copy of `text`, or null when it was never interned (and it is not interned now).
  const char *GetIndex(const strptr &text) const;

  // The number of interned texts.
  int Count() const;
  int BucketCount() const;
  // Adds the blocks of the copies, the entries and the bucket array.
  void AddMemUsage(MemUsageInfo &usage) const;

  // The table's hash: h = h * 33 + c over the characters c taken as signed, in unsigned 32-bit
  // arithmetic, from h = 0.
  static uint32_t Hash(const strptr &text);

 private:
  struct Tables;
  Tables *tables_;
};

// The address of an interned, NUL-terminated text: two StringIDs are equal exactly when their
// texts are.
using StringID = const char *;

// The StringID of `text` in the process-wide table, interning the text when it is new. The table
// is made on first use and never destroyed, so StringIDs stay valid until the process ends, also
// in static destructors. Any thread.
ZEL_API StringID InternString(const strptr &text);
// The StringID of `text` when it was interned with InternString, else null; interns nothing.
ZEL_API StringID FindInternedString(const strptr &text);

}  // namespace zel

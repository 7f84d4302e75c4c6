// Texts of error codes: the registry of texts added with AddComErr, then the system's.
#include <zel/diag/error.h>
#include <zel/diag/log.h>
#include <zel/mem/tary.h>
#include <zel/text/hash_primes.h>
#include <zel/text/thread_local_string.h>
#include <zel/thread/critsect.h>

#include "os/os.h"

#include <new>

namespace zel {

namespace {

constexpr int kMaxTexts = 10000;
constexpr int kFirstCode = static_cast<int>(0xFFFF0000);
constexpr int kStep = -1;

// A chained hash table from code to text that also keeps its entries in the order they came, so
// that the oldest can be discarded.
class ErrorTexts {
 public:
  ErrorTexts() { Rehash(FindHashPrime(0)); }

  int Add(const strptr &text) {
    CritSectLock hold(lock_);
    if (count_ > kMaxTexts) DiscardOldest(count_ / 2);
    int code;
    if (free_codes_.Count() > 0) {
      code = free_codes_.Last();
      free_codes_.RemoveAt(free_codes_.Count() - 1);
    } else {
      code = next_code_;
      next_code_ += kStep;
    }
    Node *node = new (MallocX(sizeof(Node))) Node{code, cstring(text)};
    Link(node);
    if (count_ > 3 * buckets_.Count()) Rehash(FindNextHashPrime(count_));
    return code;
  }

  // The text of `code` into `out`; false when there is none.
  bool Find(int code, cstring &out) {
    CritSectLock hold(lock_);
    for (Node *n = buckets_[Bucket(code)]; n != nullptr; n = n->next_in_bucket) {
      if (n->code == code) {
        out.Set(n->text);
        return true;
      }
    }
    return false;
  }

 private:
  struct Node {
    int code;
    cstring text;
    Node *next_in_bucket = nullptr;
    Node *newer = nullptr;
  };

  int Bucket(int code) const {
    return static_cast<int>(static_cast<uint32_t>(code) % static_cast<uint32_t>(buckets_.Count()));
  }

  void Link(Node *node) {
    Node *&head = buckets_[Bucket(node->code)];
    node->next_in_bucket = head;
    head = node;
    (newest_ ? newest_->newer : oldest_) = node;
    newest_ = node;
    ++count_;
  }

  void Rehash(int bucket_count) {
    buckets_.Flush();
    for (int i = 0; i < bucket_count; ++i) buckets_.Add(nullptr);
    for (Node *n = oldest_; n != nullptr; n = n->newer) {
      Node *&head = buckets_[Bucket(n->code)];
      n->next_in_bucket = head;
      head = n;
    }
  }

  void DiscardOldest(int n) {
    while (n-- > 0 && oldest_ != nullptr) {
      Node *node = oldest_;
      oldest_ = node->newer;
      if (oldest_ == nullptr) newest_ = nullptr;
      for (Node **p = &buckets_[Bucket(node->code)]; *p != nullptr; p = &(*p)->next_in_bucket) {
        if (*p == node) {
          *p = node->next_in_bucket;
          break;
        }
      }
      free_codes_.Add(node->code);
      node->~Node();
      FreeX(node);
      --count_;
    }
  }

  CritSect lock_;
  TAry<Node *> buckets_;
  Node *oldest_ = nullptr;
  Node *newest_ = nullptr;
  int count_ = 0;
  TAry<int> free_codes_;
  int next_code_ = kFirstCode;
};

// Made on first use and kept until the process ends.
ErrorTexts &Registry() {
  alignas(ErrorTexts) static unsigned char storage[sizeof(ErrorTexts)];
  static ErrorTexts *const registry = new (storage) ErrorTexts();
  return *registry;
}

// The system's text for `code`, trailing white characters removed.
void SystemText(uint32_t code, cstring &out) {
  char buffer[512];
  int length = os::ErrorText(code, buffer, sizeof buffer);
  const int kept = static_cast<int>(sizeof buffer) - 1;
  out.Set(strptr(buffer, length < kept ? length : kept));
  out.TrimRight();
}

}  // namespace

int AddComErr(const strptr &text) { return Registry().Add(text); }

temp_cstring LookupComErr(int code) {
  cstring text;
  Registry().Find(code, text);
  return temp_cstring(static_cast<cstring &&>(text));
}

temp_cstring errstr(int code) {
  os::SavedLastError saved;
  cstring text;
  if (!Registry().Find(code, text)) SystemText(static_cast<uint32_t>(code), text);
  return temp_cstring(static_cast<cstring &&>(text));
}

void ApiBoolCheck(int result, const char *what) {
  if (result != 0) return;
  uint32_t error = os::LastError();
  if (error == 0 || LogCategory::n_global_clients < 1) return;
  ThreadLocalString line;
  cstring text;
  SystemText(error, text);
  *line << what << ": Error: " << text << "\r\n";
  PrintLog(*line);
}

}  // namespace zel

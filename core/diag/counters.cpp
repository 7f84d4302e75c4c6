// The counter registry.
#include <zel/diag/counters.h>
#include <zel/mem/tary.h>
#include <zel/thread/critsect.h>

#include <new>

namespace zel {

namespace {

// One registered counter: integer or floating-point.
struct Entry {
  IntCounter *integer;
  FloatCounter *floating;

  const cstring &Name() const { return integer ? integer->Name() : floating->Name(); }
  const void *Source() const { return integer ? integer->Source() : floating->Source(); }
  double Value() const {
    return integer ? static_cast<double>(integer->Value()) : floating->Value();
  }
};

struct Registry {
  CritSect lock;
  TAry<Entry> entries;
};

// Made on first use and kept until the process ends.
Registry &Counters() {
  alignas(Registry) static unsigned char storage[sizeof(Registry)];
  static Registry *const registry = new (storage) Registry();
  return *registry;
}

template <typename T>
void Destroy(T *p) {
  if (p == nullptr) return;
  p->~T();
  FreeX(p);
}

}  // namespace

void AddIntCounter(const strptr &name, IntCounter::Reader read, const void *source) {
  auto *counter = new (MallocX(sizeof(IntCounter))) IntCounter(name, read, source);
  Registry &r = Counters();
  CritSectLock hold(r.lock);
  r.entries.Add(Entry{counter, nullptr});
}

void AddFloatCounter(const strptr &name, FloatCounter::Reader read, const void *source) {
  auto *counter = new (MallocX(sizeof(FloatCounter))) FloatCounter(name, read, source);
  Registry &r = Counters();
  CritSectLock hold(r.lock);
  r.entries.Add(Entry{nullptr, counter});
}

void RemoveCounters(const void *source) {
  Registry &r = Counters();
  CritSectLock hold(r.lock);
  for (int i = r.entries.Count() - 1; i >= 0; --i) {
    if (r.entries[i].Source() != source) continue;
    Destroy(r.entries[i].integer);
    Destroy(r.entries[i].floating);
    r.entries.RemoveAt(i);
  }
}

bool ReadCounter(const strptr &name, double &value) {
  Registry &r = Counters();
  CritSectLock hold(r.lock);
  for (const Entry &e : r.entries) {
    if (e.Name().view() == name) {
      value = e.Value();
      return true;
    }
  }
  return false;
}

void PrintCounters(cstring &out) {
  Registry &r = Counters();
  CritSectLock hold(r.lock);
  for (const Entry &e : r.entries) {
    out << e.Name() << ": ";
    if (e.integer)
      out << static_cast<long long>(e.integer->Value());
    else
      out << e.floating->Value();
    out << "\r\n";
  }
}

}  // namespace zel

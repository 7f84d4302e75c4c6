// The registry of module exit hooks, and the library's cleanup chain.
#include <zel/mem/allocator.h>
#include <zel/mem/tary.h>
#include <zel/sched/module_exit_hooks.h>
#include <zel/text/hash_primes.h>
#include <zel/thread/mtptr.h>

#include <cstdint>
#include <new>

namespace zel {

namespace {

// A chained hash table from a module handle to its hooks, keyed by the handle's value modulo the
// bucket count. Entries are never removed, and each lives in its own block, so a list stays where
// it is while its hooks run, even when they make the table grow.
class ModuleExitHooks {
 public:
  ModuleExitHooks() { Rehash(FindHashPrime(0)); }
  ModuleExitHooks(const ModuleExitHooks &) = delete;
  ModuleExitHooks &operator=(const ModuleExitHooks &) = delete;

  CritSect &lock() { return lock_; }

  // The hooks of `module`, or null when it has none.
  Hook0VAry *Find(void *module) {
    for (Entry *e = buckets_[Bucket(module)]; e != nullptr; e = e->next)
      if (e->module == module) return &e->hooks;
    return nullptr;
  }

  // The hooks of `module`, made empty when it has none.
  Hook0VAry &FindOrAdd(void *module) {
    if (Hook0VAry *hooks = Find(module)) return *hooks;
    Entry *entry = new (MallocX(sizeof(Entry))) Entry(module);
    Link(entry);
    if (++count_ > 3 * buckets_.Count()) Rehash(FindNextHashPrime(buckets_.Count()));
    return entry->hooks;
  }

 private:
  struct Entry {
    explicit Entry(void *m) : module(m) {}
    void *module;
    Entry *next = nullptr;
    Hook0VAry hooks;
  };

  int Bucket(void *module) const {
    return static_cast<int>(reinterpret_cast<uintptr_t>(module) %
                            static_cast<uintptr_t>(buckets_.Count()));
  }

  void Link(Entry *entry) {
    Entry *&head = buckets_[Bucket(entry->module)];
    entry->next = head;
    head = entry;
  }

  void Rehash(int bucket_count) {
    Entry *all = nullptr;
    for (Entry *head : buckets_) {
      while (head != nullptr) {
        Entry *next = head->next;
        head->next = all;
        all = head;
        head = next;
      }
    }
    buckets_.Flush();
    for (int i = 0; i < bucket_count; ++i) buckets_.Add(nullptr);
    while (all != nullptr) {
      Entry *next = all->next;
      Link(all);
      all = next;
    }
  }

  CritSect lock_;
  TAry<Entry *> buckets_;
  int count_ = 0;
};

// The registry, locked for the lifetime of the pointer. Made on first use and kept until the
// process ends, so that modules unloaded late still find it.
temp_mtptr<ModuleExitHooks> LockedHooks() {
  alignas(ModuleExitHooks) static unsigned char storage[sizeof(ModuleExitHooks)];
  static ModuleExitHooks *const hooks = new (storage) ModuleExitHooks();
  return temp_mtptr<ModuleExitHooks>(hooks, &hooks->lock());
}

}  // namespace

void AddDllExitHook(void *module, const Hook0V &hook) {
  temp_mtptr<ModuleExitHooks> registry = LockedHooks();
  Hook0VAry &hooks = registry->FindOrAdd(module);
  if (!hooks.Contains(hook)) hooks.Add(hook);
}

void RemoveDllExitHook(void *module, const Hook0V &hook) {
  temp_mtptr<ModuleExitHooks> registry = LockedHooks();
  if (Hook0VAry *hooks = registry->Find(module)) hooks->Remove(hook);
}

void CallDllExitHooks(void *module) {
  temp_mtptr<ModuleExitHooks> registry = LockedHooks();
  if (Hook0VAry *hooks = registry->Find(module)) {
    hooks->Invoke();
    hooks->Flush();
  }
}

FuncChainLink *&GetZelCoreCleanupFuncs() {
  static constinit FuncChainLink *head = nullptr;
  return head;
}

}  // namespace zel

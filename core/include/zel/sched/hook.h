// Small call objects: Hook0V (a bound call without arguments), Hook0VAry (a list of them that may
// change while it is being called) and the function chain run by CallChain.
#pragma once

#include <zel/config.h>

#include <cstdint>

namespace zel {

// A bound call without arguments: a function and its target. Calling a hook whose target is null
// does nothing. Two hooks are equal when both words are equal. Hooks are copied freely and own
// nothing.
class Hook0V {
 public:
  using Function = void (*)(void *target);

  constexpr Hook0V() = default;
  constexpr Hook0V(Function function, void *target) : function_(function), target_(target) {}

  // The hook that calls `target->*Method()`: Hook0V::Of<&Widget::Refresh>(widget).
  template <auto Method, typename T>
  static Hook0V Of(T *target) {
    return Hook0V([](void *t) { (static_cast<T *>(t)->*Method)(); }, target);
  }

  void operator()() const {
    if (target_ != nullptr) function_(target_);
  }
  bool empty() const { return target_ == nullptr; }
  Function function() const { return function_; }
  void *target() const { return target_; }

  friend bool operator==(const Hook0V &a, const Hook0V &b) {
    return a.function_ == b.function_ && a.target_ == b.target_;
  }

 private:
  Function function_ = nullptr;
  void *target_ = nullptr;
};

// A list of hooks that tolerates changes made by the hooks it is calling (a hook removing itself
// or another, or adding one). While an invocation runs, removed entries are blanked instead of
// deleted so that the walk goes on undisturbed; when the last invocation ends, blanked entries are
// deleted. Entries appended during an invocation are not called by it. There is no lock: the list
// belongs to one thread at a time.
class ZEL_API Hook0VAry {
 public:
  Hook0VAry() = default;
  // A list over `count` hooks at `hooks`, which it borrows until its first change.
  Hook0VAry(const Hook0V *hooks, int count);
  ~Hook0VAry();
  // Replaces the contents by a copy of `other`'s; during an invocation the old entries are
  // blanked and the copies appended behind them.
  Hook0VAry &operator=(const Hook0VAry &other);
  Hook0VAry(const Hook0VAry &) = delete;

  int Count() const { return count_; }
  const Hook0V &operator[](int i) const { return hooks_[i]; }
  // Is an equal hook in the list?
  bool Contains(const Hook0V &hook) const;

  // Appends a hook.
  void Add(const Hook0V &hook);
  // Removes the first equal hook; nothing when there is none.
  void Remove(const Hook0V &hook);
  // Removes every hook (blanks them during an invocation).
  void Flush();

  // Calls every hook, first to last / last to first.
  void Invoke();
  void InvokeReverse();

 private:
  template <bool kReverse>
  void Walk();
  void Blank(int i);
  void Compact();
  void MakeOwned(int capacity);

  Hook0V *hooks_ = nullptr;
  int count_ = 0;
  int capacity_ = 0;      // 0 with hooks_ set: borrowed storage
  int32_t depth_ = 0;     // invocations in progress
  bool blanked_ = false;  // an entry was blanked during the current invocations
};

// A link of a chain of plain functions.
struct FuncChainLink {
  void (*function)() = nullptr;
  FuncChainLink *next = nullptr;
};

// Calls the function of every link of the chain, the last link first; a null head calls nothing.
ZEL_API void CallChain(FuncChainLink *head);

}  // namespace zel

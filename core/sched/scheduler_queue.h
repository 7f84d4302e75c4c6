// The Scheduler's queue: a binary min-heap of clients in one array, ordered by due time and, among
// equal due times, by the order in which they took their places. Each client keeps its index, so
// that it can be moved or removed in logarithmic time. The Scheduler's lock guards it.
#pragma once

#include <zel/mem/tary.h>
#include <zel/sched/delay_client.h>

#include <cstdint>

namespace zel {

class SchedulerQueue {
 public:
  bool empty() const { return heap_.empty(); }
  int Count() const { return heap_.Count(); }
  DelayClient *Head() const { return heap_.empty() ? nullptr : heap_[0]; }
  DelayClient *const *begin() const { return heap_.begin(); }
  DelayClient *const *end() const { return heap_.end(); }

  // Puts a client that is not queued at its place for `due`, or moves a queued one there.
  void Place(DelayClient *client, double due) {
    client->due_ = due;
    client->sequence_ = ++sequence_;
    if (IndexOf(client) < 0) {
      SetIndex(client, heap_.Count());
      heap_.Add(client);
    }
    Restore(IndexOf(client));
  }

  // Takes a queued client out; its index becomes -1.
  void Remove(DelayClient *client) {
    const int at = IndexOf(client);
    SetIndex(client, -1);
    DelayClient *last = heap_.Last();
    heap_.RemoveAt(heap_.Count() - 1);
    if (at == heap_.Count()) return;  // it was the last
    Set(at, last);
    Restore(at);
  }

  // Takes the head out; the queue must not be empty.
  DelayClient *PopHead() {
    DelayClient *head = heap_[0];
    Remove(head);
    return head;
  }

  // Takes every client out (each index becomes -1), in no particular order.
  template <typename Visit>
  void Drain(Visit visit) {
    for (DelayClient *c : heap_) {
      SetIndex(c, -1);
      visit(c);
    }
    heap_.Flush();
  }

 private:
  static int IndexOf(const DelayClient *c) {
    return c->heap_index_.load(std::memory_order_relaxed);
  }
  static void SetIndex(DelayClient *c, int at) {
    c->heap_index_.store(at, std::memory_order_relaxed);
  }

  static bool Before(const DelayClient *a, const DelayClient *b) {
    return a->due_ < b->due_ || (a->due_ == b->due_ && a->sequence_ < b->sequence_);
  }

  void Set(int at, DelayClient *client) {
    heap_[at] = client;
    SetIndex(client, at);
  }

  // Moves the client at `at` up or down to where the heap order holds again.
  void Restore(int at) {
    DelayClient *client = heap_[at];
    while (at > 0) {
      const int parent = (at - 1) / 2;
      if (!Before(client, heap_[parent])) break;
      Set(at, heap_[parent]);
      at = parent;
    }
    for (;;) {
      int child = 2 * at + 1;
      if (child >= heap_.Count()) break;
      if (child + 1 < heap_.Count() && Before(heap_[child + 1], heap_[child])) ++child;
      if (!Before(heap_[child], client)) break;
      Set(at, heap_[child]);
      at = child;
    }
    Set(at, client);
  }

  TAry<DelayClient *> heap_;
  uint64_t sequence_ = 0;
};

}  // namespace zel

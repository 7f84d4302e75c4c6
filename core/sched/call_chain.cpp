// Running a chain of functions, last link first.
#include <zel/mem/tary.h>
#include <zel/sched/hook.h>

namespace zel {

void CallChain(FuncChainLink *head) {
  TAry<FuncChainLink *> links;
  for (FuncChainLink *link = head; link != nullptr; link = link->next) links.Add(link);
  for (int i = links.Count() - 1; i >= 0; --i) links[i]->function();
}

}  // namespace zel

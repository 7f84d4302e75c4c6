// The smallest program on the library: which build is loaded, and a lock shared by two scopes.
#include <zel/core.h>

#include <cstdio>

int main() {
  std::printf("zelcore %s (%s)\n", zel::LibraryVersion(), zel::BuildLeg());

  zel::CritSect lock;
  {
    zel::CritSectLock outer(lock);
    zel::CritSectLock inner(lock);  // the lock is recursive: the holder may enter again
    std::printf("entered the same lock twice on one thread\n");
  }
  return 0;
}

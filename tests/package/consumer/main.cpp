#include <zel/core.h>

#include <cstdio>

int main() {
  zel::CritSect lock;
  zel::CritSectLock hold(lock);
  std::printf("consumer links zelcore %s\n", zel::LibraryVersion());
  return 0;
}

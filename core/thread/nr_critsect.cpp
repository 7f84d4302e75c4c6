// The non-recursive lock: the light lock, exported.
#include <zel/thread/nr_critsect.h>

#include "os/os.h"
#include "thread/light_lock.h"

#include <new>

namespace zel {

namespace {

static_assert(sizeof(LightLock) <= sizeof(NRCritSect) && alignof(LightLock) <= alignof(void *));

LightLock &Lock(unsigned char *storage) { return *std::launder(reinterpret_cast<LightLock *>(storage)); }

}  // namespace

int NRCritSect::_number_of_processors = os::ProcessorCount();

NRCritSect::NRCritSect() { new (lock_) LightLock(); }

NRCritSect::~NRCritSect() { Lock(lock_).~LightLock(); }

void NRCritSect::Enter() { Lock(lock_).Enter(); }

bool NRCritSect::TryEnter() { return Lock(lock_).TryEnter(); }

void NRCritSect::Leave() { Lock(lock_).Leave(); }

}  // namespace zel

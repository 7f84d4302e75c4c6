// <windows.h> for the Windows implementation of the operating-system layer, without the macros
// that would rename the layer's own functions (CreateEvent would become CreateEventA, ...).
#pragma once

#include <windows.h>

#undef CreateEvent
#undef CreateSemaphore
#undef CreateWaitableTimer
#undef Yield
#undef LoadLibrary
#undef CreateDirectory

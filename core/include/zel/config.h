// Build configuration shared by every exported header: the export macro, the calling convention
// of routines handed to the operating system, and what identifies this build.
#pragma once

#include <zel/version.h>

// ZEL_API marks a declaration exported from the shared library (zelcore.dll / libzelcore.so).
// A static build defines ZEL_STATIC for the library and for everything that links it.
#if defined(ZEL_STATIC)
#define ZEL_API
#elif defined(_WIN32)
#if defined(ZEL_BUILDING)
#define ZEL_API __declspec(dllexport)
#else
#define ZEL_API __declspec(dllimport)
#endif
#else
#define ZEL_API __attribute__((visibility("default")))
#endif

// ZEL_CALLBACK is the calling convention of routines the system calls back: thread bodies,
// asynchronous procedure calls and timer completion routines. It is __stdcall on 32-bit Windows
// and the default everywhere else.
#if defined(_WIN32) && !defined(_WIN64)
#define ZEL_CALLBACK __stdcall
#else
#define ZEL_CALLBACK
#endif

// ZEL_PRINTF(f, a) lets the compiler check a printf-style call: parameter f is the format and the
// variable arguments start at parameter a (count `this` as parameter 1 in member functions). MinGW
// is asked for the GNU dialect, which its runtime's printf family follows in C++.
#if defined(__MINGW32__) && !defined(__clang__)
#define ZEL_PRINTF(f, a) __attribute__((format(gnu_printf, f, a)))
#else
#define ZEL_PRINTF(f, a) __attribute__((format(printf, f, a)))
#endif

namespace zel {

// The library's version, "major.minor.patch".
ZEL_API const char *LibraryVersion();

// The platform leg this binary was built for ("linux-x64", "windows-x86", ...), or "custom" for a
// build configured outside the project's presets.
ZEL_API const char *BuildLeg();

}  // namespace zel

// The process-wide warning log: problems that must not interrupt the caller, one per line.
#pragma once

#include <zel/text/cstring.h>
#include <zel/thread/mtptr.h>

namespace zel {

// Appends a warning: nothing for an empty text; otherwise, when the log is not empty and does not
// end in a line break, "\r\n" first; then the error prefix (with `with_prefix`); then `text`. The
// log does not end in a line break after the last warning. Any thread.
ZEL_API void AddWarning(const strptr &text, bool with_prefix = true);

// Locked access to the warning log: the log stays locked while the holder lives (do not add a
// warning on another path that waits for it meanwhile).
ZEL_API temp_mtptr<cstring> GetWarningLog();

// Takes the whole warning log out, leaving it empty.
ZEL_API temp_cstring DetachWarningLog();

}  // namespace zel

// BCmdLine as text: a command line that CmdLine reads back with the same names and values.
#include <zel/parse/bcmdline.h>
#include <zel/text/thread_local_string.h>

#include "parse/cmd_text.h"

namespace zel {

cstring &operator<<(cstring &out, const BCmdLinePtr &line) {
  out << line.Command();
  for (const BCmdLineArg &arg : line) MaybeSpace(out) << arg;
  return out;
}

cstring &operator<<(cstring &out, const BCmdLineArg &arg) {
  out << arg.GetName() << ':';
  const StringID type = arg.GetType();
  if (type == _id_bool) return out << (arg.GetBool() ? "true" : "false");
  if (type == _id_int) return out << arg.GetInt();
  if (type == _id_int_64) return out << arg.GetInt64();
  if (type == _id_float) return out << arg.GetFloat();
  if (type == _id_double) return out << arg.GetDouble();
  if (type == _id_string) return AppendCmdToken(out, arg.GetString());
  if (type == _id_BCmdLine) {
    ThreadLocalString nested;
    *nested << arg.GetCmdLine();
    return AppendCmdToken(out, *nested);
  }
  return out;
}

}  // namespace zel

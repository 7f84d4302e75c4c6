// Arguments, help, usage errors and failures of the tool's commands.
#include "usage.h"

#include <zel/parse/parser_base.h>
#include <zel/text/cstring.h>

#include <cstdio>

namespace zelcore {

std::optional<int> CheckArguments(const Usage &usage, int argc, char **argv, int min, int max) {
  for (int i = 0; i < argc; ++i) {
    const zel::strptr argument(argv[i]);
    if (argument == "--help" || argument == "-h") {
      std::fputs(usage.help, stdout);
      return 0;
    }
  }
  for (int i = 0; i < argc; ++i) {
    const zel::strptr argument(argv[i]);
    if (argument.StartsWithQ("--")) {
      zel::cstring problem;
      problem << "unknown option '" << argument << "'";
      return UsageError(usage, problem);
    }
  }
  if (argc < min) return UsageError(usage, "missing arguments");
  if (argc > max) return UsageError(usage, "too many arguments");
  return std::nullopt;
}

std::optional<int> TakeOption(const Usage &usage, int &argc, char **argv, const char *name,
                              const char *&value) {
  value = nullptr;
  for (int i = 0; i < argc; ++i) {
    if (zel::strptr(argv[i]) != zel::strptr(name)) continue;
    if (i + 1 == argc) {
      zel::cstring problem;
      problem << "option '" << name << "' needs a value";
      return UsageError(usage, problem);
    }
    value = argv[i + 1];
    for (int j = i + 2; j < argc; ++j) argv[j - 2] = argv[j];
    argc -= 2;
    break;
  }
  return std::nullopt;
}

int UsageError(const Usage &usage, const zel::strptr &problem) {
  std::fprintf(stderr, "zelcore %s: %.*s (try 'zelcore %s --help')\n", usage.command,
               problem.length(), problem.text(), usage.command);
  return kExitUsage;
}

int Failure(const Usage &usage, const zel::ErrorX &error) {
  zel::cstring report;
  report << error;
  report.Replace("\r\n", "\n");
  std::fprintf(stderr, "zelcore %s: %s\n", usage.command, report.text());
  return kExitFailure;
}

void ThrowParseError(const zel::strptr &text, int position, const zel::strptr &message) {
  zel::ParserBase parser(text);
  parser.SetPosition(position);
  parser.Error(message);
}

}  // namespace zelcore

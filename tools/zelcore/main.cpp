// zelcore: the command-line face of the library.
#include "commands.h"

#include <zel/core.h>

#include <cstdio>
#include <cstring>

namespace {

struct Command {
  const char *name;
  const char *summary;
  int (*run)(int argc, char **argv);
};

int Version(int, char **) {
  std::printf("zelcore %s (%s)\n", zel::LibraryVersion(), zel::BuildLeg());
  return 0;
}

int Help(int, char **);

const Command kCommands[] = {
    {"demo", "run the library end to end and narrate what happens", zelcore::Demo},
    {"time", "read and print times through a format of % letters", zelcore::Time},
    {"date", "read a loose date such as \"Jan 5, 07\" or \"yesterday\"", zelcore::Date},
    {"cmdline", "show how a command line reads, or check that lines read back the same",
     zelcore::CommandLine},
    {"next", "print the next times of a cron-like interval", zelcore::Next},
    {"contains", "say whether a time belongs to an interval", zelcore::Contains},
    {"kxdir", "print the shared data directory and where it came from, or set it", zelcore::KXDir},
    {"version", "print the library's version and the platform leg it was built for", Version},
    {"help", "list the commands", Help},
};

int Help(int, char **) {
  std::printf("usage: zelcore <command> [arguments]\n\ncommands:\n");
  for (const Command &c : kCommands) std::printf("  %-10s %s\n", c.name, c.summary);
  return 0;
}

}  // namespace

int main(int argc, char **argv) {
  if (argc < 2) return Help(argc, argv);
  for (const Command &c : kCommands)
    if (std::strcmp(argv[1], c.name) == 0) return c.run(argc - 2, argv + 2);
  std::fprintf(stderr, "zelcore: unknown command '%s' (try 'zelcore help')\n", argv[1]);
  return 2;
}

// How the tool's commands meet the user: checking their arguments, showing their help, and
// reporting usage errors and failures on standard error.
#pragma once

#include <zel/diag/error.h>
#include <zel/text/strptr.h>

#include <optional>

namespace zelcore {

// The exit codes of every command.
constexpr int kExitFailure = 1;
constexpr int kExitUsage = 2;

// A command as the user types it ("time parse") and its help text, which begins with its usage
// lines and ends with a new line.
struct Usage {
  const char *command;
  const char *help;
};

// Checks a command's arguments. "--help" or "-h" anywhere shows the help on standard output and
// gives 0; any other argument beginning with "--" is an unknown option, and fewer than `min` or
// more than `max` arguments are too few or too many: reported as by UsageError, giving
// kExitUsage. Arguments beginning with a single "-" are values ("-5"). Returns the exit code to
// end the command with, or nothing when the command should run.
std::optional<int> CheckArguments(const Usage &usage, int argc, char **argv, int min, int max);

// Takes the option `name` (such as "--from") and the argument after it, its value, out of the
// arguments: `value` becomes the value and both leave argv (argc shrinks by 2); `value` becomes
// null when the option is not given. An option without a value is a usage error: returns the exit
// code to end the command with, or nothing when the command should go on.
std::optional<int> TakeOption(const Usage &usage, int &argc, char **argv, const char *name,
                              const char *&value);

// Writes "zelcore <command>: <problem> (try 'zelcore <command> --help')" on standard error and
// returns kExitUsage.
int UsageError(const Usage &usage, const zel::strptr &problem);

// Writes "zelcore <command>: " and the error's message on standard error, its CR LF line ends
// written as new lines, and returns kExitFailure.
int Failure(const Usage &usage, const zel::ErrorX &error);

// Throws the ParserErrorX the library's parsers throw for `message` found at `position` of
// `text`: the message, then the line up to the position as an excerpt.
[[noreturn]] void ThrowParseError(const zel::strptr &text, int position,
                                  const zel::strptr &message);

}  // namespace zelcore

// The subcommands of the zelcore tool. Each takes the arguments after its name and returns the
// exit code: 0 on success, 1 for a failure, 2 for a usage error.
#pragma once

namespace zelcore {

// `zelcore demo`: runs the library end to end and narrates it.
int Demo(int argc, char **argv);
// `zelcore time parse FORMAT TEXT` and `zelcore time print FORMAT [UNIX-SECONDS|now]`.
int Time(int argc, char **argv);
// `zelcore date TEXT`: reads a loose date.
int Date(int argc, char **argv);
// `zelcore cmdline LINE` and `zelcore cmdline --check`: text command lines and their round trip.
int CommandLine(int argc, char **argv);
// `zelcore next INTERVAL [--from TIME] [-n N]`: the next times of an interval.
int Next(int argc, char **argv);
// `zelcore contains INTERVAL TIME`: whether a time belongs to an interval.
int Contains(int argc, char **argv);
// `zelcore kxdir [--set DIR]`: the data directory and where it came from.
int KXDir(int argc, char **argv);

}  // namespace zelcore

// The subcommands of the zelcore tool.
#pragma once

namespace zelcore {

// `zelcore demo`: runs the library end to end and narrates it. Returns the exit code.
int Demo(int argc, char **argv);

}  // namespace zelcore

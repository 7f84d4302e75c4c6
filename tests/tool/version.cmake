# zelcore version / help / unknown commands.
zel_tool_test(NAME version ARGS version STDOUT "^zelcore [0-9]+\\.[0-9]+\\.[0-9]+ \\(")
zel_tool_test(NAME help ARGS help STDOUT "usage: zelcore <command>")
zel_tool_test(NAME unknown_command ARGS frobnicate EXIT 2 STDERR "unknown command 'frobnicate'")

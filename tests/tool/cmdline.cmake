# zelcore cmdline: command lines read, shown argument by argument and written back, in UTC.

# cmdline_shows(NAME line output): prints exactly `output` (plain text, not a regular expression).
function(cmdline_shows name line output)
  string(REGEX REPLACE "([][.*+?^$()|\\\\])" "\\\\\\1" output "${output}")
  zel_tool_test(NAME cmdline_${name} ARGS cmdline "${line}" ENV TZ=UTC0 STDOUT "^${output}$")
endfunction()

cmdline_shows(table
  [[set-window title:"Main window" 640 480 visible:yes when:"5 Mar 2024" ratio:0.75 "tab\there" size:12px]]
  [[command: set-window
argument  value          int  double  bool  date
title     "Main window"  -    -       -     -
#0        640            640  640     -     -
#1        480            480  480     -     -
visible   yes            -    -       true  -
when      "5 Mar 2024"   5    5       -     2024/03/05 00:00:00
ratio     0.75           0    0.75    -     -
#2        "tab\011here"  -    -       -     -
size      12px           12   12      -     -
canonical: set-window title:"Main window" 640 480 visible:yes when:"5 Mar 2024" ratio:0.75 "tab\011here" size:12px
]])
# Names that need quotes stand apart from the places of positional arguments; an empty value
# shows as "".
cmdline_shows(quoted_names [[x "#0":"" "a:b":-2.5e1 '\351t\351' on]]
  [[command: x
argument  value        int  double  bool  date
"#0"      ""           -    -       -     -
"a:b"     -2.5e1       -2   -25     -     -
#0        "\751t\751"  -    -       -     -
#1        on           -    -       true  -
canonical: x "#0":"" "a:b":-2.5e1 "\751t\751" on
]])
# A repeated name finds its first argument, letter case ignored, except by GetDate (intended).
cmdline_shows(repeated_name [[log level:3 LEVEL:"5 Jan 2024" Level:on]]
  [[command: log
argument  value         int  double  bool  date
level     3             3    3       -     -
LEVEL     "5 Jan 2024"  3    3       -     2024/01/05 00:00:00
Level     on            3    3       -     -
canonical: log level:3 LEVEL:"5 Jan 2024" Level:on
]])
cmdline_shows(comment "a b # c:d" "command: a\nargument  value  int  double  bool  date\n#0        b      -    -       -     -\ncanonical: a b\n")
cmdline_shows(empty "" "command: \"\"\narguments: none\ncanonical: \n")

# Lines that do not come back the same still exit with 0, with a note.
cmdline_shows(stopped "a b:c:d e"
  "command: a\nargument  value  int  double  bool  date\nb         c      -    -       -     -\ncanonical: a b:c\nnote: parsing stopped at column 6\n")
cmdline_shows(never_closed "a \"never closed"
  "command: a\narguments: none\ncanonical: a\nnote: a quoted string is never closed\n")
cmdline_shows(empty_command "\"\" x"
  "command: \"\"\nargument  value  int  double  bool  date\n#0        x      -    -       -     -\ncanonical: x\nnote: the command \"\" reads back as x\n")

# The writer breaks a long value over lines; the table keeps it on one.
string(REPEAT "y" 140 ys)
zel_tool_test(NAME cmdline_long_value ARGS cmdline "a \"x ${ys} z\""
  STDOUT "\n#0 +\"x y+ z\" +- +- +- +-\ncanonical: a \"x y+ \\\\\nz\"\n$")

# --check: each line is checked on its own, the last needing no line end. (INPUT cannot carry a
# CR LF: the case file is written through file(GENERATE), which makes it LF.)
zel_tool_test(NAME cmdline_check_mixed ARGS cmdline --check EXIT 1
  INPUT "set-window title:\"Main window\" 640 visible:yes\n\"\" x\na b:c:d\na b # c\n\na \"never closed"
  STDOUT "^line 2: the command \"\" reads back as x\nline 3: parsing stopped at column 6\nline 6: a quoted string is never closed\n6 lines, 3 do not round-trip\n$")
# A lone CR is white space within a line, not its end.
zel_tool_test(NAME cmdline_check_lone_cr ARGS cmdline --check EXIT 1 INPUT "a\rb:c:d\r\n"
  STDOUT "^line 1: parsing stopped at column 6\n1 line, 1 does not round-trip\n$")
zel_tool_test(NAME cmdline_check_all_back ARGS cmdline --check
  INPUT "a 1 \"x\\351\\n\":\"\"\nb x:'y z' 2.5\n" STDOUT "^2 lines, 0 do not round-trip\n$")
zel_tool_test(NAME cmdline_check_no_input ARGS cmdline --check
  STDOUT "^0 lines, 0 do not round-trip\n$")

zel_tool_test(NAME cmdline_missing ARGS cmdline EXIT 2 STDOUT "^$"
  STDERR "^zelcore cmdline: missing arguments \\(try 'zelcore cmdline --help'\\)\n$")
zel_tool_test(NAME cmdline_too_many ARGS cmdline a b EXIT 2
  STDERR "^zelcore cmdline: too many arguments")
zel_tool_test(NAME cmdline_check_too_many ARGS cmdline --check a EXIT 2
  STDERR "^zelcore cmdline: too many arguments")
zel_tool_test(NAME cmdline_unknown_option ARGS cmdline --verbose "a b" EXIT 2
  STDERR "^zelcore cmdline: unknown option '--verbose'")
zel_tool_test(NAME cmdline_help ARGS cmdline --help
  STDOUT "^usage: zelcore cmdline LINE\n       zelcore cmdline --check\n")
zel_tool_test(NAME cmdline_check_help ARGS cmdline --check -h STDOUT "^usage: zelcore cmdline LINE\n")

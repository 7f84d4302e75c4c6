# zelcore next and zelcore contains: cron-like intervals, in UTC and in a zone with daylight saving.

# next_prints(NAME zone interval from count output): the next times after `from`.
function(next_prints name zone interval from count output)
  zel_tool_test(NAME next_${name} ARGS next ${interval} --from ${from} -n ${count} ENV TZ=${zone}
    STDOUT "^${output}$")
endfunction()

next_prints(daily UTC0 "*/*/* 06:59:00" "2007/03/05 14:02:09" 3
  "2007/03/06 06:59:00\n2007/03/07 06:59:00\n2007/03/08 06:59:00\n")
next_prints(quarter_hours UTC0 "*/* *:0,15,30,45:00" "2007/03/05 14:02:09" 3
  "2007/03/05 14:15:00\n2007/03/05 14:30:00\n2007/03/05 14:45:00\n")
next_prints(classic UTC0 "* * * 06 59 00" "2007/03/05 14:02:09" 1 "2007/03/06 06:59:00\n")
next_prints(friday_13th UTC0 "*/Jan/Fri,13 00:00:00" "2007/01/01 00:00:00" 2
  "2012/01/13 00:00:00\n2017/01/13 00:00:00\n")
# A change of year lands a month after the first allowed one (intended).
next_prints(next_year UTC0 "2008/*/* 00:00:00" "2007/06/01 00:00:00" 2
  "2008/02/01 00:00:00\n2008/02/02 00:00:00\n")
next_prints(exhausted UTC0 "2001/*/* 00:00:00" "2007/06/01 00:00:00" 3 "none\n")
# 02:30 does not exist on the day clocks spring forward: it reads as 03:30, and the series goes on.
next_prints(spring_forward EST5EDT "*/*/* 02:30:00" "2007/03/10 12:00:00" 3
  "2007/03/11 03:30:00\n2007/03/12 02:30:00\n2007/03/13 02:30:00\n")
# 01:30 comes twice as clocks fall back.
next_prints(fall_back EST5EDT "*/*/* *:30:00" "2007/11/04 00:00:00" 3
  "2007/11/04 00:30:00\n2007/11/04 01:30:00\n2007/11/04 02:30:00\n")
zel_tool_test(NAME next_from_now ARGS next "*/*/* *:*:*" ENV TZ=UTC0
  STDOUT "^[0-9][0-9][0-9][0-9]/[0-9][0-9]/[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]\n$")

zel_tool_test(NAME next_bad_name ARGS next "*/Foo/* 00:00:00" ENV TZ=UTC0 EXIT 1 STDOUT "^$"
  STDERR "^zelcore next: Invalid name Foo must be one of {Sun, Mon,")
zel_tool_test(NAME next_bad_time ARGS next "*/*/* 00:00:00" --from "2007/03/05 25:00:00"
  ENV TZ=UTC0 EXIT 1 STDOUT "^$" STDERR "^zelcore next: ParseTime: Invalid hour 25")
zel_tool_test(NAME next_trailing_text ARGS next "*/*/* 00:00:00 x" ENV TZ=UTC0 EXIT 1
  STDERR "^zelcore next: Unexpected text after the interval")
zel_tool_test(NAME next_missing ARGS next EXIT 2
  STDERR "^zelcore next: missing arguments \\(try 'zelcore next --help'\\)\n$")
zel_tool_test(NAME next_bad_count ARGS next "*/*/* 00:00:00" -n 0 EXIT 2
  STDERR "^zelcore next: -n needs a count of 1 or more")
zel_tool_test(NAME next_from_without_value ARGS next "*/*/* 00:00:00" --from EXIT 2
  STDERR "^zelcore next: option '--from' needs a value")
zel_tool_test(NAME next_help ARGS next --help STDOUT "^usage: zelcore next INTERVAL")

# contains: yes exits 0, no exits 1; years and months compare raw (intended), so a literal year
# matches nothing.
zel_tool_test(NAME contains_yes ARGS contains "*/*/* *:*:00" "2007/03/05 14:02:00" ENV TZ=UTC0
  STDOUT "^yes\n$")
zel_tool_test(NAME contains_no ARGS contains "*/*/* *:*:00" "2007/03/05 14:02:01" ENV TZ=UTC0
  EXIT 1 STDOUT "^no\n$")
zel_tool_test(NAME contains_raw_year ARGS contains "2007/*/* *:*:*" "2007/03/05 14:02:01"
  ENV TZ=UTC0 EXIT 1 STDOUT "^no\n$")
zel_tool_test(NAME contains_missing ARGS contains "*/*/* *:*:*" EXIT 2
  STDERR "^zelcore contains: missing arguments")
zel_tool_test(NAME contains_help ARGS contains -h STDOUT "^usage: zelcore contains INTERVAL TIME\n")

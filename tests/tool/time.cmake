# zelcore time parse / time print, in a zone each case sets.

# time_parse_reads(NAME zone format text time seconds nanotime): the text reads as that time.
function(time_parse_reads name zone format text time seconds nanotime)
  zel_tool_test(NAME time_parse_${name} ARGS time parse "${format}" "${text}" ENV TZ=${zone}
    STDOUT "^time: ${time}\nunix seconds: ${seconds}\nNanoTime: ${nanotime}\n$")
endfunction()

set(ymdhms "%Y/%m/%d %H:%M:%S")
time_parse_reads(utc UTC0 ${ymdhms} "2007/03/05 14:02:09"
  "2007/03/05 14:02:09" 1173103329 128175769290000000)
# Milliseconds are checked, then dropped: the reader gives whole seconds.
time_parse_reads(msec_dropped UTC0 "${ymdhms}.%X" "2007/03/05 14:02:09.5"
  "2007/03/05 14:02:09" 1173103329 128175769290000000)
time_parse_reads(pm UTC0 "%Y/%m/%d %H:%M %P" "2007/03/05 02:30 PM"
  "2007/03/05 14:30:00" 1173105000 128175786000000000)
time_parse_reads(month_name_start UTC0 "%d %b %Y" "5 sept 2007"
  "2007/09/05 00:00:00" 1188950400 128334240000000000)
time_parse_reads(feb29_rolls_over UTC0 "%Y/%m/%d" "2007/02/29"
  "2007/03/01 00:00:00" 1172707200 128171808000000000)
time_parse_reads(year_2038 UTC0 "%Y/%m/%d" "2038/01/01"
  "2038/01/01 00:00:00" 2145916800 137903904000000000)
time_parse_reads(short_year_70 UTC0 "%y/%m/%d %H" "70/01/01 01"
  "1970/01/01 01:00:00" 3600 116444772000000000)
time_parse_reads(short_year_37 UTC0 "%y/%m/%d" "37/01/01"
  "2037/01/01 00:00:00" 2114380800 137588544000000000)
time_parse_reads(est_winter EST5EDT ${ymdhms} "2007/01/15 12:00:00"
  "2007/01/15 12:00:00" 1168880400 128133540000000000)
time_parse_reads(edt_summer EST5EDT ${ymdhms} "2007/07/01 12:00:00"
  "2007/07/01 12:00:00" 1183305600 128277792000000000)
# The first local midnight of 1970 is no time in UTC, five hours of time in New York.
time_parse_reads(epoch_est EST5EDT "%Y/%m/%d" "1970/01/01"
  "1970/01/01 00:00:00" 18000 116444916000000000)

# time_parse_fails(NAME format text report): exit 1, the library's report on standard error.
function(time_parse_fails name format text report)
  zel_tool_test(NAME time_parse_${name} ARGS time parse "${format}" "${text}" ENV TZ=UTC0
    EXIT 1 STDERR "^zelcore time parse: ${report}\\.\\.\\.\n$")
endfunction()

time_parse_fails(hour_24 ${ymdhms} "2007/03/05 24:02:09"
  "ParseTime: Invalid hour 24; Must be between 0 and 23\n1: 2007/03/05 24")
time_parse_fails(hour_unlimited_width "%.0H" "123"
  "ParseTime: Invalid hour 123; Must be between 0 and 23\n1: 123")
# The month message shows the number less one (intended).
time_parse_fails(month_13 "%Y/%m" "2007/13" "ParseTime: Invalid month number 12; Must be between 1 and 12\n1: 2007/13")
time_parse_fails(day_30_feb "%d %b %Y" "30 Feb 2007"
  "ParseTime: Invalid month day 30 for month February\n1: 30 Feb 2007")
time_parse_fails(long_year_2038 "%y" "2038"
  "ParseTime: Invalid Year; Must be from between 00 and 99 or between 1970 and 2038\\.\n1: 2038")
time_parse_fails(space_needed "%H %M" "1010" "ParseTime: At least one space expected\n1: 10")
time_parse_fails(unknown_letter "%q" "1"
  "ParseTime: Unknown formatting character q; Must be one of S,M,H,Y,y,d,m,b,%\\.\n1: ")
time_parse_fails(text_left ${ymdhms} "2007/03/05 14:02:09 UTC"
  "Unexpected text after the time\n1: 2007/03/05 14:02:09 ")
time_parse_fails(epoch_utc "%Y/%m/%d" "1970/01/01"
  "No time after 1970-01-01 00:00:00 UTC that the calendar can hold\n1: 1970/01/01")

# time_print(NAME zone format seconds output): prints exactly that line.
function(time_print name zone format seconds output)
  zel_tool_test(NAME time_print_${name} ARGS time print "${format}" ${seconds} ENV TZ=${zone}
    STDOUT "^${output}\n$")
endfunction()

time_print(msec_exact UTC0 "${ymdhms}.%X %x" 1173103329.12 "2007/3/5 14:02:09\\.120 1")
time_print(names UTC0 "%a %d %b %y" 1173531900 "Sat 10 March 07")
time_print(pm UTC0 "%I:%M %P" 1173531900 "01:05 PM")
# Midnight is hour 00 of the 12-hour clock (intended).
time_print(midnight UTC0 "%I:%M %P" 1173052800 "00:00 AM")
time_print(percent UTC0 "%q%%" 1173052800 "q%")
time_print(last_second UTC0 ${ymdhms} 2147483646 "2038/1/19 03:14:06")
time_print(past_2038 UTC0 ${ymdhms} 2147483647 "<invalid time>")
time_print(epoch_second UTC0 ${ymdhms} 0.9 "")
time_print(est_winter EST5EDT ${ymdhms} 1168880400 "2007/1/15 12:00:00")
time_print(edt_summer EST5EDT ${ymdhms} 1183305600 "2007/7/1 12:00:00")
zel_tool_test(NAME time_print_now ARGS time print "%Y" STDOUT "^[0-9][0-9][0-9][0-9]\n$")
zel_tool_test(NAME time_print_now_word ARGS time print "%Y" now STDOUT "^[0-9][0-9][0-9][0-9]\n$")

# Usage errors: exit 2, nothing on standard output.
foreach(case IN ITEMS "negative|-5" "beyond_32_bits|2147483648" "eight_decimals|1.12345678"
                      "not_a_number|5s")
  string(REPLACE "|" ";" case "${case}")
  list(GET case 0 name)
  list(GET case 1 seconds)
  zel_tool_test(NAME time_print_bad_${name} ARGS time print "%Y" ${seconds} EXIT 2 STDOUT "^$"
    STDERR "^zelcore time print: '${seconds}' is neither \"now\" nor Unix seconds")
endforeach()
zel_tool_test(NAME time_print_too_many ARGS time print "%Y" now 5 EXIT 2
  STDERR "^zelcore time print: too many arguments \\(try 'zelcore time print --help'\\)\n$")
zel_tool_test(NAME time_parse_missing ARGS time parse "%Y" EXIT 2
  STDERR "^zelcore time parse: missing arguments")
zel_tool_test(NAME time_parse_unknown_option ARGS time parse --utc "%Y" 2007 EXIT 2
  STDERR "^zelcore time parse: unknown option '--utc'")
zel_tool_test(NAME time_missing_command ARGS time EXIT 2
  STDERR "^zelcore time: missing 'parse' or 'print'")
zel_tool_test(NAME time_unknown_command ARGS time format EXIT 2
  STDERR "^zelcore time: unknown time command 'format'")

zel_tool_test(NAME time_help ARGS time --help STDOUT "^usage: zelcore time parse FORMAT TEXT\n")
zel_tool_test(NAME time_parse_help ARGS time parse 1 --help
  STDOUT "^usage: zelcore time parse FORMAT TEXT\n.*%X  milliseconds")
zel_tool_test(NAME time_print_help ARGS time print -h
  STDOUT "^usage: zelcore time print FORMAT \\[UNIX-SECONDS\\|now\\]\n")

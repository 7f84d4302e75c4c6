# zelcore date: loose dates, in UTC.

# date_reads(NAME text date midnight): the text reads as that date with that local midnight.
function(date_reads name text date midnight)
  zel_tool_test(NAME date_${name} ARGS date "${text}" ENV TZ=UTC0
    STDOUT "^date: ${date}\nlocal midnight: ${midnight} 00:00:00\n$")
endfunction()

date_reads(slashes "2003/Jan/03" 2003-01-03 2003/01/03)
date_reads(month_first "Jan 5, 07" 2007-01-05 2007/01/05)
date_reads(day_first "5 Jan 99" 1999-01-05 1999/01/05)
date_reads(month_start "Sept 9 2007 " 2007-09-09 2007/09/09)
# 69 is 1969 here (unlike the %y of time formats, intended); midnight clamps to 1970.
date_reads(year_69 "5 Jan 69" 1969-01-05 1970/01/05)
date_reads(year_68 "5 Jan 68" 2068-01-05 2036/01/05)
# The day is not checked against the month; midnight rolls over.
date_reads(feb_31 "31 Feb 2003" 2003-02-31 2003/03/03)
foreach(word IN ITEMS today YESTERDAY)
  zel_tool_test(NAME date_${word} ARGS date ${word} ENV TZ=UTC0
    STDOUT "^date: [0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9]\nlocal midnight: ")
endforeach()

# date_fails(NAME text report): exit 1 with the report and an excerpt up to where reading stopped.
function(date_fails name text report)
  zel_tool_test(NAME date_${name} ARGS date "${text}" ENV TZ=UTC0 EXIT 1 STDOUT "^$"
    STDERR "^zelcore date: ${report}\\.\\.\\.\n$")
endfunction()

date_fails(no_year "Jan 5" "Incomplete date; not found: year\n1: Jan 5")
# A lone number after a month name and a comma is the year.
date_fails(comma_makes_year "Jan, 5" "Incomplete date; not found: day\n1: Jan, 5")
date_fails(blank " " "Incomplete date; not found: year, month, day\n1:  ")
date_fails(empty "" "Incomplete date; not found: year, month, day\n1: ")
date_fails(word_after "2003/Jan/03 noon" "Unexpected text after the date\n1: 2003/Jan/03 ")
date_fails(number_after_today "today 5" "Unexpected text after the date\n1: today ")

zel_tool_test(NAME date_missing ARGS date EXIT 2
  STDERR "^zelcore date: missing arguments \\(try 'zelcore date --help'\\)\n$")
zel_tool_test(NAME date_too_many ARGS date Jan 5 EXIT 2 STDERR "^zelcore date: too many arguments")
zel_tool_test(NAME date_unknown_option ARGS date --relative today EXIT 2
  STDERR "^zelcore date: unknown option '--relative'")
zel_tool_test(NAME date_help ARGS date --help STDOUT "^usage: zelcore date TEXT\n")

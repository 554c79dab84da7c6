#!/usr/bin/env bash
# What the sqlite3 shell takes for a flight log: imports LOG (53 fields with "|" between them) into 53 text columns of a
# database in memory and orders the rows by date and time out. Prints the seconds it took. With QUERY (on table log, columns
# c0 to c52) it prints the seconds of that query alone.
# usage: bench_sqlite.sh LOG [QUERY]
set -euo pipefail

if (($# < 1 || $# > 2)); then
    echo "usage: bench_sqlite.sh LOG [QUERY]" >&2
    exit 2
fi

columns=$(printf 'c%d TEXT,' {0..52})

Run() {
    sqlite3 -batch :memory: <<SQL
CREATE TABLE log (${columns%,});
.mode ascii
.separator "|" "\n"
.import '$1' log
.output /dev/null
$2
$3
SQL
}

if [[ -n ${2-} ]]; then
    # The timer prints to standard output whatever the rows' output is.
    Run "$1" ".timer on" "$2;" | sed -n 's/^Run Time: real \([0-9.]*\).*/\1/p'
    exit
fi
begin=${EPOCHREALTIME/./}
Run "$1" "" "SELECT rowid FROM log ORDER BY c0, c5;"
end=${EPOCHREALTIME/./}
printf '%d.%06d\n' $(((end - begin) / 1000000)) $(((end - begin) % 1000000))

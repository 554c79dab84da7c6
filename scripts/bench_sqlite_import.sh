#!/usr/bin/env bash
# What the sqlite3 shell takes for a flight log: imports LOG (53 fields with "|" between them) into 53 text columns of a
# database in memory and orders the rows by date and time out. Prints the seconds it took.
# usage: bench_sqlite_import.sh LOG
set -euo pipefail

if (($# != 1)); then
    echo "usage: bench_sqlite_import.sh LOG" >&2
    exit 2
fi

columns=$(printf 'c%d TEXT,' {0..52})
begin=${EPOCHREALTIME/./}
sqlite3 -batch :memory: <<SQL
CREATE TABLE log (${columns%,});
.mode ascii
.separator "|" "\n"
.import '$1' log
.output /dev/null
SELECT rowid FROM log ORDER BY c0, c5;
SQL
end=${EPOCHREALTIME/./}
printf '%d.%06d\n' $(((end - begin) / 1000000)) $(((end - begin) % 1000000))

#!/usr/bin/env bash
# Peak memory and time of runs on inputs of sizes that no protein has, against the file.
#
#   bench/sizes.sh        needs a build by ./bench.sh; inputs of 600 MB go to build/bench/sizes
set -euo pipefail
cd "$(dirname "$0")/.."

programs=build/bench/bench
work=build/bench/sizes
million=1000000
mkdir -p "$work"
trap 'rm -rf "$work"' EXIT

header() {
  echo "DATA SEQUENCE ACDEF"
  echo "VARS RESID RESNAME ATOMNAME SHIFT"
  echo "FORMAT %4d %1s %4s %8.3f"
}
# text BYTES: one word of that size.
text() {
  head -c "$1" /dev/zero | tr '\0' x
}

{ header; printf '1 A CA '; text $((200 * million)); echo; } >"$work/cell.tab"
{ printf 'REMARK '; text $((200 * million)); echo; header; echo "1 A CA 55.0"; } >"$work/remark.tab"
{
  echo "DATA SEQUENCE ACDEF"
  awk -v columns="$million" 'BEGIN {
    printf "VARS RESID RESNAME ATOMNAME SHIFT"
    for (i = 0; i < columns; ++i) printf " V%d", i
    printf "\nFORMAT %%4d %%1s %%4s %%8.3f"
    for (i = 0; i < columns; ++i) printf " %%s"
    printf "\n1 A CA 55.0"
    for (i = 0; i < columns; ++i) printf " x"
    printf "\n"
  }'
} >"$work/columns.tab"
{
  seq "$million" | awk '{ printf "%s", substr("ACDEFGHIKLMNPQRSTVWY", $1 % 20 + 1, 1) }' \
    | fold -w 50 | sed 's/^/DATA SEQUENCE /'
  echo
  header
  echo "1 C CA 55.0"
} >"$work/letters.tab"

printf '%-46s %10s %10s %3s %8s\n' "peak memory" run file "" ratio
for name in cell remark columns letters; do
  start="$(date +%s.%N)"
  row="$("$programs/bench_pair" "$name" 0 "$(stat -c %s "$work/$name.tab")" \
    build/bench/citrans -in "$work/$name.tab" -sum "$work/out.tab")"
  awk -v row="$row" -v start="$start" -v end="$(date +%s.%N)" \
    'BEGIN { printf "%s   %.1f s\n", row, end - start }'
done

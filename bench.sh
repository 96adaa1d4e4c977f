#!/usr/bin/env bash
# Measure CITRANS: install what is missing, build, make the inputs, print the table of ratios.
#
#   ./bench.sh            the ratios, instruction counts and inner operations
#   ./bench.sh --ratios   the ratios only
#   RUNS=31 ./bench.sh    medians of 31 runs instead of 15
#
# Both programs of a row run in alternation, so that the load of the machine falls on both. All
# inputs and outputs are in build/bench. docs/performance.md explains the rows and their aims.
set -euo pipefail
cd "$(dirname "$0")"

runs="${RUNS:-15}"
ratios_only=no
for option in "$@"; do
  case "$option" in
    --ratios) ratios_only=yes ;;
    *)
      echo "usage: ./bench.sh [--ratios]" >&2
      exit 2
      ;;
  esac
done

scripts/install-deps.sh bench
programs=build/bench/bench
data=build/bench/data
out=build/bench/out
log=build/bench-build.log
mkdir -p build "$out"
if ! { cmake --preset bench && cmake --build --preset bench --parallel "${JOBS:-2}"; } \
  >"$log" 2>&1; then
  tail -n 50 "$log" >&2
  exit 1
fi
"$programs/bench_make_data" examples "$data"

citrans=build/bench/citrans
unset CITRANS_DIR
tables=(tab/randcoil.tab tab/rcadj.tab tab/rcprev.tab tab/rcnext.tab tab/sslimit.tab
  tab/Pro.cs.tab tab/Pro.seq.tab)
example=(examples/ybbr.tab examples/ybbr_2kpu.pdb)
small=("$citrans" -in "${example[0]}" -ref "${example[1]}" -sum "$out/small.tab")
large=("$citrans" -in "$data/residues-30000.tab" -sum "$out/large.tab")
medium=("$citrans" -in "$data/residues-3000.tab" -sum "$out/medium.tab")

# The program that reads the same files and writes as many bytes to the same number of files.
"${small[@]}" >"$out/small.txt" 2>&1
same_files=("$out/plain1:$(stat -c %s "$out/small.tab")"
  "$out/plain2:$(stat -c %s "$out/smallAdjCS.tab")"
  "-:$(stat -c %s "$out/small.txt")"
  -- "${tables[@]}" "${example[@]}")
files_only=("$programs/bench_read_and_write_shared" "${same_files[@]}")
files_only_static=("$programs/bench_read_and_write" "${same_files[@]}")

# Lists for the two thousand proteins: one line of arguments per process.
mkdir -p "$out/proteins"
for ((i = 0; i < 2000; ++i)); do
  echo "-in $data/proteins/$i.tab -sum $out/proteins/$i.tab"
done >"$out/runs.txt"
for ((i = 0; i < 2000; ++i)); do
  echo "$data/proteins/$i.tab ${tables[*]}"
done >"$out/cats.txt"

round_trip=("$programs/bench_round_trip" "$data/rows-300000.tab" "$out/rows.tab")
reprint=(sh -c "exec mawk '{ \$1 = \$1; print }' $data/rows-300000.tab >$out/reprinted.tab")
omegas=("$programs/bench_omegas" "$data/atoms-100000.pdb")
atoms=("$programs/bench_read_atoms" "$data/atoms-100000.pdb")

pair() {
  "$programs/bench_pair" "$@"
}

printf '%-46s %10s %10s %3s %8s %6s\n' "median of $runs" first second "" ratio aim
pair "96 residues with -ref : its files only" 1.5 "$runs" "${small[@]}" -- "${files_only[@]}"
pair "30,000 residues : 3,000 residues" 11 "$runs" "${large[@]}" -- "${medium[@]}"
pair "300,000 rows, load and save : mawk" 1 "$runs" "${round_trip[@]}" -- "${reprint[@]}"
pair "  the same to /dev/null" 0 "$runs" "$programs/bench_round_trip" "$data/rows-300000.tab" \
  /dev/null -- mawk '{ $1 = $1; print }' "$data/rows-300000.tab"
pair "100,000 atoms, every omega : gemmi reading" 1 "$runs" "${omegas[@]}" -- "${atoms[@]}"
pair "30,000 residues, peak memory : input" 15 "$(stat -c %s "$data/residues-30000.tab")" \
  "${large[@]}"
pair "2,000 proteins, two at a time : cat" 10 "$runs" \
  xargs -a "$out/runs.txt" -P 2 -L 1 "$citrans" -- xargs -a "$out/cats.txt" -P 2 -L 1 cat

printf '\n%-46s %10s %10s %3s %8s\n' "where a run of 96 residues goes" first second "" ratio
pair "the whole run : the usage text" 0 "$((runs * 7))" "${small[@]}" -- "$citrans" -help
pair "the whole run : its files only, static" 0 "$((runs * 7))" \
  "${small[@]}" -- "${files_only_static[@]}"
pair "linked dynamically : as it is, static" 0 "$((runs * 7))" \
  "$programs/bench_citrans_shared" "${small[@]:1}" -- "${small[@]}"
if [[ $ratios_only == yes ]]; then
  exit 0
fi

# instructions COMMAND...: executed instructions, in thousands.
instructions() {
  valgrind --tool=callgrind --callgrind-out-file="$out/callgrind.out" "$@" 2>&1 >/dev/null \
    | awk '/Collected/ { printf "%.0f", $NF / 1000 }'
}

printf '\n%-46s %10s %10s\n' "thousand instructions (callgrind)" first second
row() {
  printf '%-46s %10s %10s\n' "$1" "$2" "$3"
}
row "96 residues with -ref : its files only" \
  "$(instructions "${small[@]}")" "$(instructions "${files_only[@]}")"
row "30,000 residues : 3,000 residues" \
  "$(instructions "${large[@]}")" "$(instructions "${medium[@]}")"
row "300,000 rows, load and save : mawk" \
  "$(instructions "${round_trip[@]}")" \
  "$(instructions mawk '{ $1 = $1; print }' "$data/rows-300000.tab")"
row "100,000 atoms, every omega : gemmi reading" \
  "$(instructions "${omegas[@]}")" "$(instructions "${atoms[@]}")"

# Shares of the steps of a run on one protein, with what they call.
printf '\n%-46s %10s\n' "instructions of 96 residues with -ref" percent
instructions "${small[@]}" >"$out/instructions.txt"
callgrind_annotate --inclusive=yes "$out/callgrind.out" 2>/dev/null >"$out/steps.txt"
for step in CITRANS::init CITRANS::fillShiftTable CITRANS::checkCS CITRANS::saveShiftTable \
  PDB::loadPDB CITRANS::predictProlines; do
  percent="$(grep -m 1 -F ":$step(" "$out/steps.txt" | sed 's/.*(\s*\([0-9.]*\)%).*/\1/')"
  printf '%-46s %10s\n' "$step" "$percent"
done

echo
"$programs/bench_inner" "$data" examples --benchmark_min_time=0.2 2>/dev/null

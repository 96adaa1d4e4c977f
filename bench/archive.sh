#!/usr/bin/env bash
# What a pass over an archive of depositions costs: citrans-batch over so many copies of the entries
# of a folder, one and two at a time.
#
#   bench/archive.sh FOLDER [ENTRIES [ARCHIVE]]    (default: 200 entries, an archive of 15,000)
#
# FOLDER holds NMR-STAR or NEF files as deposited; those that cannot be imported are left out. Needs
# the programs in build/release, or in the folder PROGRAMS of another build. Copies and results are
# in build/bench/archive.
set -euo pipefail

folder="${1:?usage: bench/archive.sh FOLDER [ENTRIES [ARCHIVE]]}"
folder="$(realpath "$folder")"
entries="${2:-200}"
archive="${3:-15000}"
cd "$(dirname "$0")/.."
programs="${PROGRAMS:-build/release}"
work=build/bench/archive
rm -rf "$work"
mkdir -p "$work/entries"

good=()
while IFS= read -r file; do
  if "$programs/citrans-import" "$file" -o "$work/table" 2>/dev/null; then
    good+=("$file")
  fi
done < <(find "$folder" -type f | sort)
rm -f "$work/table"
if [[ ${#good[@]} -eq 0 ]]; then
  echo "bench/archive.sh: no entry that can be imported in $1" >&2
  exit 1
fi
for ((i = 0; i < entries; ++i)); do
  file="${good[i % ${#good[@]}]}"
  cp "$file" "$work/entries/$(printf '%05d' "$i")-$(basename "$file")"
done
size="$(du -sk --apparent-size "$work/entries" | cut -f 1)"
echo "$entries entries, copies of ${#good[@]}, $((size / entries)) KB each on average"

for jobs in 1 2; do
  start="$(date +%s.%N)"
  "$programs/citrans-batch" --quiet -j "$jobs" -o "$work/$jobs.tsv" "$work/entries"
  awk -v start="$start" -v end="$(date +%s.%N)" -v entries="$entries" -v archive="$archive" \
    -v jobs="$jobs" 'BEGIN {
      each = (end - start) / entries
      printf "%d at a time: %.1f ms each, %d entries take %.1f minutes\n",
        jobs, each * 1000, archive, each * archive / 60
    }'
done
cmp "$work/1.tsv" "$work/2.tsv"

#!/usr/bin/env bash
# Predicts all entries of a folder with GNU parallel, one hundred to a job.
#
#   parallel.sh FOLDER OUTPUT.tsv
set -euo pipefail

folder=$1
output=$2
parts=$(mktemp -d)
trap 'rm -rf "$parts"' EXIT

# The job's number, with leading zeros, keeps the parts in the order of the inputs.
find "$folder" -type f ! -name '.*' | LC_ALL=C sort |
  parallel --pipe -N 100 --keep-order --halt soon,fail=1 \
    "citrans-batch --quiet --list - -o $parts/\$(printf %06d {#}).tsv"

awk 'FNR > 1 || NR == 1' "$parts"/*.tsv >"$output"

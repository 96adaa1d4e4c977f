#!/usr/bin/env bash
# How long the page takes from a drop to the report, in headless Chromium, against citrans-report on
# the same file, a whole process: both in alternation.
#
#   bench/page.sh [FILE [RUNS]]    (default: examples/ybbr.tab, the median of 21)
#
# FILE holds shifts as the page takes them. Needs the page and the browser's puppets, as
# tests/web/run.sh leaves them in build/web and build/web-tests, and the programs in build/release,
# or in the folder PROGRAMS of another build.
set -euo pipefail

file="$(realpath "${1:-$(dirname "$0")/../examples/ybbr.tab}")"
runs="${2:-21}"
cd "$(dirname "$0")/.."
program="$(realpath "${PROGRAMS:-build/release}")/citrans-report"
for needed in build/web/citrans.html build/web-tests/node_modules "$program"; do
  if [[ ! -e "$needed" ]]; then
    echo "bench/page.sh: no $needed; first run tests/web/run.sh build/release" >&2
    exit 1
  fi
done

mkdir -p build/bench
node bench/page.js build/web-tests build/web/citrans.html "$file" "$runs" \
  "$program" --tab tab "$file" -o build/bench/page.html

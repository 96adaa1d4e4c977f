#!/usr/bin/env bash
# Keep the listing in README.md equal to what the program prints.
#
#   scripts/readme-listing.sh --check    status 1 and a diff when they differ
#   scripts/readme-listing.sh --update   put the present output into README.md
#
# The listing is the block between the two "demo listing" comments: the standard output of the
# YbbR example without the running time and the blanks at line ends. Needs build/release/citrans.
set -euo pipefail
cd "$(dirname "$0")/.."

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
env -u CITRANS_DIR build/release/citrans -in examples/ybbr.tab -ref examples/ybbr_2kpu.pdb -verb \
  -sum "$scratch/ybbr.tab" 2>/dev/null >"$scratch/output"

{
  echo '```text'
  grep -v '^ Running time: ' "$scratch/output" | sed -e 's/ *$//' -e '${/^$/d}'
  echo '```'
} >"$scratch/block"

# The README with the block between the comments replaced by the one just made.
awk -v block="$scratch/block" '
  /^<!-- demo listing -->$/ { print; while ((getline line < block) > 0) print line; skip = 1; next }
  /^<!-- end of demo listing -->$/ { skip = 0 }
  !skip { print }
' README.md >"$scratch/README.md"

case "${1:---check}" in
  --check) diff -u README.md "$scratch/README.md" ;;
  --update) cp "$scratch/README.md" README.md ;;
  *)
    echo "usage: scripts/readme-listing.sh --check | --update" >&2
    exit 2
    ;;
esac

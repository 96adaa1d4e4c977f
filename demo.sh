#!/usr/bin/env bash
# Install what is missing, build CITRANS, and predict the prolines of the YbbR domain.
#
# The shifts are those of BMRB entry 16570 and the reference is PDB entry 2KPU, in which Pro82 is
# cis and the other seven prolines are trans. The two tables written go to build/demo.
set -euo pipefail
cd "$(dirname "$0")"

scripts/install-deps.sh build

log="$(mktemp)"
trap 'rm -f "$log"' EXIT
echo "Building ..."
if ! { cmake --preset release >"$log" 2>&1; }; then
  cat "$log" >&2
  exit 1
fi
# The program alone; the companion programs take five times as long.
if ! { cmake --build --preset release --target citrans >"$log" 2>&1; }; then
  cat "$log" >&2
  exit 1
fi

mkdir -p build/demo
run=(build/release/citrans -in examples/ybbr.tab -ref examples/ybbr_2kpu.pdb -verb
  -sum build/demo/ybbr.tab)
echo "${run[*]}"
env -u CITRANS_DIR "${run[@]}"

echo
echo "Written: build/demo/ybbr.tab (the prediction), build/demo/ybbrAdjCS.tab (secondary shifts)"

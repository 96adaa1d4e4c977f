#!/usr/bin/env bash
# Builds the packages, unpacks the DEB into a scratch root and runs every example from another
# folder, as a user of the installed program would.
#
#   packaging/test.sh        needs the release build in build/release
set -euo pipefail
cd "$(dirname "$0")/.."

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
passed=0
failed=0

check() {
  local what=$1
  shift
  if "$@"; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    echo "FAILED: $what" >&2
  fi
}

(cd build/release && cpack -B "$scratch/packages" >"$scratch/cpack.log" 2>&1) || {
  cat "$scratch/cpack.log" >&2
  exit 1
}
check "one DEB and one TGZ" test "$(find "$scratch/packages" -maxdepth 1 -name 'citrans*.deb' \
  -o -maxdepth 1 -name 'citrans*.tar.gz' | wc -l)" -eq 2
if command -v lintian >/dev/null; then
  check "lintian" lintian --fail-on error,warning --allow-root "$scratch"/packages/citrans*.deb
fi

root=$scratch/root
dpkg-deb -x "$scratch"/packages/citrans*.deb "$root"
examples=$root/usr/share/doc/citrans/examples
mkdir "$scratch/elsewhere"
cd "$scratch/elsewhere"
unset CITRANS_DIR

# Pro82 of the YbbR domain is cis in its structure; ubiquitin has none; the protons of plastocyanin
# alone are too few for a prediction.
cis_prolines() { awk '$1 ~ /^[0-9]+$/ && $10 > 0.5 { printf "%s ", $1 }' "$1"; }
runs_as() {
  local name=$1 expected=$2
  shift 2
  "$root/usr/bin/citrans" -in "$examples/$name.tab" "$@" -sum "$name.out" >"$name.log" 2>&1 &&
    test "$(cis_prolines "$name.out")" = "$expected"
}
check "YbbR example" runs_as ybbr "82 " -ref "$examples/ybbr_2kpu.pdb"
check "ubiquitin example" runs_as ubiquitin "" -ref "$examples/ubiquitin_1ubq.pdb"
check "plastocyanin example" runs_as plastocyanin ""

named_tables() {
  CITRANS_DIR=$scratch/nowhere "$root/usr/bin/citrans" -in "$examples/ybbr.tab" 2>&1 |
    grep -q "Can't open file $scratch/nowhere/tab/randcoil.tab"
}
check "CITRANS_DIR keeps its meaning" named_tables

# The pages name pictures by where these stand from the pages in the source tree.
pictures_are_installed() {
  local pages=$root/usr/share/doc/citrans picture status=0
  for picture in $(sed -n 's/.*](\([^)]*\.svg\)).*/\1/p' "$pages"/*.md | sort -u); do
    test -e "$pages/${picture#docs/}" || { echo "no $picture" >&2; status=1; }
  done
  return $status
}
check "pictures of the pages" pictures_are_installed

echo "$passed passed, $failed failed"
test "$failed" -eq 0

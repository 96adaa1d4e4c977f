#!/usr/bin/env bash
# Builds the packages, unpacks the DEB into a scratch root and runs every example from another
# folder, as a user of the installed program would.
#
#   packaging/test.sh        needs the release build in build/release
set -euo pipefail
cd "$(dirname "$0")/.."
sources=$PWD

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

# What is released says one version everywhere.
versions_agree() {
  local version
  version=$(sed -n 's/^project(citrans VERSION \([0-9.]*\) .*/\1/p' CMakeLists.txt)
  test -n "$version" && grep -qx "version: $version" CITATION.cff &&
    grep -q "^## $version (" CHANGELOG.md && head -n 1 packaging/changelog | grep -qF "($version)" &&
    test -z "$(grep -Lx "\.Os CITRANS $version" docs/man/*.[1-9])" &&
    test -z "$(grep -L "Made by citrans-derive $version: " tab/*.tab)"
}
check "versions" versions_agree

(cd build/release && cpack -B "$scratch/packages" >"$scratch/cpack.log" 2>&1) || {
  cat "$scratch/cpack.log" >&2
  exit 1
}
check "one DEB and one TGZ" test "$(find "$scratch/packages" -maxdepth 1 -name 'citrans*.deb' \
  -o -maxdepth 1 -name 'citrans*.tar.gz' | wc -l)" -eq 2
if command -v lintian >/dev/null; then
  check "lintian" lintian --fail-on error,warning --allow-root "$scratch"/packages/*.deb
fi

root=$scratch/root
dpkg-deb -x "$scratch"/packages/citrans*.deb "$root"
dpkg-deb -x "$scratch"/packages/libcitrans-dev*.deb "$root"
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
  for picture in $(sed -nE 's/.*(\]\(|src=")([^)"]*\.(svg|png))[)"].*/\2/p' "$pages"/*.md | sort -u); do
    test -e "$pages/${picture#docs/}" || { echo "no $picture" >&2; status=1; }
  done
  return $status
}
check "pictures of the pages" pictures_are_installed
check "the page for the browser" cmp "$sources/docs/citrans.html" "$root/usr/share/citrans/citrans.html"

# The copyright file names every library that NOTICES names, and what the licences of those that are
# only linked with ask for holds: they are not in the program.
notices_are_installed() {
  local text=$root/usr/share/doc/citrans/copyright
  grep -q "^MIT License" "$text" && grep -qxFf <(grep -B 1 "^Contained in:" "$sources/NOTICES" |
    grep -vE "^(Contained in:|--)") "$text" && tail -n 20 "$sources/NOTICES" | cmp - <(tail -n 20 "$text")
}
check "notices" notices_are_installed
check "C library not contained" grep -q "libc\.so" <(ldd "$root/usr/lib/citrans/citrans")

# The library as another project uses it: its example from the installed tree, in two words of
# CMake, gives the prolines of the program's summary, and every header stands by itself.
library_example() {
  cmake -S "$examples/library" -B "$scratch/example" -DCMAKE_PREFIX_PATH="$root/usr" \
    -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" &&
    cmake --build "$scratch/example"
} >"$scratch/example.log" 2>&1
same_prolines() {
  local prolines=$scratch/prolines.txt
  "$scratch/example/predict_texts" "$root/usr/share/citrans/tab" "$examples/ybbr.tab" \
    "$examples/ubiquitin.tab" >"$prolines" || return 1
  awk '$1 ~ /^[0-9]+$/ { print $1, $2, $3, $4, $9 }' ybbr.out ubiquitin.out | cmp - "$prolines" &&
    grep -q "^82 " "$prolines" && test "$(ls)" = "$1"
}
headers_stand_alone() {
  local header
  (cd "$root/usr/include/citrans" && find . -name '*.h') | while read -r header; do
    echo "#include <citrans/${header#./}>" | c++ -std=c++17 -fsyntax-only -Wall -Wextra -Werror \
      -I "$root/usr/include" -I "$root/usr/include/citrans" -x c++ - || return 1
  done
}
check "example of the library" library_example
check "the library predicts as the program does, and writes nothing" same_prolines "$(ls)"
check "headers of the library" headers_stand_alone

# The module as the package and the wheel install it, each alone, and away from the sources.
python=/usr/bin/python3
predicts_from() {
  PYTHONPATH=$1 PYTHONDONTWRITEBYTECODE=1 "$python" - "$examples" "$1" <<'END'
import pathlib, sys, citrans
assert citrans.__file__.startswith(sys.argv[2]), citrans.__file__
result = citrans.predict(pathlib.Path(sys.argv[1]) / "ybbr.tab")
assert [proline.author for proline in result if proline.call == "cis"] == ["82"], result
END
}
wheel_is_made() {
  CITRANS_BUILD=$sources/build/release "$python" -m pip wheel --quiet --disable-pip-version-check \
    --no-build-isolation --no-deps --no-index -w "$scratch/wheel" ./python &&
    "$python" -m zipfile -e "$scratch"/wheel/citrans-*.whl "$scratch/unpacked"
}
typed_and_licensed() {
  local package=$1
  shift
  test -e "$package/py.typed" -a -e "$package/_core.pyi" &&
    grep -q "^MIT License" "$@" && grep -q "^pybind11 " "$@"
}
if [[ -d $sources/build/release/python ]]; then
  dpkg-deb -x "$scratch"/packages/python3-citrans*.deb "$scratch/python"
  dist=$scratch/python/usr/lib/python3/dist-packages
  check "module of the package" predicts_from "$dist"
  check "files of the package" typed_and_licensed "$dist/citrans" \
    "$scratch/python/usr/share/doc/python3-citrans/copyright"
  cd "$sources"
  check "wheel" wheel_is_made
  cd "$scratch/elsewhere"
  check "module of the wheel" predicts_from "$scratch/unpacked"
  check "files of the wheel" typed_and_licensed "$scratch/unpacked/citrans" \
    "$scratch"/unpacked/citrans-*.dist-info/{LICENSE,NOTICES}
fi

echo "$passed passed, $failed failed"
test "$failed" -eq 0

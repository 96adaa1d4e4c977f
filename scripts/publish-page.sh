#!/usr/bin/env bash
# Build the page and put it where a static host and the packages take it from: docs/citrans.html, and
# its picture for README.md, docs/images/page.png.
#
#   scripts/publish-page.sh            build it twice, compare, copy it, take the picture
#   scripts/publish-page.sh --check    build it; status 1 and a line when docs/citrans.html is another,
#                                      also in a second build
#
# Needs what scripts/install-deps.sh web installs.
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ $# -gt 1 || ($# -eq 1 && $1 != --check) ]]; then
  echo "usage: scripts/publish-page.sh [--check]" >&2
  exit 2
fi

# Everything anew in another folder.
again=build/web-again
build_again() {
  local -x CCACHE_DISABLE=1 NODE_PATH=/usr/share/nodejs # as the preset has it
  rm -rf "$again"
  cmake --preset web -B "$again"
  cmake --build "$again" --parallel "$(nproc)"
}

# clang 14 compiles some handlers of exceptions in one of two ways for WebAssembly, as the addresses
# of its memory happen to be; a source that has one is to be written otherwise.
name_differing_units() {
  local object
  while IFS= read -r -d '' object; do
    cmp -s "$object" "build/web/${object#"$again"/}" || echo "compiled in two ways: $object" >&2
  done < <(find "$again" -name '*.o' -print0)
}

cmake --preset web
cmake --build --preset web --parallel "$(nproc)"
if [[ $# -eq 0 ]]; then
  build_again
  if ! cmp build/web/citrans.html "$again/citrans.html"; then
    name_differing_units
    exit 1
  fi
  cp build/web/citrans.html docs/citrans.html
  scripts/page-picture.py docs/citrans.html docs/images/page.png
elif ! cmp -s build/web/citrans.html docs/citrans.html; then
  # Another build may give it all the same; then the sources are those of the page, and no more.
  build_again
  name_differing_units
  if ! cmp -s "$again/citrans.html" docs/citrans.html; then
    echo "docs/citrans.html is not what the sources give: scripts/publish-page.sh makes it anew" >&2
    exit 1
  fi
fi

#!/usr/bin/env bash
# Build the page and put it where a static host and the packages take it from: docs/citrans.html, and
# its picture for README.md, docs/images/page.png.
#
#   scripts/publish-page.sh            build it, copy it, take the picture
#   scripts/publish-page.sh --check    build it; status 1 and a line when docs/citrans.html is another
#
# Needs what scripts/install-deps.sh web installs.
set -euo pipefail
cd "$(dirname "$0")/.."

if [[ $# -gt 1 || ($# -eq 1 && $1 != --check) ]]; then
  echo "usage: scripts/publish-page.sh [--check]" >&2
  exit 2
fi
cmake --preset web
cmake --build --preset web --parallel "$(nproc)"
if [[ $# -eq 0 ]]; then
  cp build/web/citrans.html docs/citrans.html
  scripts/page-picture.py docs/citrans.html docs/images/page.png
elif ! cmp -s build/web/citrans.html docs/citrans.html; then
  echo "docs/citrans.html is not what the sources give: scripts/publish-page.sh makes it anew" >&2
  exit 1
fi

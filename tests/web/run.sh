#!/usr/bin/env bash
# Build the page and try it in headless Chromium, against what the native programs give. Then see
# whether docs/citrans.html is that page.
#
#   tests/web/run.sh BUILD [FILE]...
#
# BUILD holds the native programs. More files of shifts are compared too. Puppets for the browser
# and the accessibility checks come from npm, into build/web-tests, in the versions of package.json.
set -euo pipefail
cd "$(dirname "$0")/../.."
build="$1"
shift

cmake --preset web
cmake --build --preset web --parallel "$(nproc)"

here=build/web-tests
mkdir -p "$here"
cp tests/web/package.json tests/web/*.js "$here"
(cd "$here" && npm install --no-audit --no-fund --loglevel=error)

rm -rf "$here/expected"
python3 tests/web/expected.py "$build" . "$here/expected" "$@"
mkdir -p "$here/pictures"
(cd "$here" && node page_test.js ../web/citrans.html ../.. expected pictures)
if command -v firefox-esr >/dev/null; then
  (cd "$here" && node firefox_test.js ../web/citrans.html)
fi
scripts/publish-page.sh --check

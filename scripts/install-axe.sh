#!/usr/bin/env bash
# Install axe-core, which looks for what keeps readers with a disability from a page, into build/axe
# by npm. The test of the rendered pages uses it when it is there. Needs npm (apt-get install npm).
set -euo pipefail
cd "$(dirname "$0")/.."
if [[ -e build/axe/node_modules/axe-core/axe.min.js ]]; then
  exit 0
fi
mkdir -p build/axe
npm install --silent --no-audit --no-fund --prefix build/axe axe-core@4

#!/bin/sh
# Starts the installed program from any folder: the reference tables lie below the installation,
# unless CITRANS_DIR names another place.
prefix=$(dirname -- "$(dirname -- "$(readlink -f -- "$0")")")
if [ -z "${CITRANS_DIR+set}" ]; then
  CITRANS_DIR=$prefix/share/citrans
  export CITRANS_DIR
fi
exec "$prefix/lib/citrans/citrans" "$@"

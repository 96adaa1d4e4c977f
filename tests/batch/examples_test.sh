#!/usr/bin/env bash
# The batch examples give what one citrans-batch gives. Status 77, which skips, without the program
# that an example is for.
#
#   examples_test.sh CITRANS_BATCH CITRANS SOURCE_ROOT parallel|snakemake
set -euo pipefail

root=$3
command -v "$4" >/dev/null || exit 77
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
PATH=$(dirname "$1"):$(dirname "$2"):$PATH
export CITRANS_DIR=$root/
mkdir "$scratch/entries"
for i in 1 2 3; do
  cp "$root/examples/ybbr.tab" "$scratch/entries/y$i.tab"
  cp "$root/examples/ubiquitin.tab" "$scratch/entries/u$i.tab"
done
cd "$scratch"
citrans-batch --quiet entries -o expected.tsv
case $4 in
  parallel) "$root/examples/batch/parallel.sh" entries output.tsv ;;
  snakemake)
    HOME=$scratch snakemake --quiet --cores 2 --snakefile "$root/examples/batch/Snakefile" \
      --config entries=entries output=output.tsv
    ;;
esac
test "$(grep -c '^proline' expected.tsv)" -eq 33
cmp expected.tsv output.tsv

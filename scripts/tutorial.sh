#!/usr/bin/env bash
# Keep the output and the pictures that the pages of docs/ show equal to what the programs give.
#
#   scripts/tutorial.sh --check [DIR]    status 1 and a diff when they differ
#   scripts/tutorial.sh --update [DIR]   put the present output and pictures into the pages
#
# A block after the comment "run" or "run on depositions" is a session: each line that begins with
# "$ " is run, and what follows it is its standard output and standard error, without the running
# time and the blanks at line ends. DIR holds the depositions that the pages name. Without it the
# blocks on depositions stay as they are, and the others start from the tables in examples/.
# docs/python.md holds sessions of Python, which scripts/python-session.py runs from the root.
# Needs the programs and the Python module in build/release.
set -euo pipefail
cd "$(dirname "$0")/.."
root="$PWD"
pages=(docs/tutorial.md docs/evidence.md docs/xcc2852.md)
depositions=(bmr16570.str bmr6363.str 2kpu_model1.pdb 1TTZ.pdb 1xpv_model1.pdb)

mode="${1:---check}"
folder="${2:-}"
if [[ $# -gt 2 || ($mode != --check && $mode != --update) ]]; then
  echo "usage: scripts/tutorial.sh --check [DIR] | --update [DIR]" >&2
  exit 2
fi

scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
export PATH="$root/build/release:$PATH" CITRANS_DIR="$root" LC_ALL=C

# A folder to run a page in: the depositions, or else the tables made from them.
lay_out() {
  mkdir "$1"
  ln -s "$root/examples" "$root/tab" "$1"
  if [[ -n "$folder" ]]; then
    local name
    for name in "${depositions[@]}"; do
      cp "$folder/$name" "$1"
    done
    return
  fi
  cp examples/ybbr.tab examples/xcc2852.tab "$1"
  cp examples/ybbr_2kpu.pdb "$1/ybbr.pdb"
  # The authors of this entry count from 1 too.
  awk 'BEGIN { print "resid\tauthor\tresname" }
    /^DATA SEQUENCE/ { for (i = 3; i <= NF; ++i) letters = letters $i }
    END { for (i = 1; i <= length(letters); ++i)
      printf "%d\t%d\t%s\n", i, i, substr(letters, i, 1) }' examples/ybbr.tab >"$1/ybbr.map"
}

# The page with the output of its sessions as it is now. The last line of a session's fence ends it.
render() {
  local page="$1" folder_of_run="$2" line run=no inside=no status
  while IFS= read -r line; do
    case "$line" in
      '<!-- run -->') run=yes ;;
      '<!-- run on depositions -->') if [[ -n "$folder" ]]; then run=yes; fi ;;
      '```'*)
        if [[ $inside == yes ]]; then
          inside=no
          run=no
        elif [[ $run == yes ]]; then
          inside=yes
        fi
        ;;
    esac
    if [[ $inside == no || "$line" == '```'* || "$line" == '$ '* ]]; then
      printf '%s\n' "$line"
    fi
    if [[ $inside == yes && "$line" == '$ '* ]]; then
      status=0
      (cd "$folder_of_run" && bash -c "${line#\$ }") >"$scratch/output" 2>&1 </dev/null || status=$?
      if [[ $status -ne 0 ]]; then
        echo "$page: status $status of ${line#\$ }" >&2
        cat "$scratch/output" >&2
        return 1
      fi
      sed -e '/^ Running time: /d' -e 's/[[:blank:]]*$//' "$scratch/output" | sed -e '${/^$/d}'
    fi
  done <"$page"
}

# One file of the documentation beside what it should be.
compare() {
  if [[ $mode == --update ]]; then
    cp "$2" "$1"
  elif ! diff -u "$1" "$2"; then
    different=yes
  fi
}

different=no
for page in "${pages[@]}"; do
  name="$(basename "$page" .md)"
  lay_out "$scratch/$name"
  render "$page" "$scratch/$name" >"$scratch/$name.md"
  compare "$page" "$scratch/$name.md"
done
PYTHONPATH="$root/build/release/python" scripts/python-session.py docs/python.md >"$scratch/python.md"
compare docs/python.md "$scratch/python.md"
if [[ -z "$folder" ]]; then # of the example, which has another title than its deposition
  compare docs/images/evidence.svg "$scratch/tutorial/ybbr.svg"
fi
compare docs/images/pro82.svg "$scratch/evidence/pictures/P82.svg"
compare docs/images/xcc2852.svg "$scratch/xcc2852/xcc2852.svg"
if [[ -n "$folder" ]]; then
  # The rows that the gate starts from are those of the deposition.
  diff <(grep -v '^REMARK' examples/xcc2852.tab) <(grep -v '^REMARK' "$scratch/xcc2852/xcc2852.tab") \
    || different=yes
fi
test "$different" == no

#!/usr/bin/env bash
# Static analysis besides clang-tidy: cppcheck over the program, the fuzz targets and the tools, and
# the analyser of g++ over the program. The status is 0 when neither has anything to say.
#
# What cppcheck is told to leave out, and why:
#   missingInclude(System)  headers of other packages are not its business
#   unmatchedSuppression    of a finding that another version of cppcheck does not make
#   useStlAlgorithm         a plain loop is often the clearer text
#   shadowFunction          a local named like a member function hides nothing that it uses
#   variableScope, useInitializationList, unusedStructMember   in tools only: style, and members
#                           that are read through pointers to members or structured bindings
#
# What the analyser of g++ is told to leave out: two checks that know C but not C++.
#   use-of-uninitialized-value  takes an object returned by value for one never made
#   possible-null-argument      takes a new that throws for one that returns null
set -euo pipefail
cd "$(dirname "$0")/.."

status=0
cppcheck_common=(--quiet --std=c++17 --language=c++ --enable=warning,style,performance,portability
  --inline-suppr --error-exitcode=1 -I . --suppress=missingInclude --suppress=missingIncludeSystem
  --suppress=unmatchedSuppression --suppress=useStlAlgorithm --suppress=shadowFunction
  '--template={file}:{line}: {id}: {message}')
cppcheck "${cppcheck_common[@]}" app table shifts predict structure fuzz || status=1
cppcheck "${cppcheck_common[@]}" --suppress=variableScope --suppress=useInitializationList \
  --suppress=unusedStructMember tools || status=1

for source in app/*.cpp table/*.cpp shifts/*.cpp predict/*.cpp structure/*.cpp; do
  # Null dereferences: g++ 12 takes the memory of a growing std::vector as possibly null.
  g++ -std=c++17 -O1 -I . -fanalyzer -Wno-analyzer-use-of-uninitialized-value -Wno-analyzer-null-dereference \
    -Wno-analyzer-possible-null-argument -Wno-analyzer-possible-null-dereference -Werror -c -o /dev/null "$source" || status=1
done
exit $status

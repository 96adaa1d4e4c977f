#!/usr/bin/env bash
# Static analysis besides clang-tidy: cppcheck over the program, the fuzz targets, the tools, the page
# and the Python module, and the analyser of g++ over the program. The status is 0 when neither has
# anything to say.
#
# What cppcheck is told to leave out, and why:
#   missingInclude(System)  headers of other packages are not its business
#   unmatchedSuppression    of a finding that another version of cppcheck does not make
#   useStlAlgorithm         a plain loop is often the clearer text
#   shadowFunction          a local named like a member function hides nothing that it uses
#   variableScope, useInitializationList, unusedStructMember   in tools only: style, and members
#                           that are read through pointers to members or structured bindings
#
# What the analyser of g++ 12 is told to leave out: checks that know C but not C++.
#   use-of-uninitialized-value  takes an object returned by value for one never made
#   possible-null-argument, null-dereference, possible-null-dereference
#                               take a new that throws for one that returns null, as in the memory
#                               of a growing vector
set -euo pipefail
cd "$(dirname "$0")/.."

status=0
cppcheck_common=(--quiet -j "$(nproc)" --std=c++17 --language=c++ --enable=warning,style,performance,portability
  --inline-suppr --error-exitcode=1 -I . --suppress=missingInclude --suppress=missingIncludeSystem
  --suppress=unmatchedSuppression --suppress=useStlAlgorithm --suppress=shadowFunction
  '--template={file}:{line}: {id}: {message}')
cppcheck "${cppcheck_common[@]}" app table shifts predict structure fuzz || status=1
cppcheck "${cppcheck_common[@]}" --suppress=variableScope --suppress=useInitializationList \
  --suppress=unusedStructMember tools web python || status=1

analyser=(g++ -std=c++17 -O1 -I . -fanalyzer -Werror -Wno-analyzer-use-of-uninitialized-value
  -Wno-analyzer-possible-null-argument -Wno-analyzer-null-dereference
  -Wno-analyzer-possible-null-dereference -c -o /dev/null)
printf '%s\0' app/*.cpp table/*.cpp shifts/*.cpp predict/*.cpp structure/*.cpp \
  | xargs -0 -n 1 -P "$(nproc)" "${analyser[@]}" || status=1
exit $status

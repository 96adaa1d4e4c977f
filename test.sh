#!/usr/bin/env bash
# Build and check everything: the gate that every change passes.
#
#   ./test.sh              all stages
#   ./test.sh --quick      format, scripts, manual pages, and the release build with its tests
#   ./test.sh --coverage   all stages, then line and branch coverage of the tests
#   ./test.sh --analyse    all stages, then clang-tidy over sources and tests, and cppcheck
#   ./test.sh --portable   all stages, then the core and its tests with libc++, as 32-bit x86 and as
#                          WebAssembly under node
#   ./test.sh --web        all stages, then the page: needs emscripten (800 MB), which it installs
#
# Without --web the page is built and tried where emscripten is there.
#
# Installs what is missing first (Debian packages; nothing is fetched when all is there). Each
# stage is named, timed and counted as one check, and each test that ctest runs as one more. What
# a stage says goes to build/test-logs/ and is shown when the stage fails. The last line is the
# sum; the exit status is 0 when nothing failed.
set -euo pipefail
cd "$(dirname "$0")"

quick=no
coverage=no
analyse=no
portable=no
web=no
for option in "$@"; do
  case "$option" in
    --quick) quick=yes ;;
    --coverage) coverage=yes ;;
    --analyse) analyse=yes ;;
    --portable) portable=yes ;;
    --web) web=yes ;;
    *)
      echo "usage: ./test.sh [--quick] [--coverage] [--analyse] [--portable] [--web]" >&2
      exit 2
      ;;
  esac
done

cores="$(nproc 2>/dev/null || echo 2)"
logs=build/test-logs
mkdir -p "$logs"
passed=0
failed=0
failed_stages=()

# Add the tests that ctest reported in a log to the sums, and show its closing line.
count_tests() {
  local closing
  closing="$(grep -E '^[0-9]+% tests passed, [0-9]+ tests? failed out of [0-9]+' "$1" | tail -n 1)" \
    || return 0
  if [[ "$closing" =~ ([0-9]+)\ tests?\ failed\ out\ of\ ([0-9]+) ]]; then
    failed=$((failed + BASH_REMATCH[1]))
    passed=$((passed + BASH_REMATCH[2] - BASH_REMATCH[1]))
    echo "          $closing"
  fi
}

# run_stage NAME COMMAND...: run one stage into its log, and note how it ended.
run_stage() {
  local name="$1" status=0 start=$SECONDS
  shift
  rm -f "$logs/$name.end"
  "$@" >"$logs/$name.log" 2>&1 || status=$?
  echo "$status $((SECONDS - start))" >"$logs/$name.end"
}

# report_stage NAME: say how a stage ended; a failure is shown and counted, and the stages after it
# still run. One that did not come to its end has failed.
report_stage() {
  local name="$1" log="$logs/$1.log" status=1 seconds=0
  read -r status seconds 2>/dev/null <"$logs/$name.end" || true
  if [[ $status -eq 0 ]]; then
    passed=$((passed + 1))
    printf '%-9s %-10s %4d s\n' passed "$name" "$seconds"
  else
    failed=$((failed + 1))
    failed_stages+=("$name")
    printf '%-9s %-10s %4d s   the end of %s:\n' FAILED "$name" "$seconds" "$log"
    # Without the steps of a build that went well, which would hide what did not.
    grep -vE '^\[[0-9]+/[0-9]+\] ' "$log" | tail -n 120 | sed 's/^/    /' || true
  fi
  count_tests "$log"
}

stage() {
  run_stage "$@"
  report_stage "$1"
}

sources() {
  local folder
  for folder in app table shifts predict structure tests fuzz bench tools web python; do
    if [[ -d "$folder" ]]; then
      find "$folder" -type f \( -name '*.cpp' -o -name '*.h' \) -print0
    fi
  done
}

check_format() {
  sources | xargs -0 -r clang-format --dry-run -Werror
}

check_scripts() {
  local script status=0
  for script in demo.sh test.sh bench.sh .ci/run bench/*.sh fuzz/run.sh scripts/*.sh packaging/*.sh tests/web/*.sh; do
    bash -n "$script" || status=1
  done
  return $status
}

check_manuals() {
  mandoc -T lint -W warning docs/man/*.[1-9]
}

# The commands are joined by hand, since errexit does not act inside a stage.
build() {
  cmake --preset "$1" || return 1
  cmake --build --preset "$1" --parallel "$cores"
}

build_and_test() {
  build "$1" || return 1
  ctest --preset "$1" --no-tests=error --parallel "$cores"
}

# What users run, with the tests and warnings as errors.
build_release() {
  cmake --preset release -DCITRANS_TESTS=ON -DCITRANS_WERROR=ON || return 1
  cmake --build --preset release --parallel "$cores"
}

test_release() {
  ctest --preset release --no-tests=error --parallel "$cores"
}

# The program as 32-bit code, through the whole-program cases: the same bytes as everywhere.
test_m32() {
  cmake --preset m32 || return 1
  cmake --build --preset m32 --parallel "$cores" --target citrans || return 1
  ctest --preset m32 --no-tests=error --parallel "$cores" -R '^case\.'
}

# The checks alone: the sanitize build has compiled the same files with the same compiler.
run_tidy() {
  cmake --preset tidy || return 1
  # Not the sources that a build makes out of pages and tables.
  run-clang-tidy -quiet -p build/tidy -j "$cores" "^$PWD/(?!build/)"
}

show_coverage() {
  find build/coverage -name '*.gcda' -delete 2>/dev/null || true
  build_and_test coverage || return 1
  gcovr --root . --object-directory build/coverage --exclude-throw-branches \
    --filter app/ --filter table/ --filter shifts/ --filter predict/ --filter structure/ \
    --print-summary
}

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_stack_use_after_return=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
unset CITRANS_DIR

if [[ $coverage == yes ]]; then
  scripts/install-deps.sh coverage
else
  scripts/install-deps.sh test
fi
# Comes from npm; without it the pages are looked at by the other checks alone.
if command -v npm >/dev/null 2>&1; then
  scripts/install-axe.sh || echo "test.sh: no axe-core, npm could not install it" >&2
fi
if [[ $portable == yes ]]; then
  scripts/install-deps.sh portable
fi

if [[ $web == yes ]]; then
  scripts/install-deps.sh web
elif [[ $quick == no ]] && command -v emcc >/dev/null && command -v npm >/dev/null; then
  web=yes
fi

stage format check_format
stage scripts check_scripts
stage manuals check_manuals
stage release build_release
stage listing scripts/readme-listing.sh --check
# What needs the release build, one after the other.
run_beside() {
  run_stage tests test_release
  run_stage tutorial scripts/tutorial.sh --check
  run_stage package packaging/test.sh
  run_stage m32 test_m32
  run_stage notices scripts/notices.py --check build/release
  if [[ $web == yes ]]; then
    run_stage web tests/web/run.sh build/release
  fi
}

if [[ $quick == no ]]; then
  # Both at a time: either has minutes in which it keeps one core at most.
  trap 'trap - INT; kill 0' INT
  rm -f "$logs"/*.end
  run_beside &
  beside=$!
  stage sanitize build_and_test sanitize
  # The seeds and a little more. Longer runs: fuzz/run.sh SECONDS.
  JOBS="$cores" stage fuzz fuzz/run.sh 3
  wait "$beside" || true
  trap - INT
  for name in tests tutorial package m32 notices; do
    report_stage "$name"
  done
  if [[ $web == yes ]]; then
    report_stage web
  fi
else
  stage tests test_release
  if [[ $web == yes ]]; then
    stage web tests/web/run.sh build/release
  fi
fi
if [[ $analyse == yes ]]; then
  stage tidy run_tidy
  stage analyse scripts/analyse.sh
fi
if [[ $portable == yes ]]; then
  for preset in libcxx m32 wasm; do
    stage "$preset-all" build_and_test "$preset"
  done
fi
if [[ $coverage == yes ]]; then
  stage coverage show_coverage
  grep -E '^(lines|branches|functions): ' "$logs/coverage.log" || true
fi

echo
if [[ ${#failed_stages[@]} -gt 0 ]]; then
  echo "Failed stages: ${failed_stages[*]}   (logs in $logs)"
fi
echo "$passed passed, $failed failed"
if [[ $failed -gt 0 ]]; then
  exit 1
fi

#!/usr/bin/env bash
# Run the fuzz targets for a time, one after the other or, with JOBS, so many at once.
#
#   fuzz/run.sh SECONDS [TARGET]...           (default: all targets)
#   JOBS=2 fuzz/run.sh SECONDS [TARGET]...
#
# Builds them first. New units go to build/fuzz/units/TARGET, never among the seeds; what ends a
# target, to build/fuzz/found/TARGET-*: minimise it, give it a name that says what it is, and add it
# to fuzz/corpus with the repair. Statistics go to build/fuzz/TARGET.log. The status is 0 when every
# target ran clean.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:?usage: fuzz/run.sh SECONDS [TARGET]...}"
shift
targets=("$@")
if [[ ${#targets[@]} -eq 0 ]]; then
  targets=(table_reader table_writer cell_format structure command_line whole_run structure_import deposition)
fi

cmake --preset sanitize >/dev/null
cmake --build --preset sanitize --parallel "$(nproc)" --target "${targets[@]/#/fuzz_}" >/dev/null

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_stack_use_after_return=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"
unset CITRANS_DIR

fuzz_one() {
  local target="$1" words=table
  local seeds=(fuzz/corpus/tables)
  case "$target" in
    structure | command_line | cell_format | structure_import | deposition)
      words="$target"
      seeds=("fuzz/corpus/$target")
      ;;
  esac
  local units="build/fuzz/units/$target" log="build/fuzz/$target.log"
  mkdir -p "$units" build/fuzz/found
  # 64 KB hold any of the examples; more only makes every run slower. A unit may not take longer
  # than ten seconds or more than 2 GB.
  if "build/sanitize/fuzz/fuzz_$target" -max_total_time="$seconds" -max_len=65536 -timeout=10 \
    -rss_limit_mb=2048 -print_final_stats=1 -dict="fuzz/dict/$words.dict" \
    -artifact_prefix="build/fuzz/found/$target-" "$units" "${seeds[@]}" >"$log" 2>&1; then
    echo "$target: $(sed -n 's/^stat::number_of_executed_units: */executions /p' "$log")" \
      "$(grep -E ' cov: [0-9]+ ft: [0-9]+ ' "$log" | tail -n 1 | sed 's/.*\(cov: [0-9]* ft: [0-9]*\).*/\1/')"
  else
    echo "$target: FAILED, the end of $log:"
    tail -n 60 "$log" | sed 's/^/    /'
    return 1
  fi
}
export seconds
export -f fuzz_one
printf '%s\0' "${targets[@]}" | xargs -0 -n 1 -P "${JOBS:-1}" bash -c 'fuzz_one "$0"'

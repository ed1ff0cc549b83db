#!/usr/bin/env bash
# Runs every fuzzer, or those named after the first argument, up to that limit of libFuzzer's (default
# -max_total_time=60), as many at once as there are cores or as FUZZ_JOBS says, and prints how often each was executed.
# New inputs are kept under build/fuzz for the next run; one that finds a fault is written beside them, and its path is
# printed.
set -euo pipefail
cd "$(dirname "$0")/.."
limit=${1:--max_total_time=60}
names=("${@:2}")
[ "${#names[@]}" -gt 0 ] || names=(fuzz/corpus/*)

scripts/build.sh fuzz fuzzers
# To save memory, little is kept of what was freed and of the calls that allocated it; a fault's input, run again
# without this, tells everything.
export ASAN_OPTIONS=malloc_context_size=3:quarantine_size_mb=8
fuzz_one() {
  local name=$1 limit=$2 work=build/fuzz/runs/$1
  mkdir -p "$work/corpus"
  if ! "build/fuzz/fuzzers/$name" "$limit" -timeout=60 -rss_limit_mb=2048 -max_len=1024 -entropic=0 \
    -print_final_stats=1 -dict=fuzz/json.dict -artifact_prefix="$work/" "$work/corpus" "fuzz/corpus/$name" \
    > "$work/log" 2>&1; then
    echo "$name: a fault; see $work/log"
    grep -aE "ERROR|does not hold|Test unit written|runtime error" "$work/log" || tail -n 20 "$work/log"
    return 1
  fi
  awk -v name="$name" '/number_of_executed_units/ {n = $2} /average_exec_per_sec/ {rate = $2} /cov:/ {
    for (i = 1; i < NF; ++i) if ($i == "cov:") covered = $(i + 1) }
    END {printf "%-20s %9d executions, %6d a second, %5d places reached\n", name, n, rate, covered}' "$work/log"
}
export -f fuzz_one
printf '%s\n' "${names[@]##*/}" | xargs -P "${FUZZ_JOBS:-$(nproc)}" -I{} bash -c 'fuzz_one "$@"' _ {} "$limit"

#!/usr/bin/env bash
# Runs the benchmarks, and prints one table: each line a piece of work, what it is held against in the same run, and the
# ratio of the two.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/build.sh release benchmarks
XDG_RUNTIME_DIR=$(mktemp -d)  # the toolkit needs one
export XDG_RUNTIME_DIR
trap 'rm -rf "$XDG_RUNTIME_DIR"' EXIT
echo "$(nproc) processors, load $(cut -d' ' -f1-2 /proc/loadavg) of the last 1 and 5 minutes"
printf '%-40s %9s  %-35s %9s %9s\n' work ours reference its ratio
for name in tone process whole_test results board application sound; do
  build/release/benchmarks/"$name"_benchmark
done
# The start once more, on a display as users have it: a window costs more there.
if command -v xvfb-run > /dev/null; then
  echo "on an X server:"
  QT_QPA_PLATFORM=xcb xvfb-run -a build/release/benchmarks/application_benchmark start
fi
# The page too, if `make web` has built it.
[ ! -e build/web/bin/index.html ] || node scripts/check-web.mjs bench

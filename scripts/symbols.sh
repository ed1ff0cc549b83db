#!/usr/bin/env bash
# Compares what the shared libraries export, and how the types in their public headers lie in memory, with the lists in
# cmake/symbols. After a wanted change of the public interface, `scripts/symbols.sh --accept` writes the lists anew.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/bootstrap.sh abi

libraries=(ORNHearingTestSDK ORNHearingTestLinuxBackend ORNHearingTestScreens)
accept=${1-}
result=0

# compare LIST WHAT: compares standard input with a list.
compare() {
  if [ "$accept" = --accept ]; then
    cat > "$1"
  elif ! diff -u "$1" -; then
    echo "$2 is not what $1 says" >&2
    result=1
  fi
}

scripts/build.sh release "${libraries[@]}"
for library in "${libraries[@]}"; do
  exported=$(nm --dynamic --defined-only --demangle "build/release/lib/lib$library.so" | cut -d' ' -f3- | LC_ALL=C sort -u)
  compare "cmake/symbols/$library.txt" "what lib$library.so exports" <<< "$exported"
  layouts=$(scripts/layouts.sh "$library")
  compare "cmake/symbols/$library.layouts.txt" "how $library's public types lie in memory" <<< "$layouts"
done
exit "$result"

#!/usr/bin/env bash
# Goes through the commands of the documents as a new reader does, README first, in a clone with nothing built: a line
# that builds is run, and whatever a line runs has been built by then. documents_test checks what the programs do.
# Tests, packages and measurements have stages of their own; here their commands are only looked up.
set -euo pipefail
cd "$(dirname "$0")/.."
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
rm -rf build/release  # quickly built again by ccache

commands() { sed -n '/^```sh$/,/^```$/{/^```/!p}' "$1" | sed -E 's/ +# .*//; s/^ +.*//'; }
count=0
for document in README.md docs/EMBEDDING.md docs/SERVICE.md docs/MEASURED.md; do
  while read -r line; do
    case $line in
      "make run"* | "make programs"*) $line > /dev/null ;;
      *make\ *) make -n ${line##*make } > /dev/null ;;
    esac || { echo "$document: this line fails: $line" >&2; exit 1; }
    for program in $(grep -oE 'build/[a-z/-]*bin/[a-z-]+' <<< "$line" || true); do
      [ -x "$program" ] || { echo "$document: nothing has built $program by this line: $line" >&2; exit 1; }
      count=$((count + 1))
    done
  done < <(commands "$document")
done
[ "$count" -gt 10 ]
make install PREFIX="$prefix" > /dev/null  # last, since it builds all
[ -x "$prefix/bin/hearing-test" ]
echo "documents: $count lines run what has been built by then"

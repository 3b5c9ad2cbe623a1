#!/bin/bash
# usage: run.sh [long | BUILD_DIR [SECONDS]]
# Runs every fuzz target for that many seconds, 5 when nothing is said and 60 with "long", starting from its
# committed seeds. "long" tries something else every time; what is shorter tries the same inputs each time, so
# that it fails for what was changed. Not 0 when one of them finds something; the input that did it is then
# kept in BUILD_DIR/fuzz-findings.
set -uo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
seed=1
[ "${1:-}" = long ] && seed=0 && set -- "$here/../../build/fuzz" 60
build="${1:-$here/../../build/fuzz}"
seconds="${2:-5}"

[ -x "$build/bin/fuzz_mbdb" ] || { echo "no fuzz targets in $build" >&2; exit 1; }
findings="$build/fuzz-findings"
mkdir -p "$findings"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

failed=0
for target in "$build"/bin/fuzz_*; do
    name="$(basename "$target" | sed 's/^fuzz_//')"
    corpus="$scratch/$name"
    mkdir -p "$corpus"
    [ -d "$here/corpus/$name" ] && cp "$here/corpus/$name"/* "$corpus"
    if "$target" -seed="$seed" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=1024 -verbosity=0 -print_final_stats=1 \
        -artifact_prefix="$findings/$name-" "$corpus" >"$scratch/$name.log" 2>&1; then
        echo "fuzz_$name: $(sed -n 's/^stat::number_of_executed_units: *//p' "$scratch/$name.log") inputs, no finding"
    else
        echo "fuzz_$name: found something, kept in $findings" >&2
        tail -n 60 "$scratch/$name.log" >&2
        failed=1
    fi
done
exit "$failed"

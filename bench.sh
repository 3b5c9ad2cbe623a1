#!/bin/bash
# Builds the release preset, runs every bench and prints one table: what was measured, what it is compared with,
# the ratio and the ratio that is promised. Not 0 when a promise is broken or a bench fails.
set -uo pipefail
cd "$(dirname "$0")"
cmake --preset release >/dev/null && cmake --build --preset release || exit 1

rows="$(mktemp)"
trap 'rm -f "$rows"' EXIT
failed=0
for program in build/release/bin/bench_*; do
    "$program" >>"$rows" || { echo "failed: $program" >&2; failed=1; }
done
awk -F '\t' '
    BEGIN { printf "%-58s %12s %12s %8s %8s\n", "what", "measured", "baseline", "ratio", "at most" }
    { broken = $4 > $5; if (broken) found = 1
      printf "%-58s %12s %12s %8s %8s%s\n", $1, $2, $3, $4, $5, broken ? "  broken" : "" }
    END { exit found }' "$rows" || failed=1
exit "$failed"

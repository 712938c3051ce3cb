#!/usr/bin/env bash
# Runs every fuzz target in DIR for SECONDS each, starting from the test fixtures as corpus.
set -euo pipefail
dir=$1; seconds=${2:-10}
root="$(cd "$(dirname "$0")/.." && pwd)"
shopt -s nullglob
for f in "$dir"/*_fuzz; do
    corpus=$(mktemp -d)
    cp -r "$root"/tests/data/* "$corpus"/ 2>/dev/null || true
    echo "fuzzing $(basename "$f") for ${seconds}s"
    "$f" -max_total_time="$seconds" -rss_limit_mb=2048 -print_final_stats=0 "$corpus" >/tmp/fuzz-$(basename "$f").log 2>&1 \
        || { tail -n 40 /tmp/fuzz-$(basename "$f").log; exit 1; }
    rm -rf "$corpus"
done

#!/usr/bin/env bash
# Runs libFuzzer targets one after another: run-fuzz.sh <fuzz build> <seconds each> [target ...]
# Each starts from the seeds in fuzz/corpus/<target> and grows a scratch corpus in the build folder;
# a crash is written to <fuzz build>/crashes/<target>/ (copy it into fuzz/corpus/<target>/ with the fix).
set -euo pipefail
build=$1 seconds=$2
shift 2
src=$(cd "$(dirname "$0")/.." && pwd)
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for f in "$build"/fuzz/fuzz_*; do
    [ -f "$f" ] && [ -x "$f" ] && targets+=("$(basename "$f" | sed 's/^fuzz_//')")
  done
fi
status=0
for t in "${targets[@]}"; do
  work="$build/fuzz-work/$t" crashes="$build/crashes/$t"
  mkdir -p "$work" "$crashes"
  log="$build/fuzz-work/$t.log"
  echo "== $t ($seconds s)"
  if ! "$build/fuzz/fuzz_$t" -max_total_time="$seconds" -print_final_stats=1 -timeout=60 -rss_limit_mb=2048 \
      -artifact_prefix="$crashes/" "$work" "$src/fuzz/corpus/$t" >"$log" 2>&1; then
    status=1
    echo "   FOUND a crash, see $log and $crashes"
  fi
  grep -E '^(stat::number_of_executed_units|stat::peak_rss_mb)' "$log" | sed 's/^/   /' || true
done
exit $status

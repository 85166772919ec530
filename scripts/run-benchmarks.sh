#!/usr/bin/env bash
# Runs every benchmark program, then the whole-process figures. Usage: run-benchmarks.sh <builddir>
set -euo pipefail
build="$(cd "${1:-build}" && pwd)"
runs=5

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)] }'; }

# Prints "<wall seconds> <peak KiB>" for one run of the command under /usr/bin/time -v.
measure() {
    local report
    report="$(mktemp)"
    /usr/bin/time -v -o "$report" "$@" >/dev/null 2>&1 || { rm -f "$report"; return 1; }
    awk -F': ' '
        /Elapsed \(wall clock\)/ { n = split($2, t, ":"); s = 0; for (i = 1; i <= n; i++) s = s * 60 + t[i]; wall = s }
        /Maximum resident set size/ { rss = $2 }
        END { print wall, rss }' "$report"
    rm -f "$report"
}

# Runs the command $runs times and prints the median wall time (ms) and peak memory (MiB).
whole_process() {
    local label="$1"; shift
    local walls=() rsss=() line
    for _ in $(seq "$runs"); do
        line="$(measure "$@")" || { echo "$label: run failed"; return 1; }
        walls+=("${line% *}"); rsss+=("${line#* }")
    done
    local wall rss
    wall="$(printf '%s\n' "${walls[@]}" | median)"
    rss="$(printf '%s\n' "${rsss[@]}" | median)"
    awk -v l="$label" -v w="$wall" -v r="$rss" -v n="$runs" \
        'BEGIN { printf "%s: median of %d runs: wall %.0f ms, peak memory %.1f MiB\n", l, n, w * 1000, r / 1024 }'
}

echo "== Benchmark programs"
for bench in "$build"/bench/bench_*; do
    [ -f "$bench" ] && [ -x "$bench" ] || continue
    echo "-- $(basename "$bench")"
    "$bench" --benchmark_color=false
done

echo "== Whole-process figures"

# quillora-cli: one translation against the stand-in service program.
standin_out="$(mktemp)"
"$build/tests/quillora-standin" >"$standin_out" &
standin_pid=$!
trap 'kill "$standin_pid" 2>/dev/null || true; rm -f "$standin_out"' EXIT
for _ in $(seq 50); do
    grep -q '^PORT ' "$standin_out" && break
    sleep 0.1
done
port="$(awk '/^PORT /{ print $2 }' "$standin_out")"
[ -n "$port" ] || { echo "quillora-standin did not start"; exit 1; }
QUILLORA_SERVICE_URL="http://127.0.0.1:$port" QUILLORA_API_URL="http://127.0.0.1:$port" \
    whole_process "quillora-cli, one translation" "$build/src/quillora-cli" -s en -t fr hello world
kill "$standin_pid" 2>/dev/null || true
wait "$standin_pid" 2>/dev/null || true

echo "== Clipboard to service request (Xvfb with xclip, headless sway with wl-copy; 20 copies each)"
# Needs its own display server and D-Bus session; the program name keeps it out of the loop above.
clipboard_config="$(mktemp -d)"
for session in xsession.sh waylandsession.sh; do
    XDG_CONFIG_HOME="$clipboard_config" "$(dirname "$0")/../tests/$session" "$build/bench/latency_clipboard" \
        --benchmark_color=false 2>/dev/null || echo "$session: not run"
done
rm -rf "$clipboard_config"

echo "== Start-up to a shown window (Xvfb), against a bare Qt window"
"$(dirname "$0")/../tests/xsession.sh" "$(dirname "$0")/../bench/startup.sh" "$build" 2>/dev/null

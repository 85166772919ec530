#!/usr/bin/env bash
# Start-up to the first showing and resident memory at rest (VmRSS 7 s after start) of the program
# against a bare Qt window that makes one HTTPS request a second after showing, the two run in turn,
# median of 21 each (RUNS=<n> to change), on the X server in $DISPLAY. Usage: startup.sh <builddir>
set -euo pipefail
# A desktop session has a D-Bus session bus; without one, each D-Bus user first tries to start one
# itself, which no desktop user pays for.
if [ -z "${DBUS_SESSION_BUS_ADDRESS:-}" ] && command -v dbus-run-session >/dev/null; then
    exec dbus-run-session -- "$0" "$@"
fi
build="$(cd "${1:-build}" && pwd)"
runs=${RUNS:-21}
rest=7

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)] }'; }

# "<ms to the first showing> <VmRSS KiB at rest>" of one run. Both programs print "shown <epoch
# seconds>" when first exposed (QUILLORA_BENCH_REPORT_SHOWN); the shell's clock has microseconds.
measure() {
    local out start pid shown rss
    out="$(mktemp)"
    start=$EPOCHREALTIME
    QUILLORA_BENCH_REPORT_SHOWN=1 "$@" >"$out" 2>/dev/null &
    pid=$!
    sleep "$(awk -v s="$start" -v now="$EPOCHREALTIME" -v r="$rest" 'BEGIN { d = s + r - now; print (d > 0 ? d : 0) }')"
    rss="$(awk '/^VmRSS:/ { print $2 }' "/proc/$pid/status" 2>/dev/null || true)"
    kill "$pid" 2>/dev/null || true
    wait "$pid" 2>/dev/null || true
    shown="$(awk '$1 == "shown" { print $2; exit }' "$out")"
    rm -f "$out"
    [ -n "$shown" ] && [ -n "$rss" ] || return 1
    awk -v s="$start" -v e="$shown" -v r="$rss" 'BEGIN { printf "%.1f %d\n", (e - s) * 1000, r }'
}

# A fresh settings folder; the service and the maker's site on a closed loopback port over HTTPS,
# as the real ones are: nothing leaves the machine.
config="$(mktemp -d)"
trap 'rm -rf "$config"' EXIT
export XDG_CONFIG_HOME="$config"
export QUILLORA_SERVICE_URL=https://127.0.0.1:9 QUILLORA_API_URL=https://127.0.0.1:9 QUILLORA_SITE_URL=https://127.0.0.1:9

q_ms=() q_kib=() m_ms=() m_kib=()
for _ in $(seq "$runs"); do
    read -r ms kib < <(measure "$build/src/quillora")
    q_ms+=("$ms") q_kib+=("$kib")
    read -r ms kib < <(measure "$build/bench/minimal_window" https://127.0.0.1:9/)
    m_ms+=("$ms") m_kib+=("$kib")
done
med() { printf '%s\n' "$@" | median; }
read -r qm qk mm mk <<<"$(med "${q_ms[@]}") $(med "${q_kib[@]}") $(med "${m_ms[@]}") $(med "${m_kib[@]}")"
awk -v n="$runs" -v r="$rest" -v qm="$qm" -v qk="$qk" -v mm="$mm" -v mk="$mk" 'BEGIN {
    printf "quillora:       median of %d runs: shown after %.0f ms, VmRSS at %d s %.1f MiB\n", n, qm, r, qk / 1024
    printf "minimal window: median of %d runs: shown after %.0f ms, VmRSS at %d s %.1f MiB\n", n, mm, r, mk / 1024
    printf "ratio quillora / minimal window: time %.2f, memory %.2f\n", qm / mm, qk / mk }'

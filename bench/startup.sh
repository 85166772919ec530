#!/usr/bin/env bash
# Start-up to a shown window and peak memory of the program against a bare Qt window of similar
# make-up, median of 5 each, on the X server in $DISPLAY. Usage: startup.sh <builddir>
set -euo pipefail
build="$(cd "${1:-build}" && pwd)"
runs=5

median() { sort -n | awk '{ v[NR] = $1 } END { if (NR) print v[int((NR + 1) / 2)] }'; }

# "<wall seconds> <peak KiB>" of one run; the wall time from the shell's microsecond clock, since
# /usr/bin/time only gives hundredths.
measure() {
    local report start end
    report="$(mktemp)"
    start=$EPOCHREALTIME
    QUILLORA_BENCH_EXIT_WHEN_SHOWN=1 timeout 60 /usr/bin/time -v -o "$report" "$@" >/dev/null 2>&1 || { rm -f "$report"; return 1; }
    end=$EPOCHREALTIME
    awk -F': ' -v s="$start" -v e="$end" '
        /Maximum resident set size/ { rss = $2 }
        END { print e - s, rss }' "$report"
    rm -f "$report"
}

# Prints "<median ms> <median MiB>".
medians() {
    local walls=() rsss=() line
    for _ in $(seq "$runs"); do
        line="$(measure "$@")" || return 1
        walls+=("${line% *}"); rsss+=("${line#* }")
    done
    printf '%s %s\n' "$(printf '%s\n' "${walls[@]}" | median)" "$(printf '%s\n' "${rsss[@]}" | median)" |
        awk '{ printf "%.0f %.1f\n", $1 * 1000, $2 / 1024 }'
}

# A fresh settings folder, and every address on a closed loopback port: nothing leaves the machine.
config="$(mktemp -d)"
trap 'rm -rf "$config"' EXIT
export XDG_CONFIG_HOME="$config"
export QUILLORA_SERVICE_URL=http://127.0.0.1:9 QUILLORA_API_URL=http://127.0.0.1:9 QUILLORA_SITE_URL=http://127.0.0.1:9

read -r q_ms q_mib < <(medians "$build/src/quillora")
read -r m_ms m_mib < <(medians "$build/bench/minimal_window")
echo "quillora:       median of $runs runs: shown after $q_ms ms, peak memory $q_mib MiB"
echo "minimal window: median of $runs runs: shown after $m_ms ms, peak memory $m_mib MiB"
awk -v a="$q_ms" -v b="$m_ms" -v c="$q_mib" -v d="$m_mib" \
    'BEGIN { printf "ratio quillora / minimal: time %.2f, memory %.2f\n", a / b, c / d }'

#!/usr/bin/env bash
# Takes docs/screenshot.png (English, the desktop's own font) and, in <builddir>/screenshots, the window
# in Spanish, Slovak, French and Thai with desktop fonts of 9, 12 and 16 pt, each under Xvfb with a
# translation from the stand-in service on screen. Usage: screenshot.sh <builddir>
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/.." && pwd)"
build="$(cd "${1:-build}" && pwd)"
if [ -z "${SCREENSHOT_INNER:-}" ]; then
    # Room for the window at 16 pt, which grows with the font.
    export SCREENSHOT_INNER=1 XVFB_SCREEN=1920x1200x24
    exec "$root/tests/xsession.sh" --openbox "$0" "$build"
fi

work="$(mktemp -d)"
app=
cleanup() {
    [ -n "$app" ] && kill "$app" 2>/dev/null
    [ -n "${standin:-}" ] && kill "$standin" 2>/dev/null
    wait 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT

"$build/tests/quillora-standin" >"$work/standin.out" &
standin=$!
for _ in $(seq 50); do grep -q '^PORT ' "$work/standin.out" && break; sleep 0.1; done
port="$(awk '/^PORT /{ print $2 }' "$work/standin.out")"
[ -n "$port" ] || { echo "quillora-standin did not start" >&2; exit 1; }
export HOME="$work" QUILLORA_SERVICE_URL="http://127.0.0.1:$port" QUILLORA_API_URL="http://127.0.0.1:$port" \
    QUILLORA_SITE_URL="http://127.0.0.1:$port"
family="$(fc-match -f '%{family[0]}' sans-serif)"

# shoot <interface language 1-7> <desktop font in points, or "" for the default> <png>
# The font is set as a KDE desktop sets it (kdeglobals), which Qt reads by itself.
shoot() {
    local config="$work/config-$1-${2:-default}" points="${2:-9}" win=
    mkdir -p "$config/Quillora"
    # Translate into French (catalogue index 19).
    printf '[Setup]\nOptions=0|19|1|1|15|1|1\nLanguage=%s\n' "$1" >"$config/Quillora/Quillora.conf"
    if [ -n "$2" ]; then
        printf '[General]\nfont=%s,%s,-1,5,50,0,0,0,0,0\n' "$family" "$2" >"$config/kdeglobals"
        XDG_CONFIG_HOME="$config" XDG_CURRENT_DESKTOP=KDE KDE_SESSION_VERSION=5 "$build/src/quillora" >/dev/null 2>&1 &
    else
        XDG_CONFIG_HOME="$config" "$build/src/quillora" >/dev/null 2>&1 &
    fi
    app=$!
    for _ in $(seq 100); do
        win="$(xdotool search --onlyvisible --pid "$app" --class quillora 2>/dev/null | head -n1)" && [ -n "$win" ] && break
        sleep 0.1
    done
    [ -n "$win" ] || { echo "the window did not show" >&2; exit 1; }
    xdotool windowmove --sync "$win" 0 0 2>/dev/null || true
    xdotool windowactivate --sync "$win" 2>/dev/null || true
    sleep 0.5
    # The layout grows by the font's pixel size over 12 (9 pt at 96 dpi): so do the places clicked.
    local scale
    scale="$(awk -v p="$points" 'BEGIN { s = int(p * 96 / 72 + 0.5) / 12; print (s > 1 ? s : 1) }')"
    at() { awk -v s="$scale" -v x="$1" -v y="$2" 'BEGIN { printf "%d %d", x * s, y * s }'; }
    # Type into the source box, then press Translate.
    xdotool mousemove --window "$win" $(at 300 120) click 1
    xdotool type --delay 20 "hello world"
    xdotool mousemove --window "$win" $(at 58 257) click 1
    sleep 2
    xdotool mousemove 1900 1100
    import -window "$win" "$3"
    kill "$app"
    wait "$app" 2>/dev/null || true
    app=
    echo "wrote $3"
}

mkdir -p "$root/docs" "$build/screenshots"
shoot 1 "" "$root/docs/screenshot.png"
for language in 5:es 6:sk 7:fr 4:th; do
    for points in 9 12 16; do
        shoot "${language%%:*}" "$points" "$build/screenshots/${language#*:}-${points}pt.png"
    done
done

#!/usr/bin/env bash
# Takes docs/screenshot.png: the main window under Xvfb with a translation from the stand-in
# service on screen. Usage: screenshot.sh <builddir>
set -euo pipefail
here="$(cd "$(dirname "$0")" && pwd)"
root="$(cd "$here/.." && pwd)"
build="$(cd "${1:-build}" && pwd)"
if [ -z "${SCREENSHOT_INNER:-}" ]; then
    export SCREENSHOT_INNER=1
    exec "$root/tests/xsession.sh" --openbox "$0" "$build"
fi

work="$(mktemp -d)"
cleanup() {
    [ -n "${app:-}" ] && kill "$app" 2>/dev/null
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

# A private settings folder: translate into French (catalogue index 19).
export XDG_CONFIG_HOME="$work/config" HOME="$work"
mkdir -p "$XDG_CONFIG_HOME/Quillora"
printf '[Setup]\nOptions=0|19|1|1|15|1|1\n' >"$XDG_CONFIG_HOME/Quillora/Quillora.conf"
export QUILLORA_SERVICE_URL="http://127.0.0.1:$port" QUILLORA_API_URL="http://127.0.0.1:$port" \
    QUILLORA_SITE_URL="http://127.0.0.1:$port"

"$build/src/quillora" >/dev/null 2>&1 &
app=$!
win=
for _ in $(seq 100); do
    win="$(xdotool search --onlyvisible --pid "$app" --name '^Quillora$' 2>/dev/null | head -n1)" && [ -n "$win" ] && break
    sleep 0.1
done
[ -n "$win" ] || { echo "the window did not show" >&2; exit 1; }
xdotool windowactivate --sync "$win" 2>/dev/null || true
sleep 0.5

# Type into the source box, then press Translate.
xdotool mousemove --window "$win" 300 120 click 1
xdotool type --delay 20 "hello world"
xdotool mousemove --window "$win" 58 257 click 1
sleep 2
xdotool mousemove 1200 700

mkdir -p "$root/docs"
import -window "$win" "$root/docs/screenshot.png"
echo "wrote $root/docs/screenshot.png"

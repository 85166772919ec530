#!/usr/bin/env bash
# Runs a command inside its own headless sway and D-Bus session: waylandsession.sh cmd args...
# sway will not run as root; then it runs as "nobody" in a runtime folder that user owns, and the
# command (still root) reaches its socket through WAYLAND_DISPLAY as an absolute path.
# Exits 77 (skipped) when sway is not installed.
set -u
command -v sway >/dev/null || { echo "sway is not installed" >&2; exit 77; }
if [ -z "${WLSESSION_INNER:-}" ]; then
  export WLSESSION_INNER=1
  exec dbus-run-session -- "$0" "$@"
fi
rundir=$(mktemp -d)
chmod 0700 "$rundir"
# An installed desktop portal may answer only with a back-end the test brings itself.
if [ -z "${XDG_DESKTOP_PORTAL_DIR:-}" ]; then
  mkdir "$rundir/portals"
  export XDG_DESKTOP_PORTAL_DIR="$rundir/portals"
  dbus-update-activation-environment XDG_DESKTOP_PORTAL_DIR
fi
printf 'output HEADLESS-1 resolution 1280x1024\nxwayland disable\n' >"$rundir/config"
as_user=()
if [ "$(id -u)" = 0 ]; then
  chown nobody:nogroup "$rundir" "$rundir/config"
  as_user=(setpriv --reuid=nobody --regid=nogroup --clear-groups --)
fi
env -i PATH="$PATH" XDG_RUNTIME_DIR="$rundir" HOME="$rundir" WLR_BACKENDS=headless \
  WLR_LIBINPUT_NO_DEVICES=1 WLR_RENDERER=pixman "${as_user[@]}" sway -c "$rundir/config" \
  >"$rundir/sway.log" 2>&1 &
sway=$!
socket=
for _ in $(seq 200); do
  socket=$(find "$rundir" -maxdepth 1 -type s -name 'wayland-*' 2>/dev/null | head -n1)
  [ -n "$socket" ] && break
  sleep 0.05
done
if [ -z "$socket" ]; then echo "sway did not start" >&2; cat "$rundir/sway.log" >&2; kill "$sway" 2>/dev/null; exit 1; fi
export WAYLAND_DISPLAY="$socket"
export QT_QPA_PLATFORM=wayland
export XDG_SESSION_TYPE=wayland
unset DISPLAY
"$@"
rc=$?
kill "$sway" 2>/dev/null
wait 2>/dev/null
rm -rf "$rundir"
exit $rc

#!/usr/bin/env bash
# Runs a command inside its own Xvfb server and D-Bus session: xsession.sh [--openbox] cmd args...
# Xvfb picks a free display itself (-displayfd), so tests may run side by side; XVFB_SCREEN sets its
# screen (default 1280x800x24).
set -u
openbox=0
if [ "${1:-}" = "--openbox" ]; then openbox=1; shift; fi
if [ -z "${XSESSION_INNER:-}" ]; then
  export XSESSION_INNER=1
  exec dbus-run-session -- "$0" $([ $openbox = 1 ] && echo --openbox) "$@"
fi
rundir=$(mktemp -d)
# An installed desktop portal may answer only with a back-end the test brings itself.
if [ -z "${XDG_DESKTOP_PORTAL_DIR:-}" ]; then
  mkdir "$rundir/portals"
  export XDG_DESKTOP_PORTAL_DIR="$rundir/portals"
  dbus-update-activation-environment XDG_DESKTOP_PORTAL_DIR
fi
exec 3>"$rundir/display"
# Above ordinary load where allowed: responsiveness tests measure round trips through the server.
boost=
[ "$(id -u)" = 0 ] && boost="nice -n -10"
$boost Xvfb -displayfd 3 -screen 0 "${XVFB_SCREEN:-1280x800x24}" -nolisten tcp -noreset >"$rundir/xvfb.log" 2>&1 &
xvfb=$!
for _ in $(seq 100); do [ -s "$rundir/display" ] && break; sleep 0.05; done
if [ ! -s "$rundir/display" ]; then echo "Xvfb did not start" >&2; cat "$rundir/xvfb.log" >&2; exit 1; fi
export DISPLAY=":$(head -n1 "$rundir/display")"
export QT_QPA_PLATFORM=xcb XDG_SESSION_TYPE=x11
unset WAYLAND_DISPLAY
wm=
if [ $openbox = 1 ]; then
  openbox --sm-disable >/dev/null 2>&1 &
  wm=$!
  for _ in $(seq 100); do xprop -root _NET_SUPPORTING_WM_CHECK >/dev/null 2>&1 && break; sleep 0.05; done
fi
"$@"
rc=$?
[ -n "$wm" ] && kill "$wm" 2>/dev/null
kill "$xvfb" 2>/dev/null
wait 2>/dev/null
rm -rf "$rundir"
exit $rc

#!/usr/bin/env bash
# Installs whatever Debian packages from packages.txt are missing.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
mapfile -t wanted < <(grep -v -E '^\s*(#|$)' "$here/packages.txt")
missing=()
for p in "${wanted[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
cmd="apt-get install -y --no-install-recommends ${missing[*]}"
if [ "$(id -u)" -ne 0 ]; then
  echo "Missing packages. Run:" >&2
  echo "  sudo apt-get update && sudo $cmd" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
$cmd

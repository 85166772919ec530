#!/usr/bin/env bash
# Builds the Debian package with CPack and inspects it: control fields, computed dependencies, the
# same files as a staged install, and lintian with no errors and no warning the README does not
# explain.
# Usage: check-deb.sh BUILD_DIR VERSION README
set -uo pipefail
build=$1 version=$2 readme=$3
for tool in cpack dpkg-deb dpkg-shlibdeps lintian; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done

out=$(mktemp -d "$build/deb.XXXXXX")
trap 'rm -rf "$out"' EXIT
cpack --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1 || { cat "$out/cpack.log"; exit 1; }
deb=$(echo "$out"/quillora_*.deb)
[ -f "$deb" ] || { echo "FAIL: no package in $out"; exit 1; }
failed=0
fail() { echo "FAIL: $*"; failed=1; }

for field in Package Version Architecture Maintainer Installed-Size Section Priority Homepage Description \
  Depends Recommends; do
  [ -n "$(dpkg-deb -f "$deb" "$field")" ] || fail "control field $field is missing"
done
[ "$(dpkg-deb -f "$deb" Version)" = "$version" ] || fail "Version is $(dpkg-deb -f "$deb" Version)"
depends=$(dpkg-deb -f "$deb" Depends)
for wanted in libqt6widgets6 libqt6svg6; do
  grep -q "$wanted" <<<"$depends" || fail "Depends lacks $wanted: $depends"
done
recommends=$(dpkg-deb -f "$deb" Recommends)
for wanted in gstreamer1.0-plugins-good xdg-desktop-portal; do
  grep -q "$wanted" <<<"$recommends" || fail "Recommends lacks $wanted: $recommends"
done

DESTDIR=$out/stage cmake --install "$build" --prefix /usr >/dev/null || exit 1
diff <(dpkg-deb -c "$deb" | awk '$1 !~ /^d/ { sub(/^\.\//, "", $6); print $6 }' | sort) \
  <(cd "$out/stage" && find . -type f | sed 's#^\./##' | sort) ||
  fail "package files differ from the staged install (< package, > staged)"

lintian --fail-on error --tag-display-limit 0 "$deb" >"$out/lintian.txt" 2>&1 || {
  cat "$out/lintian.txt"
  fail "lintian found errors"
}
# Every warning left must be explained in the README's packaging section.
packaging=$(sed -n '/^## Packaging/,/^## /p' "$readme")
for tag in $(awk '/^W: / { print $3 }' "$out/lintian.txt" | sort -u); do
  grep -q -- "$tag" <<<"$packaging" || fail "lintian warning $tag is not explained in the README"
done
cat "$out/lintian.txt"
exit $failed

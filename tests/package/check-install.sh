#!/usr/bin/env bash
# Installs the build into a staging folder with DESTDIR and checks what a desktop installation
# needs: the files in their places and nothing else, the real validators, manual pages, icon sizes,
# the command-line tool and its completion.
# Usage: check-install.sh BUILD_DIR APP_ID SHOWN_VERSION
set -uo pipefail
build=$1 id=$2 version=$3
for tool in desktop-file-validate appstreamcli man identify; do
  command -v "$tool" >/dev/null || { echo "SKIP: $tool is not installed"; exit 77; }
done
bash_completion=/usr/share/bash-completion/bash_completion
[ -f "$bash_completion" ] || { echo "SKIP: bash-completion is not installed"; exit 77; }

stage=$(mktemp -d "$build/stage.XXXXXX")
trap 'rm -rf "$stage"' EXIT
DESTDIR=$stage cmake --install "$build" --prefix /usr >/dev/null || exit 1
failed=0
fail() { echo "FAIL: $*"; failed=1; }

sizes="16 22 24 32 48 64 128 256"
expected="usr/bin/quillora usr/bin/quillora-cli
usr/share/applications/$id.desktop usr/share/metainfo/$id.metainfo.xml
usr/share/icons/hicolor/scalable/apps/$id.svg
usr/share/man/man1/quillora.1.gz usr/share/man/man1/quillora-cli.1.gz
usr/share/doc/quillora/copyright usr/share/doc/quillora/changelog.gz
usr/share/bash-completion/completions/quillora-cli
usr/lib/quillora/plugins/quillora-speech.so"
for size in $sizes; do expected+=" usr/share/icons/hicolor/${size}x$size/apps/$id.png"; done
diff <(tr ' ' '\n' <<<"$expected" | sort) <(cd "$stage" && find . -type f | sed 's#^\./##' | sort) ||
  fail "installed files differ from the list above (< missing, > unexpected)"

desktop=$stage/usr/share/applications/$id.desktop
# Hints too: each one is a way some menu shows the entry wrongly.
report=$(desktop-file-validate "$desktop" 2>&1)
[ -z "$report" ] || fail "desktop-file-validate: $report"
grep -qx "Icon=$id" "$desktop" || fail "desktop entry does not name the icon $id"
metainfo=$stage/usr/share/metainfo/$id.metainfo.xml
appstreamcli validate --no-net --strict --pedantic "$metainfo" >/dev/null ||
  fail "appstreamcli: $(appstreamcli validate --no-net --pedantic "$metainfo")"
grep -q "<id>$id</id>" "$metainfo" || fail "metainfo id is not $id"
grep -q ">$id.desktop</launchable>" "$metainfo" || fail "metainfo does not launch $id.desktop"

for page in quillora quillora-cli; do
  warnings=$(LC_ALL=C.UTF-8 MANWIDTH=80 man --warnings -E UTF-8 -l "$stage/usr/share/man/man1/$page.1.gz" 2>&1 >/dev/null)
  [ -z "$warnings" ] || fail "man $page: $warnings"
done

for size in $sizes; do
  got=$(identify -format '%m %wx%h' "$stage/usr/share/icons/hicolor/${size}x$size/apps/$id.png")
  [ "$got" = "PNG ${size}x$size" ] || fail "icon in ${size}x$size is $got"
done

# The speaker buttons' player: the installed program finds and loads it.
probe=$("$build/tests/quillora-speech-probe" "$stage/usr/bin" 2>&1) || fail "speech module not loaded: $probe"

cli=$stage/usr/bin/quillora-cli
export XDG_CONFIG_HOME=$stage/config QUILLORA_SERVICE_URL=http://127.0.0.1:9 QUILLORA_API_URL=http://127.0.0.1:9
got=$("$cli" --version)
[ "$got" = "quillora-cli $version" ] || fail "--version printed '$got'"

# What the completion offers after a word, one per line.
complete_after() {
  bash -c 'source "$1"; source "$2"; COMP_WORDS=(quillora-cli "$3" "$4"); COMP_CWORD=2
    COMP_LINE="${COMP_WORDS[*]}"; COMP_POINT=${#COMP_LINE}; _quillora_cli; printf "%s\n" "${COMPREPLY[@]}"' \
    _ "$bash_completion" "$stage/usr/share/bash-completion/completions/quillora-cli" "$@"
}
codes=$(complete_after -t '')
[ -n "$codes" ] || fail "completion offers no target languages"
# Every code offered must pass the tool's check (exit 2 is its usage error); the service is unreachable.
for code in $codes; do
  "$cli" -t "$code" "" >/dev/null 2>&1
  [ $? -ne 2 ] || fail "completion offers '$code', which quillora-cli refuses"
done
help=$("$cli" --help)
for option in $(complete_after -x --); do
  grep -q -- "$option\b" <<<"$help" || fail "completion offers $option, which --help does not list"
done
exit $failed

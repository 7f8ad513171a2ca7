#!/usr/bin/env bash
# installed.sh CMAKE BUILD PROBE STAMP: what is installed works in any folder, finds its modules and documents there,
# and refuses the modules of another version.
set -u
cmake=$1 build=$2 probe=$3 stamp=$4
export QT_QPA_PLATFORM=offscreen
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export XDG_RUNTIME_DIR=$scratch
bad=0
complain() { echo "$1"; bad=1; }
expect() { [[ $3 == $2 ]] || complain "$1: $3"; } # NAME PATTERN TEXT

DESTDIR=$scratch/root "$cmake" --install "$build" --prefix /opt/ortu >"$scratch/log" || complain "$(cat "$scratch/log")"
top=$scratch/root/opt/ortu
expect 'service' *$'\n''Exec=/opt/ortu/bin/ortu --service' "$(cat "$top/share/dbus-1/services/org.ortu.Ortu.service")"
desktop-file-validate "$top/share/applications/org.ortu.Ortu.desktop" || bad=1
! command -v appstreamcli >/dev/null \
    || appstreamcli validate --no-net "$top/share/metainfo/org.ortu.Ortu.metainfo.xml" >"$scratch/log" \
    || complain "$(cat "$scratch/log")"
for edge in 16 22 24 32 48 64 128 256; do
    expect "icon of $edge" "*PNG image data, $edge x $edge,*" "$(file "$top/share/icons/hicolor/${edge}x$edge/apps/ortu.png")"
done

mv "$top" "$scratch/elsewhere"
top=$scratch/elsewhere
expect 'version' "ortu ${stamp%-*}" "$("$top/bin/ortu" --version)"
cp "$probe" "$top/bin/probe"
expect 'modules and documents' $'pages: [567]\nrequest: Connection refused' "$("$top/bin/probe" 2>&1)"
modules=$(find "$top" -name 'ortu-*.so')
# The first character of the version becomes another.
sed -i "s/${stamp//./\\.}/~${stamp:1}/" $modules
lines=$("$top/bin/probe" 2>&1)
expect 'pages of another version' '*no documents: *ortu-pages.so is of another version. *pages: 0*' "$lines"
expect 'requests of another version' '*no requests: *ortu-web.so is of another version. *request: there is no way*' "$lines"
rm $modules
expect 'no modules' '*ortu-pages is missing*ortu-web is missing*pages: 0*' "$("$top/bin/probe" 2>&1)"
exit $bad

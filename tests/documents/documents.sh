#!/usr/bin/env bash
# documents.sh WRITER FOLDER PICTURE: the documents that were built have the pages that the program counts on, and what
# cannot be written leaves no document behind.
set -u
writer=$1 folder=$2 picture=$3
export QT_QPA_PLATFORM=offscreen
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
bad=0
complain() { echo "$1"; bad=1; }
pages() { grep -ac '^/Type /Page$' "$1"; }

welcome="$folder/Welcome to Ortu.pdf"
[[ $(pages "$welcome") == [567] ]] || complain "$welcome: $(pages "$welcome") pages"
sizes=$(grep -a '^/MediaBox' "$welcome" | sort -u)
[[ $sizes == '/MediaBox [0 0 480.000000 320.000000]' ]] || complain "$welcome: $sizes"
[ "$(pages "$folder/Ortu User Guide.pdf")" -ge 6 ] || complain "too short a guide"

# written KIND LINE…: the pages of a document of these lines, or "none".
written() {
    rm -f "$scratch/a.pdf"
    printf '%s\n' "${@:2}" >"$scratch/a.md"
    "$writer" "$1" Title "$scratch/a.pdf" "$scratch/a.md" 2>"$scratch/log" && pages "$scratch/a.pdf" && return
    [ -s "$scratch/log" ] || complain "no reason given"
    [ -e "$scratch/a.pdf" ] && echo "some" || echo none
}
expect() { # NAME WANTED KIND LINE…
    local got
    got=$(written "${@:3}")
    [ "$got" = "$2" ] || complain "$1: $got, not $2"
}
cp "$picture" "$scratch/a.png"
expect 'a slide' 1 slides '![p](a.png)' '# Title' 'Text.'
expect 'a slide without its picture' none slides '![p](b.png)' '# Title'
expect 'a slide with too much text' none slides 'free: 200' '![p](a.png)' '# Title'
expect 'a guide' 1 guide '# Title' '[contents]' '## One' 'Text.' '![p](a.png)'
expect 'a guide without its picture' none guide '## One' '![p](b.png)'
exit $bad

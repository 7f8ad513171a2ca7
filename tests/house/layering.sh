#!/usr/bin/env bash
# layering.sh SRC FOLDER ALLOWED…: every include of SRC/FOLDER must name an allowed folder of SRC, and only the
# freedesktop adapters may see the headers of a desktop.
set -u
src=$1 folder=$2
shift 2
allowed=" $* "
bad=0 seen=0
while IFS= read -r -d '' file; do
    seen=$((seen + 1))
    while IFS=: read -r line text; do
        header=${text#*\"} header=${header%%\"*}
        if [ ! -f "$src/$header" ]; then
            case $header in *.moc) continue ;; esac
            echo "$file:$line: \"$header\" is not written from src/"; bad=1
        elif [[ $allowed != *" ${header%/*} "* ]]; then
            echo "$file:$line: $folder may not include \"$header\""; bad=1
        fi
    done < <(grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*"' "$file")
    if [[ "$folder/" != platform/freedesktop/* ]]; then
        if grep -nE '^[[:space:]]*#[[:space:]]*include[[:space:]]*<(gio|glib|gobject|xcb|X11|QtDBus|QDBus)' "$file"; then
            echo "$file: a desktop's header outside platform/freedesktop"; bad=1
        fi
    fi
done < <(find "$src/$folder" -maxdepth 1 \( -name '*.cpp' -o -name '*.h' \) -print0)
[ "$seen" -gt 0 ] || { echo "$folder holds no source"; exit 1; }
exit $bad

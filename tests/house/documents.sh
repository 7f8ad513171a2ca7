#!/usr/bin/env bash
# documents.sh TOP: what the documents for developers name is there: each link's file, each path, and in the sources
# each `Name` and `Class::function`.
set -u
cd "$1" || exit 1
bad=0 checked=0
complain() { echo "$1"; bad=1; }
declare -A words
while read -r word; do words[$word]=1; done < <(grep -rhoIE '\w+(::~?\w+)*' src bench | sort -u
    find tests -name '*Test.cpp' | sed 's|.*/||; s|\.cpp||')

folders=$(printf '%s|' $(ls -d */ src/*/ | xargs -n 1 basename | grep -vx build))
path="(?:${folders%|})/[\w./-]+(?=\`)"
name='[A-Z]+[a-z]\w*(?:::~?\w+)*(?=(?:\(\))?`)'
for document in README.md CONTRIBUTING.md docs/*.md; do
    while read -r link; do
        checked=$((checked + 1))
        [ -e "$(dirname "$document")/${link%%#*}" ] || complain "$document: no file $link"
    done < <(grep -oP '\]\(\K(?!https?:)[^) ]+' "$document")
    while read -r named; do
        checked=$((checked + 1))
        class=${named%%::*} function=${named##*::}
        if [[ $named == */* ]]; then
            compgen -G "$named*" >/dev/null || compgen -G "src/$named*" >/dev/null
        else
            [ -n "${words[$named]:-}" ] || { [[ $named == *::* ]] && grep -rqw --include="$class.h" -- "$function" src; }
        fi || complain "$document: no $named"
    done < <(grep -oP "\`\K(?:$path|$name)" "$document")
done
[ $checked -gt 100 ] || complain "only $checked names found"
exit $bad

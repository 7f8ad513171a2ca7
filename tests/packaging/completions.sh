#!/usr/bin/env bash
# completions.sh ORTU TOP: the man page and the completions have every option of --help and no other, and what the one
# for bash offers where a value is due.
set -u
ortu=$1 packaging=$2/packaging
PATH=$(dirname "$ortu"):$PATH
bad=0
complain() { echo "$1"; bad=1; }
options() { tr -d '\\' | grep -oE '(^|[^[:alnum:]-])--[a-z][a-z-]*' | grep -oE -- '--[a-z-]+' | sort -u; }
same() { # NAME WANTED GOT
    [ "$2" = "$3" ] || complain "$1:
$(diff <(echo "$2") <(echo "$3"))"
}
. "$packaging/completions/ortu.bash"
offered() { # WORD…, the last one still being typed
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _ortu
    [ ${#COMPREPLY[@]} -eq 0 ] || printf '%s\n' "${COMPREPLY[@]}" | sort
}
every_option() {
    local option
    offered ortu --
    for option in $(offered ortu --); do
        offered ortu "$option" --
        offered ortu "$option" a --
    done
}

help=$("$ortu" --help)
options=$(options <<<"$help")
same 'man page' "$options" "$(sed 's/\\f[BIR]//g' "$packaging/ortu.1" | options)"
same 'zsh' "$options" "$(sed 's/--(\([a-z|]*\))//' "$packaging/completions/_ortu" | options)"
same 'bash' "$options" "$(every_option | sort -u)"
! command -v zsh >/dev/null || zsh -n "$packaging/completions/_ortu" || complain 'zsh cannot read its completion'

groups=$(grep -oE '\b[0-9] [a-z][A-Za-z0-9]+' <<<"$help" | cut -d' ' -f2 | sort)
keys=$("$ortu" --defaults | sed 's/ = .*//' | sort)
for option in --list --layout --group; do
    same "bash: $option" "$groups" "$(offered ortu $([ $option != --group ] || echo --screenshot a.png) $option '')"
done
same 'zsh: groups' "$groups" "$(grep -ohE '\b[a-z]+Apps(1D)?\b' "$packaging/completions/_ortu" | sort -u)"
same 'bash: --defaults' "$keys" "$(offered ortu --defaults '')"
same 'bash: --reset' "$keys" "$(offered ortu --defaults --reset '')"
same 'bash: --set' "$(sed 's/$/=/' <<<"$keys")" "$(offered ortu --set '')"
same 'bash: --set KEY=' $'false\ntrue' "$(offered ortu --set tabletMode =)"
same 'bash: --set KEY=t' true "$(offered ortu --set tabletMode = t)"
same 'bash: --defaults KEY t' true "$(offered ortu --defaults tabletMode t)"
cd "$packaging" || exit 1
same 'bash: files' ortu.svg "$(offered ortu --colors --json ortu.s)"
same 'bash: a file' ortu.svg "$(offered ortu --screenshot ortu.s)"
exit $bad

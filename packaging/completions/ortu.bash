# Completion of ortu for bash.

_ortu_keys()
{
    ortu --defaults 2>/dev/null | sed -n 's/^\([^ ]*\) = .*/\1/p'
}

# Values of the preference $1, where there are but a few.
_ortu_values()
{
    case $(ortu --defaults "$1" 2>/dev/null) in
        *' = true' | *' = false') echo true false ;;
    esac
}

# Offers the words $1 that begin with $2.
_ortu_offer()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_ortu_offer_files()
{
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_ortu()
{
    local groups='runningApps includedApps includedApps1D excludedApps excludedApps1D allApps allApps1D
        missingApps userApps userApps1D'
    local -A goes_with=(
        [--toggle]='' [--show]='' [--preferences]='' [--hide]='' [--rescan]='' [--quit]='' [--help]='' [--version]=''
        [--service]='' [--export]='' [--import]=''
        [--status]='--json'
        [--list]='--fresh --json'
        [--colors]='--json --sheet --size --count --delta-e --gray-threshold --wrap-hue --min-saturation
            --min-luminosity --grays-by-secondary-color'
        [--layout]='--bounds --at --rows --columns --json'
        [--defaults]='--reset --json'
        [--screenshot]='--group --bounds --scale'
    )
    local -a words=("${COMP_WORDS[@]:0:COMP_CWORD}")
    local current=${COMP_WORDS[COMP_CWORD]} verb='' word
    for word in "${words[@]:1}"; do
        # -v would expand what is typed once more, and run what stands in $().
        [[ -n $word && -n ${goes_with[$word]+known} ]] && verb=$word
    done
    # KEY=VALUE comes in three words.
    if [[ $current == = ]]; then
        words+=('=')
        current=''
    fi
    COMPREPLY=()
    local last=${words[-1]} before='' key=''
    [[ ${#words[@]} -lt 2 ]] || before=${words[-2]}
    if [[ $last == = && ${#words[@]} -ge 3 && ${words[-3]} == --set ]]; then
        key=$before
    elif [[ $before == --defaults && $last != -* ]]; then
        key=$last
    fi
    if [[ -n $key && $current != -* ]]; then
        _ortu_offer "$(_ortu_values "$key")" "$current"
        return
    fi
    case $last in
        --set)
            compopt -o nospace 2>/dev/null
            mapfile -t COMPREPLY < <(compgen -S = -W "$(_ortu_keys)" -- "$current")
            return ;;
        --reset) _ortu_offer "$(_ortu_keys)" "$current"; return ;;
        --layout | --group) _ortu_offer "$groups" "$current"; return ;;
        --screenshot | --sheet | --export | --import) _ortu_offer_files "$current"; return ;;
        --bounds | --at | --rows | --columns | --scale | --size | --count | --delta-e | --gray-threshold | --wrap-hue \
            | --min-saturation | --min-luminosity) return ;;
    esac
    local options="${goes_with[${verb:---help}]} --set"
    [[ -n $verb ]] || options="${!goes_with[*]} --set"
    if [[ $current == -* ]]; then
        _ortu_offer "$options" "$current"
    elif [[ $last == --list ]]; then
        _ortu_offer "$groups" "$current"
    elif [[ $last == --defaults ]]; then
        _ortu_offer "$(_ortu_keys)" "$current"
    elif [[ -z $verb || $verb == --colors ]]; then
        _ortu_offer_files "$current"
    else
        _ortu_offer "$options" "$current"
    fi
}

complete -F _ortu ortu

#!/usr/bin/env bash
# house.sh TOP: the few rules that no compiler knows.
set -u
cd "$1" || exit 1
bad=0
complain() { echo "$1"; bad=1; }
files() { find src tests bench -name '*.cpp' -o -name '*.h' | sort; }
[ "$(files | wc -l)" -gt 0 ] || complain "no sources found below $1"

while read -r count file; do
    complain "$file: $count lines (500 at most)"
done < <(files | grep '^src/' | xargs wc -l | awk '$2 != "total" && $1 > 500')

# A body opens with a brace in the first column and closes with one there.
while read -r text; do complain "$text"; done < <(files | grep '^src/.*cpp$' | xargs awk '
    FNR == 1 { open = 0 }
    /^{$/ { open = (previous ~ /^(class|struct|namespace|enum|union) /) ? 0 : FNR }
    /^}/ { if (open && FNR - open - 1 > 60) print FILENAME ":" open ": a function of " FNR - open - 1 " lines"; open = 0 }
    { previous = $0 }')

match() { # PATTERN WHY FILES…
    local pattern=$1 why=$2 hits
    shift 2
    hits=$(files | grep -E "$1" | grep -vE "${2:-^$}" | xargs grep -nE "$pattern" 2>/dev/null)
    [ -z "$hits" ] || complain "$why
$hits"
}
match '\b(SIGNAL|SLOT)\(' 'connect by pointer' '^(src|tests)/'
match '\b(throw|try|catch)\b[^a-z"]*[;({]' 'no exception code' '^src/'
match '^[[:space:]]*#[[:space:]]*if' '#if only in src/platform' '^src/' '^src/platform/'
match '"platform/freedesktop/' 'the build alone chooses a platform' '^src/' '^src/platform/freedesktop/'
match '\b(qWait|qSleep|sleep_for|usleep|msleep|nanosleep)\(' 'no fixed waits in tests' '^tests/'
exit $bad

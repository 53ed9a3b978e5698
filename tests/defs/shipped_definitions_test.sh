#!/bin/bash
# Proves velvane-defs, started as its users start it, on the definitions that we ship: they are clean, the page of what
# they cover is theirs, and never.txt refuses what it is for and nothing else. usage: shipped_definitions_test.sh
# VELVANE_DEFS.exe CLEANING.db
set -euo pipefail

cd -- "${BASH_SOURCE[0]%/*}/../.."
program=$1 database=$2
export VELVANE_PREFIX=${VELVANE_PREFIX:-shipped-definitions-$$} VELVANE_DEFS=$1
log=$(mktemp) folder=$(mktemp -d)
trap 'scripts/contained-wine --remove "$VELVANE_PREFIX" || true; rm -rf -- "$log" "$folder"' EXIT

failed=0
# expect NAME STATUS COMMAND...: runs it and compares its exit status.
expect() {
    local name=$1 expected=$2 status=0
    shift 2
    "$@" >"$log" 2>&1 </dev/null || status=$?
    if ((status == expected)); then
        printf 'PASS %s\n' "$name"
    else
        printf 'FAIL %s: exit status %d\n' "$name" "$status"
        sed 's/^/    /' "$log"
        failed=1
    fi
}
defs() { scripts/contained-wine "$program" "$@"; }
# With the list that we ship, on one source of the test's own.
check_own() {
    cp -- definitions/never.txt "$folder/"
    cp -- "tests/defs/never/$1" "$folder/a.xml"
    DEFINITIONS=$folder scripts/definitions.sh check
}
# Whether each item of targets.xml, and nothing else, is told to be no target.
all_refused() { diff <(grep -n '<Item' tests/defs/never/targets.xml | cut -d: -f1) <(told_lines); }
told_lines() { sed -nE 's#^.*/a\.xml:([0-9]+):[0-9]+: error: never a target: .*#\1#p' "$folder/log"; }

expect "what we ship is clean" 0 scripts/definitions.sh check
expect "the page of what is covered is theirs" 0 scripts/definitions.sh coverage --check
expect "one category is explained" 0 scripts/definitions.sh explain Browsers
expect "a name that is not there is a wrong usage" 1 scripts/definitions.sh explain Nonsense
expect "what must never be a target is refused" 3 check_own targets.xml
cp -- "$log" "$folder/log"
expect "each of it" 0 all_refused
expect "what comes close passes" 0 check_own harmless.xml
expect "no command is a wrong usage" 1 defs
expect "a missing source is told" 2 defs check 'nothing.xml' --never 'definitions\never.txt'
expect "so is a missing list" 2 defs check 'definitions\a.xml' --never 'nothing.txt'
expect "so is a missing database" 2 defs explain 'nothing.db'
out=$(scripts/contained-wine --out "$VELVANE_PREFIX")
cp -- "$database" "$out/definitions/build.db"
expect "the build's database is unpacked" 0 defs unpack 'definitions\build.db' 'definitions\build.txt'
expect "and is clean" 0 defs check 'definitions\build.txt'
exit $failed

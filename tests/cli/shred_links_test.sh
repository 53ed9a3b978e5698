#!/bin/bash
# Proves that velvane-cli neither shreds what a link leads to nor is led around its guard by one. Links are made from
# outside: a Windows program cannot make one here. usage: shred_links_test.sh VELVANE_CLI.exe
set -euo pipefail

wrapper=$(cd -P -- "${BASH_SOURCE[0]%/*}/../../scripts" && pwd)/contained-wine
program=$1
export VELVANE_PREFIX=shred-links-$$
log=$(mktemp)
cleanup() {
    "$wrapper" --remove "$VELVANE_PREFIX" || true
    rm -f -- "$log"
}
trap cleanup EXIT

failed=0
check() {
    local name=$1
    shift
    if "$@"; then
        printf 'PASS %s\n' "$name"
    else
        printf 'FAIL %s\n' "$name"
        sed 's/^/    /' "$log"
        failed=1
    fi
}
# shred STATUS ARGUMENT...: runs it and compares its exit status.
shred() {
    local expected=$1 status=0
    shift
    "$wrapper" "$program" shred --yes "$@" >"$log" 2>&1 </dev/null || status=$?
    ((status == expected))
}

"$wrapper" --new "$VELVANE_PREFIX"
drive=$("$wrapper" --path "$VELVANE_PREFIX")/drive_c
owner=$(stat -c %u:%g -- "$drive")
canary=$drive/kept/deep/file
mkdir -p -- "${canary%/*}" "$drive/junk/sub"
printf 'alive' >"$canary"
printf 'rubbish' >"$drive/junk/sub/file"
ln -s -- ../../kept "$drive/junk/sub/link"
ln -s -- windows "$drive/shortcut"
ln -s -- kept "$drive/harmless"
printf 'alive' >"$drive/windows/canary.txt"
chown -hR "$owner" -- "$drive/kept" "$drive/junk" "$drive/shortcut" "$drive/harmless" "$drive/windows/canary.txt"
alive() { [[ -f $1 && $(<"$1") == alive ]]; }

# Under Wine the system opens what a link leads to, so the link itself has to stay, and its folder with it.
check "a folder with a link in it is shredded as far as it goes" shred 3 'C:\junk'
check "what is beside the link is gone" test ! -e "$drive/junk/sub/file"
check "the link is told" grep -q 'C:.junk.sub.link' "$log"
check "what the link leads to lives" alive "$canary"
check "a link alone is not followed" shred 3 'C:\junk\sub\link'
check "what it leads to lives" alive "$canary"
check "a link to a protected folder is no way to its content" shred 1 'C:\shortcut\canary.txt'
check "that content lives" alive "$drive/windows/canary.txt"
# Runs before the restart, like those above, do not spoil what it is to do.
"$wrapper" "$program" scan --quiet
# The folder that could not go still has the link in it, so the restart leaves it: moved, the next run would go
# over all that is in it.
"$wrapper" --reboot "$VELVANE_PREFIX"
check "a restart leaves the folder" test -L "$drive/junk/sub/link"
check "so does the next run" "$wrapper" "$program" clean --yes --quiet
check "what the link leads to lives then, too" alive "$canary"
check "what is asked for through a harmless link is shredded" shred 0 'C:\harmless\deep\file'
check "and that is really the same file" test ! -e "$canary"
exit $failed

#!/bin/bash
# Shows what Velvane does: makes the machine ready, builds, makes a throw-away Windows environment with a profile
# that somebody has lived in, and has its traces found and removed. Ends with a look at what must not be harmed; the
# exit status is 0 only if all of that is whole and every trace went that should have.
# usage: run.sh            everything
#        run.sh --built    without making ready and building
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"
source "${BASH_SOURCE[0]%/*}/demonstration_profile.sh"
cd -- "$VELVANE_ROOT"

readonly BIN=build/x64/bin
export VELVANE_PREFIX=demonstration-$$

title() { printf '\n\033[1m== %s\033[0m\n\n' "$*" | if [[ -t 1 ]]; then cat; else sed 's/\x1b\[[0-9;]*m//g'; fi; }
indent() { tr -d '\r' | sed 's/^/    /'; }
windows() { scripts/contained-wine "$@"; }

# Runs velvane-cli, shows how a user would have typed it and what it said, and keeps its exit status in STATUS.
velvane() {
    printf '  > velvane-cli %s\n\n' "$*"
    STATUS=0
    windows $BIN/velvane-cli.exe "$@" </dev/null 2>&1 | indent || STATUS=${PIPESTATUS[0]}
    local meaning
    case $STATUS in
        0) meaning="done" ;;
        3) meaning="done, but something stayed" ;;
        4) meaning="done, but something waits for the restart" ;;
        *) meaning="that should not be" ;;
    esac
    printf '\n  (exit code %d: %s)\n' "$STATUS" "$meaning"
}

if [[ ${1:-} != --built ]]; then
    scripts/setup.sh
    note "building (the first time takes a minute or two; see build/demonstration.log)"
    mkdir -p build
    { cmake --preset x64 && cmake --build --preset x64 --target velvane velvane-cli demonstration demonstration-session; } \
        >build/demonstration.log 2>&1 || { tail -n 30 build/demonstration.log >&2; die "the build failed"; }
fi

finish() {
    scripts/contained-wine --remove "$VELVANE_PREFIX"
    rm -rf -- "$WORK"
}
WORK=$(mktemp -d)
trap finish EXIT
trap 'exit 130' INT TERM

# --- 1 ----------------------------------------------------------------------------------------------------------

title "1. A throw-away Windows with a profile that somebody has lived in"
scripts/contained-wine --new "$VELVANE_PREFIX"
PREFIX=$(scripts/contained-wine --path "$VELVANE_PREFIX")
make_profile "$PREFIX/drive_c/users/velvane"
windows $BIN/demonstration.exe make || die "the lists of the registry could not be made"
hold_file "$HELD_WINDOWS_PATH"
remember before
describe_profile | indent

# --- 2 to 6 -------------------------------------------------------------------------------------------------------

title "2. What is there to be found? Nothing is changed yet."
velvane scan

title "3. Remove it"
velvane clean --yes

title "4. What is left?"
velvane scan
printf '  (The index of the history is empty; Wine makes it anew whenever a program asks for the URL cache.)\n'
remember after

title "5. What is off stays until it is named"
velvane clean --yes --only "$NAMED"

title "6. Windows restarts, which ends the program that held a file open. What is left now?"
scripts/contained-wine --reboot "$VELVANE_PREFIX"
velvane scan
remember restarted

# --- 7 ----------------------------------------------------------------------------------------------------------

title "7. What went and what stayed, and why"
print_fates | indent

title "8. Is everything that is no trace still as it was?"
check_profile | indent

# --- 9 ----------------------------------------------------------------------------------------------------------

title "9. The same in the program's window, in another such Windows"
scripts/screens.sh out/screens | indent

#!/bin/bash
# Shows velvane.exe at work: makes a throw-away Windows with a profile that somebody has lived in, opens the program,
# works one whole session in its window (scan, keep one result, clean, read the report, decline the restart, look at the
# other pages) and saves a picture of each state. Ends with a look at what must not be harmed.
# The window is on the display that DISPLAY names if that is one of this machine, and on a virtual one otherwise.
# usage: screens.sh [FOLDER]     the pictures go to FOLDER, out/screens unless told
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"
source "${BASH_SOURCE[0]%/*}/demonstration_profile.sh"
cd -- "$VELVANE_ROOT"

readonly BIN=build/x64/bin
readonly PICTURES=${1:-out/screens}
export VELVANE_PREFIX=screens-$$

windows() { scripts/contained-wine "$@"; }

finish() {
    scripts/contained-wine --remove "$VELVANE_PREFIX"
    if [[ -n ${DISPLAY_PROCESS:-} ]]; then kill "$DISPLAY_PROCESS" 2>/dev/null || true; fi
    rm -rf -- "$WORK"
}
WORK=$(mktemp -d)
trap finish EXIT
trap 'exit 130' INT TERM

# A display of our own, whose number it tells itself.
start_virtual_display() {
    local number
    mkfifo -- "$WORK/number"
    Xvfb -displayfd 3 -screen 0 1280x900x24 -ac -nolisten tcp 3>"$WORK/number" >"$WORK/display" 2>&1 &
    DISPLAY_PROCESS=$!
    read -r -t 20 number <"$WORK/number" || { cat -- "$WORK/display" >&2; die "no virtual display"; }
    export VELVANE_DISPLAY=:$number
}

# Hands the user's display to the unprivileged user of the prefix, in whose home everything of X looks for the right to
# it. False if there is none, if it is another machine's, or if it does not let that user in.
use_real_display() {
    local home=${PREFIX%/prefix}/home as_runner=()
    [[ ${DISPLAY:-} =~ ^:([0-9]+)(\.[0-9]+)?$ && -S /tmp/.X11-unix/X${BASH_REMATCH[1]} ]] || return
    if ((EUID == 0)); then as_runner=(setpriv --reuid=$RUNNER_UID --regid=$RUNNER_UID --clear-groups); fi
    xauth nextract - "$DISPLAY" 2>/dev/null |
        "${as_runner[@]}" env -i PATH=/usr/bin:/bin HOME="$home" xauth nmerge - 2>/dev/null || true
    "${as_runner[@]}" env -i PATH=/usr/bin:/bin HOME="$home" DISPLAY="$DISPLAY" xdpyinfo >/dev/null 2>&1 || return
    export VELVANE_DISPLAY=$DISPLAY
}

scripts/contained-wine --new "$VELVANE_PREFIX"
PREFIX=$(scripts/contained-wine --path "$VELVANE_PREFIX")
windows reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null
# A window manager would put a frame around the window's own; without one nobody else draws the frames.
windows reg add 'HKCU\Software\Wine\X11 Driver' /v Decorated /d N /f >/dev/null
scripts/contained-wine --stop "$VELVANE_PREFIX"
use_real_display || start_virtual_display

make_profile "$PREFIX/drive_c/users/velvane"
windows $BIN/demonstration.exe make || die "the lists of the registry could not be made"
hold_file "$HELD_WINDOWS_PATH"

mkdir -p -- "$PICTURES"
VELVANE_OUT=$PICTURES windows $BIN/demonstration-session.exe | tr -d '\r' || die "the session went wrong"
for picture in "$PICTURES"/*.png; do printf '%s\n' "$picture"; done

# What stays has its own name as its content.
harmed=0
for thing in "${THINGS[@]}"; do
    IFS='|' read -r name path fate _ <<<"$thing"
    if [[ $fate == stays && $path == Documents/* ]] &&
        ! grep -qxF -- "$name" "$PREFIX/drive_c/users/velvane/$path"; then
        note "screens: harmed: $path"
        harmed=1
    fi
done
exit $harmed

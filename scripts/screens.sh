#!/bin/bash
# Shows velvane.exe at work: makes a throw-away Windows with a profile that somebody has lived in, opens the program on a
# virtual display, works one whole session in its window (scan, keep one result, clean, read the report, decline the
# restart, look at the other pages) and saves a picture of each state. Ends with a look at what must not be harmed.
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
mkfifo -- "$WORK/number"
Xvfb -displayfd 3 -screen 0 1280x900x24 -ac -nolisten tcp 3>"$WORK/number" >"$WORK/display" 2>&1 &
DISPLAY_PROCESS=$!
read -r -t 20 number <"$WORK/number" || { cat -- "$WORK/display" >&2; die "no virtual display"; }

scripts/contained-wine --new "$VELVANE_PREFIX"
windows reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d x11 /f >/dev/null
# Without a window manager nobody else draws the frames.
windows reg add 'HKCU\Software\Wine\X11 Driver' /v Decorated /d N /f >/dev/null
scripts/contained-wine --stop "$VELVANE_PREFIX"
export VELVANE_DISPLAY=:$number

PREFIX=$(scripts/contained-wine --path "$VELVANE_PREFIX")
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

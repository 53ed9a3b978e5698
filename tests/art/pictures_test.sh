#!/bin/bash
# Holds the pictures against what the screens count on: every file that is asked for is there, in the size that the
# layout has room for, transparent but for the background, and the frames of an animation move.
# usage: pictures_test.sh IMAGES_FOLDER SOURCE_FOLDER
set -uo pipefail
images=$1 sources=$2 failed=0
fail() { echo "$*"; failed=1; }

# The header of a PNG as "WIDTH HEIGHT KIND"; the kind of a picture with transparency is 6, that of one without is 2.
header() { od -An -j16 -N10 -tu1 "$1" | awk '{print $3 * 256 + $4, $7 * 256 + $8, $10}'; }

expect() {
    local size=$1 name
    shift
    for name in "$@"; do
        if [[ ! -f $images/$name.png ]]; then
            fail "$name.png is missing"
        elif [[ $(header "$images/$name.png") != "$size" ]]; then
            fail "$name.png is $(header "$images/$name.png"), not $size"
        fi
    done
}

expect "720 720 2" bg
expect "128 40 6" AppTitle                    # in the caption of 55
expect "32 32 6" Logo
expect "32 24 6" close close-b max-g min-g # from 12 to 36, where the help link begins
expect "80 80 6" nav-{scan,settings,schedule,shred,about}-lg
expect "360 112 6" Intro                      # between the two lines of the intro
expect "40 40 6" arrow
expect "120 30 6" {search,erase}00{01..30} # 84 by 21 on the screen, in the lowest row of the page

for animation in search erase; do
    different=$(cksum "$images/$animation"00*.png | awk '!seen[$1]++' | wc -l)
    # The glass goes back the way it came, so that its frames 2 to 15 come twice.
    ((different >= 16)) || fail "$animation has only $different different frames"
done

# What the program asks for: a format for frames stands for the first of them, as every one was looked for above.
while read -r name; do
    name=${name//%.4d/0001}
    [[ -f $images/$name ]] || fail "the program asks for $name, which does not exist"
done < <(grep -rhoiE 'images(/|\\)+[a-z0-9%.-]+\.png' "$sources" | sed -E 's/.*[/\\]//' | sort -u)

exit $failed

#!/bin/bash
# Builds the benchmarks, makes what they work on in a prefix of their own, runs them contained and prints the table
# of ratios. A whole run takes about half an hour, nearly all of it the large folder trees; --small leaves those out.
# usage: bench.sh [--small] [--rounds N] [overwrite|definitions|lookups|memory|registry|clean|scan|start|tree|screen]...
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"
cd -- "$VELVANE_ROOT"

readonly NAME=bench

# The last two are matters of another program.
options=() rounds=() engine=() ui=()
while (($#)); do
    case $1 in
        --rounds) rounds=(--rounds "${2:?a number of rounds}") && shift ;;
        tree | screen) ui+=("$1") ;;
        -*) options+=("$1") ;;
        *) engine+=("$1") ;;
    esac
    shift
done

scripts/setup.sh
{ cmake --preset x64 && cmake --build --preset x64 --target velvane-bench velvane-ui-bench; } >/dev/null

as_runner=()
if ((EUID == 0)); then
    as_runner=(setpriv --reuid=$RUNNER_UID --regid=$RUNNER_UID --clear-groups --no-new-privs)
fi

# 200,000 files in folders of 100, those in folders of 100, those in folders of 10; two of these. Half of the names
# are short and half long. Beside them 20,000 files in folders of 100, of which five are a picture that is given as
# the standard input. Made from outside: a Windows program takes minutes for it.
make_tree() {
    "${as_runner[@]}" bash -c 'set -euo pipefail
        umask 022
        mkdir -- "$1"
        cd -- "$1"
        mkdir -p scan/{0..1}/{0..9}/{0..99}
        printf "%s\0" scan/{0..1}/{0..9}/{0..99}/{f_{000000..000049},cached-document-{000000..000049}-a7f3}.tmp |
            xargs -0 touch --
        mkdir -p pictures/{0..1}/{0..99}
        printf "%s\0" pictures/{0..1}/{0..99}/f_{000000..000094}.tmp | xargs -0 touch --
        cat >picture.png
        for half in 0 1; do tee pictures/$half/{0..99}/picture-{0..4}.png <picture.png >/dev/null; done
        rm picture.png' bench "$1"
}

scripts/contained-wine --new $NAME
trap 'scripts/contained-wine --remove $NAME' EXIT
make_tree "$(scripts/contained-wine --path $NAME)/drive_c/velvane-bench" <build/x64/bin/images/bg.png

export VELVANE_PREFIX=$NAME
status=0
if ((${#engine[@]} || !${#ui[@]})); then
    scripts/contained-wine build/x64/bin/velvane-bench.exe "${options[@]}" "${rounds[@]}" "${engine[@]}" || status=1
fi
if ((${#ui[@]} || !${#engine[@]})); then
    scripts/contained-wine build/x64/bin/velvane-ui-bench.exe "${rounds[@]}" "${ui[@]}" || status=1
fi
exit $status

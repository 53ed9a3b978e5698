#!/bin/bash
# What the authors of definitions do with those in definitions/, by velvane-defs in a throw-away Windows environment.
# usage: definitions.sh check              tells what is wrong with them
#        definitions.sh explain [NAME...]  what each item would look at on a bare Windows; NAME is
#                                          CATEGORY[/APPLICATION[/ENTITY]]
#        definitions.sh coverage           writes docs/coverage.md
#        definitions.sh coverage --check   fails when docs/coverage.md is not what would be written
# Runs build/x64/bin/velvane-defs.exe, or VELVANE_DEFS=PROGRAM; with DEFINITIONS=FOLDER on the sources, pictures and never.txt of that folder.
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"
cd -- "$VELVANE_ROOT"

readonly PROGRAM=${VELVANE_DEFS:-build/x64/bin/velvane-defs.exe} FOLDER=${DEFINITIONS:-definitions} PAGE=docs/coverage.md
[[ -f $PROGRAM ]] || die "$PROGRAM is missing: cmake --build --preset x64 --target velvane-defs"
export VELVANE_PREFIX=${VELVANE_PREFIX:-definitions}

# Puts the sources where the program sees them, as O:\definitions.
hand_in() {
    [[ -d $(scripts/contained-wine --path "$VELVANE_PREFIX") ]] || scripts/contained-wine --new "$VELVANE_PREFIX"
    OUT=$(scripts/contained-wine --out "$VELVANE_PREFIX")
    rm -rf -- "$OUT/definitions"
    cp -rL -- "$FOLDER" "$OUT/definitions"
    # The build draws them in the same sizes.
    local drawing size
    for drawing in "$OUT"/definitions/pictures/{,applications/}*.svg; do
        [[ -f $drawing ]] || continue
        size=64
        [[ $drawing != */applications/* ]] || size=32
        rsvg-convert --width $size --height $size --output "${drawing%.svg}.png" "$drawing"
    done
    if ((EUID == 0)); then chown -R "$RUNNER_UID:$RUNNER_UID" -- "$OUT/definitions"; fi
}
# Its messages name the files as the host does.
defs() {
    local status=0
    scripts/contained-wine "$PROGRAM" "$@" 2>&1 </dev/null | tr -d '\r' |
        sed -E "s#^(velvane-defs: )?definitions\\\\([^:]*)#\1$FOLDER/\2#; s#definitions\\\\([^ :]*:[0-9])#$FOLDER/\1#g" ||
        status=${PIPESTATUS[0]}
    return $status
}
pack() { defs pack 'definitions\*.xml' 'definitions\all.db'; }

case ${1:-} in
    check)
        hand_in
        defs check 'definitions\*.xml'
        ;;
    explain)
        hand_in
        pack
        names=()
        for name in "${@:2}"; do names+=(--only "$name"); done
        defs explain 'definitions\all.db' "${names[@]}"
        ;;
    coverage)
        hand_in
        pack
        defs coverage 'definitions\all.db' 'definitions\coverage.md'
        if [[ ${2:-} == --check ]]; then
            diff -u -- "$PAGE" "$OUT/definitions/coverage.md" ||
                die "$PAGE is not what the definitions say: run scripts/definitions.sh coverage"
        else
            cp -- "$OUT/definitions/coverage.md" "$PAGE"
        fi
        ;;
    *)
        sed -n '/^# usage:/,/^# Runs/{s/^# \{0,1\}//;p}' "${BASH_SOURCE[0]}" >&2
        exit 1
        ;;
esac

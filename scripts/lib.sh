# What the scripts share. Sourced, never run. Sourcing it costs a few milliseconds: contained-wine is started
# for every single test program.

VELVANE_ROOT=$(cd -P -- "${BASH_SOURCE[0]%/*}/.." && pwd -P)
# The user as whom Windows programs run when a script is started by root: nobody, who owns nothing.
readonly RUNNER_UID=65534

note() { printf '%s\n' "$*" >&2; }

# One line why, and the exit status 125, which no program of ours uses for itself.
die() {
    note "${0##*/}: $*"
    exit 125
}

# Sets SCRATCH, the only folder that a Windows program may write to, and makes it when it is missing. It is never
# inside the repository, which may lie where an unprivileged user cannot go, and two clones never share one.
# Refuses a folder that somebody else could have prepared.
open_scratch() {
    if [[ -n ${VELVANE_SCRATCH:-} ]]; then
        SCRATCH=$VELVANE_SCRATCH
    else
        local sum
        sum=$(cksum <<<"$VELVANE_ROOT")
        SCRATCH=/tmp/velvane-$EUID-${sum%% *}
    fi
    [[ $SCRATCH == /*/* ]] || die "the scratch folder needs an absolute path at least two folders deep: $SCRATCH"
    SCRATCH=$(realpath -m -- "$SCRATCH")
    [[ $SCRATCH/ != "$VELVANE_ROOT"/* ]] || die "the scratch folder must not lie inside the repository: $SCRATCH"
    if [[ ! -e $SCRATCH/.velvane-scratch ]]; then
        if [[ -e $SCRATCH ]] && [[ -n $(ls -A -- "$SCRATCH") ]]; then
            die "$SCRATCH is neither empty nor a scratch folder of this project"
        fi
        (umask 022 && mkdir -p -- "$SCRATCH/lock" "$SCRATCH/runs" "$SCRATCH/bin")
        chmod 755 -- "$SCRATCH"
        : >"$SCRATCH/.velvane-scratch"
    fi
    [[ -O $SCRATCH ]] || die "$SCRATCH belongs to another user"
}

# What the tests share that restart a prefix: sourced, with the test program as $1. It makes the prefix
# $VELVANE_PREFIX afresh, and removes it in the end.

readonly PROGRAM=$1
readonly CONTAINED=$(cd -P -- "${BASH_SOURCE[0]%/*}/../../scripts" && pwd)/contained-wine
export VELVANE_PREFIX=${VELVANE_PREFIX:-${0##*/}}
export GTEST_COLOR=no

fail() {
    printf '%s: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# A stage must have run: a filter that names none would pass. Its output goes to a file, since what Wine leaves
# running in the prefix would hold a pipe open.
stage() {
    "$CONTAINED" "$PROGRAM" --gtest_filter="$1" >"$OUTPUT" 2>&1 || {
        cat -- "$OUTPUT"
        fail "the stage $1 failed"
    }
    grep -qF '[  PASSED  ] 1 test.' -- "$OUTPUT" || fail "the stage $1 did not run"
    printf 'passed: %s\n' "$1"
}

restart() { "$CONTAINED" --reboot "$VELVANE_PREFIX"; }

OUTPUT=$(mktemp)
readonly OUTPUT
"$CONTAINED" --new "$VELVANE_PREFIX"
trap '"$CONTAINED" --remove "$VELVANE_PREFIX"; rm -f -- "$OUTPUT"' EXIT
PREFIX=$("$CONTAINED" --path "$VELVANE_PREFIX")
readonly PREFIX STAGES=$PREFIX/drive_c/VelvaneStages

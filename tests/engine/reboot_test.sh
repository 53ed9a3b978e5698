#!/bin/bash
# A real restart: files that are locked during a run wait in the prefix until it restarts, and the next start of
# the program finishes them. Then what the engine does with links to folders, which only the host can make here.
# Each stage is a start of the program $1; what it leaves is looked at from outside as well.
set -euo pipefail

readonly PROGRAM=$1
readonly CONTAINED=$(cd -P -- "${BASH_SOURCE[0]%/*}/../../scripts" && pwd)/contained-wine
export VELVANE_PREFIX=${VELVANE_PREFIX:-reboot_test}
export GTEST_COLOR=no

fail() {
    printf 'reboot_test: %s\n' "$*" >&2
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

OUTPUT=$(mktemp)
readonly OUTPUT
"$CONTAINED" --new "$VELVANE_PREFIX"
trap '"$CONTAINED" --remove "$VELVANE_PREFIX"; rm -f -- "$OUTPUT"' EXIT
PREFIX=$("$CONTAINED" --path "$VELVANE_PREFIX")
readonly PREFIX STAGES=$PREFIX/drive_c/VelvaneStages

stage RestartStage.BeforeLockedFilesAreScheduled
[[ -e $STAGES/moved.txt && -e $STAGES/deleted.txt ]] || fail "a locked file went before the restart"
"$CONTAINED" --reboot "$VELVANE_PREFIX"
[[ ! -e $STAGES/moved.txt && ! -e $STAGES/deleted.txt ]] || fail "the restart left a file"
REBOOT=$(find "$PREFIX/drive_c/users" -type d -name DeleteOnReboot)
[[ -n $REBOOT && $(ls -A -- "$REBOOT") == moved.txt_????? ]] || fail "the moved file is not in its folder"
stage RestartStage.AfterOneFileIsMovedAndTheOtherGone
[[ ! -e $REBOOT ]] || fail "the completion left its folder"

stage LinkStage.BeforeTheFoldersAreMade
readonly OUTSIDE=$STAGES/outside
ln -s ../../outside "$STAGES/scanned/links/full"
ln -s ../../bare "$STAGES/scanned/links/bare"
ln -s "$OUTSIDE" "$REBOOT"
before=$(find "$OUTSIDE" "$STAGES/bare" -printf '%p %y %m %u %s\n' | sort)
stage LinkStage.AShredLeavesWhatALinkLeadsTo
stage LinkStage.ACleanLeavesWhatALinkLeadsTo
stage LinkStage.ACompletionLeavesWhatALinkInItsPlaceLeadsTo
"$CONTAINED" --reboot "$VELVANE_PREFIX"
after=$(find "$OUTSIDE" "$STAGES/bare" -printf '%p %y %m %u %s\n' | sort)
[[ $before == "$after" ]] || fail "what the links lead to has changed: $after"

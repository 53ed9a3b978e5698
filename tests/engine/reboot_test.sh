#!/bin/bash
# A real restart: files that are locked during a run wait in the prefix until it restarts, and the next start of
# the program finishes them. Then what the engine does with links to folders, which only the host can make here.
# Each stage is a start of the program $1; what it leaves is looked at from outside as well.
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/../support/stages.sh"

stage RestartStage.BeforeLockedFilesAreScheduled
[[ -e $STAGES/moved.txt && -e $STAGES/deleted.txt ]] || fail "a locked file went before the restart"
restart
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
restart
after=$(find "$OUTSIDE" "$STAGES/bare" -printf '%p %y %m %u %s\n' | sort)
[[ $before == "$after" ]] || fail "what the links lead to has changed: $after"

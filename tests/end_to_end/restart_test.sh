#!/bin/bash
# A real restart in the middle of the program's work: the user agrees to it, the system moves what was in use, and
# the program finishes it. Each stage is a start of the program $1, which starts velvane.exe.
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/../support/stages.sh"

stage Restart.BeforeTheUserAgreesAndTheProgramEnds
restart
MOVED=$(find "$PREFIX/drive_c/users" -path '*/DeleteOnReboot/locked.txt_?????')
[[ ! -e $STAGES/data/locked.txt && $(<"$MOVED") == 'in use' ]] || fail "the restart has not moved the file"
stage Restart.AfterTheProgramFinishesAndGoesOn
[[ ! -e $MOVED && $(<"$STAGES/kept/document.txt") == mine ]] || fail "the wrong files are gone"

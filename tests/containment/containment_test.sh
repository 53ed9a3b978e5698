#!/bin/bash
# Proves that a Windows program started by contained-wine cannot harm what is outside of the scratch folder, and that
# the wrapper hands through what it should. usage: containment_test.sh CONTAINMENT_PROBE.exe
#
# Each blow is struck at a canary: a file made here, for this. Each is also struck at a file that it may hit, so
# that a canary does not live merely because the blow missed.
set -euo pipefail

here=$(cd -P -- "${BASH_SOURCE[0]%/*}" && pwd)
wrapper=$here/../../scripts/contained-wine
probe=$(realpath -- "$1")
export VELVANE_PREFIX=containment-$$
unset VELVANE_OUT

yard=$(mktemp -d /tmp/velvane-yard.XXXXXX)
child=
cleanup() {
    [[ $BASHPID == $$ ]] || return 0 # a signal may meet a child before it is itself
    if [[ -n $child ]]; then kill "$child" 2>/dev/null || true; fi
    "$wrapper" --remove "$VELVANE_PREFIX" || true
    rm -rf -- "$yard"
}
trap cleanup EXIT
chmod 755 -- "$yard"

passed=0 failed=0 skipped=0
# check NAME COMMAND...: the case NAME passes when the command succeeds.
check() {
    local name=$1
    shift
    if "$@"; then
        printf 'PASS %s\n' "$name"
        passed=$((passed + 1))
    else
        printf 'FAIL %s\n' "$name"
        failed=$((failed + 1))
    fi
}
skip() {
    printf 'SKIP %s\n' "$1"
    skipped=$((skipped + 1))
}

"$wrapper" --new "$VELVANE_PREFIX"
prefix=$("$wrapper" --path "$VELVANE_PREFIX")
run=${prefix%/prefix}
out=$("$wrapper" --out "$VELVANE_PREFIX")
owner=$(stat -c %u:%g -- "$prefix/drive_c")

# --- the canary and the victim ---------------------------------------------------------------------------------

# The canary's folder is open to nobody but to readers; the victim's belongs to the one who runs the programs.
canary=$yard/canary/file victim=$run/home/victim/file
# make_file PATH: the file afresh, alone in its folder.
make_file() {
    rm -rf -- "${1%/*}" "$prefix/drive_c/moved"
    mkdir -p -- "${1%/*}"
    printf 'alive' >"$1"
    chmod 644 -- "$1"
    if [[ $1 == "$run"/* ]]; then chown -R "$owner" -- "${1%/*}"; fi
}
intact() { [[ -f $1 && ! -L $1 && $(<"$1") == alive && $(stat -c %a -- "$1") == 644 ]]; }
harmed() { ! intact "$1"; }
strike() { "$wrapper" "$probe" "$@" >"$yard/log" 2>&1 || true; }
# Starts the probe as `child` and returns once it runs.
start() {
    local tries=0
    : >"$yard/log" # emptied here: what is left in it would be taken for a probe that runs
    "$wrapper" "$probe" "$@" >"$yard/log" 2>&1 &
    child=$!
    until grep -q ^probe "$yard/log" || ((++tries > 2000)); do sleep 0.01; done
}

# windows_path SPELLING FILE
windows_path() { printf '%s%s' "$1" "${2//\//\\}"; }

test_spellings() {
    local spelling kind
    for spelling in '\\?\unix' '\\.\unix'; do
        for kind in delete write move attributes; do
            make_file "$victim"
            strike "$kind" "$(windows_path "$spelling" "$victim")"
            check "$kind through $spelling reaches the host" harmed "$victim"
            make_file "$canary"
            strike "$kind" "$(windows_path "$spelling" "$canary")"
            check "$kind through $spelling leaves what is outside" intact "$canary"
        done
    done
    for kind in delete write move; do
        make_file "$victim"
        strike "$kind" "$(windows_path 'Z:' "$victim")"
        check "$kind through Z: does not even reach the scratch folder" intact "$victim"
    done
}

# strike_link KIND TARGET PATH-BEHIND-LINK: the wrapper would refuse a prefix with a link that leads out, so the link is
# planted behind its back, under a program that already runs.
strike_link() {
    rm -f -- "$prefix/drive_c/link"
    start await "$1" "C:\\link$3"
    ln -s -- "$2" "$prefix/drive_c/link"
    wait "$child" || true
    child=
    rm -f -- "$prefix/drive_c/link"
}

test_links() {
    local kind
    for kind in delete write move attributes; do
        make_file "$victim"
        strike_link "$kind" "$victim" ''
        check "$kind follows a link to a file" harmed "$victim"
        make_file "$canary"
        strike_link "$kind" "$canary" ''
        check "$kind through a link to a file leaves what is outside" intact "$canary"
        make_file "$canary"
        strike_link "$kind" "${canary%/*}" '\file'
        check "$kind through a link to a folder leaves what is outside" intact "$canary"
    done
}

test_program_files() {
    local path copy
    strike where
    path=$(sed -n 's/^at X:\\\([^\r]*\)\r*$/\1/p' "$yard/log")
    copy=$run/../../bin/${path//\\//}
    strike delete "X:\\$path"
    strike write "X:\\$path"
    check "a program leaves alone what was handed in" cmp -s -- "$probe" "$copy"
}

# --- the user's folders ------------------------------------------------------------------------------------------

# A home that the unprivileged user could empty, if it were led there.
test_user_folders() {
    local home=$yard/home folder bin=.local/share/Trash
    for folder in Desktop Documents Downloads Music Pictures Videos Templates "$bin/files" "$bin/info"; do
        mkdir -p -- "$home/$folder"
        printf 'alive' >"$home/$folder/file"
    done
    chown -R "$owner" -- "$home"
    find "$home" | sort >"$yard/before"

    printf 'trace' >"$prefix/drive_c/users/velvane/Documents/file"
    printf 'trace' >"$prefix/drive_c/rubbish"
    chown "$owner" -- "$prefix/drive_c/users/velvane/Documents/file" "$prefix/drive_c/rubbish"
    "$wrapper" --stop "$VELVANE_PREFIX" # so that Wine itself starts with this home, too
    HOME=$home XDG_DATA_HOME=$home/.local/share strike recycle 'C:\rubbish'
    check "a file goes to the recycle bin and the bin is emptied" \
        bash -c '[[ ! -e $1/drive_c/rubbish ]] && grep -q "^in the bin: 1" "$2" && grep -q "^after emptying: 0" "$2"' \
        - "$prefix" "$yard/log"
    HOME=$home XDG_DATA_HOME=$home/.local/share strike user-folders
    check "the user's folders are emptied" test ! -e "$prefix/drive_c/users/velvane/Documents/file"
    check "all of the user's folders are in the prefix" \
        bash -c '(($(grep -c "^C:" "$1") > 10)) && ! grep -v "^C:\\\\\|^probe" "$1"' - "$yard/log"
    find "$home" | sort >"$yard/after"
    check "the real home and its recycle bin are untouched" cmp -s -- "$yard/before" "$yard/after"
    # What was emptied here is no state for anything else.
    "$wrapper" --new "$VELVANE_PREFIX"
}

# --- refusals ----------------------------------------------------------------------------------------------------

refuses() {
    local status=0
    "$wrapper" "$probe" echo >"$yard/log" 2>&1 || status=$?
    ((status == 125)) && (($(wc -l <"$yard/log") == 1)) && ! grep -q '^probe' "$yard/log"
}

test_refusals() {
    local drives=$prefix/dosdevices
    check "starts on a sound prefix" bash -c '"$@" | grep -q "^probe"' - "$wrapper" "$probe" echo
    chmod u+w -- "$drives"

    ln -s -- "$yard" "$prefix/drive_c/users/velvane/Documents/deep"
    check "refuses a link that leads out" refuses
    rm -- "$prefix/drive_c/users/velvane/Documents/deep"

    ln -s -- "$yard/nowhere" "$prefix/drive_c/dangling"
    check "refuses a dangling link that would lead out" refuses
    rm -- "$prefix/drive_c/dangling"

    ln -s -- "$run/out" "$prefix/drive_c/inner"
    check "starts with a link within the scratch folder" bash -c '"$@" | grep -q "^probe"' - "$wrapper" "$probe" echo
    rm -- "$prefix/drive_c/inner"

    ln -s -- / "$drives/z:"
    check "refuses a drive Z:" refuses
    rm -- "$drives/z:"

    ln -s -- "$yard" "$drives/d:"
    check "refuses a drive that is outside" refuses
    rm -- "$drives/d:"

    mv -- "$run/home" "$run/home.kept"
    ln -s -- "$yard" "$run/home"
    check "refuses a home that is outside" refuses
    rm -- "$run/home"
    mv -- "$run/home.kept" "$run/home"

    chmod u-w -- "$drives"
    if ((EUID == 0)); then
        mkdir -- "$yard/tools"
        printf '#!/bin/bash\nwhile [[ $1 == --* ]]; do shift; done\nexec "$@"\n' >"$yard/tools/setpriv"
        chmod 755 -- "$yard/tools/setpriv"
        PATH=$yard/tools:$PATH check "refuses to run as root when the drop did not work" refuses
    else
        skip "refuses to run as root when the drop did not work: only root can try it"
    fi
    check "refuses a scratch folder inside the repository" env VELVANE_SCRATCH="$here/scratch" bash -c '
        status=0
        "$@" 2>/dev/null || status=$?
        ((status == 125)) && [[ ! -e $VELVANE_SCRATCH ]]' - "$wrapper" "$probe" echo
}

# --- what is handed through ---------------------------------------------------------------------------------------

test_handing_through() {
    local status=0
    # The prefix is new, so that this start brings up all of Wine's processes.
    check "nothing of Wine's keeps the reader of a program's output waiting" \
        timeout 30 bash -c 'set -o pipefail; "$@" 2>&1 | cat >/dev/null' - "$wrapper" "$probe" window

    "$wrapper" "$probe" echo 'a b' '' 'say "x"' '\\?\C:\' '*' >"$yard/log" 2>/dev/null || status=$?
    check "the exit status is the program's" test "$status" -eq 5
    check "arguments arrive as they are" \
        cmp -s -- <(tr -d '\r' <"$yard/log") <(printf '%s\n' 'probe echo' '[a b]' '[]' '[say "x"]' '[\\?\C:\]' '[*]')

    start await delete 'C:\never'
    kill -TERM "$child"
    status=0
    wait "$child" || status=$?
    child=
    check "a signal ends the program" test "$status" -eq 143

    # What was once copied to the host must not lead a later copy elsewhere.
    make_file "$canary"
    mkdir -- "$yard/results"
    printf 'new' >"$out/result"
    chown "$owner" -- "$out/result"
    ln -s -- "$canary" "$yard/results/result"
    VELVANE_OUT=$yard/results strike echo
    check "results are copied back" test "$(<"$yard/results/result")" = new
    check "a copy replaces a link instead of following it" intact "$canary"

    "$wrapper" "$probe" delay-delete 'C:\windows\win.ini' >"$yard/log"
    check "a delayed delete waits" test -f "$prefix/drive_c/windows/win.ini"
    "$wrapper" --reboot "$VELVANE_PREFIX"
    check "a restart carries it out" test ! -e "$prefix/drive_c/windows/win.ini"
}

test_refusals
if ((EUID == 0)); then
    test_spellings
    test_links
    test_program_files
else
    # An ordinary user's programs have the rights of that user; only what leads out by accident is closed to them.
    skip "blows at files of the host: they need a start by root, who drops to a user that owns nothing"
fi
test_user_folders
test_handing_through

printf '%d passed, %d failed, %d skipped\n' "$passed" "$failed" "$skipped"
((failed == 0))

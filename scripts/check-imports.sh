#!/bin/bash
# Holds that our programs run on a bare Windows: fails for each program that imports a library which Windows does not
# bring, such as those of the compiler. Wine brings some of them, so that no test would notice.
# usage: check-imports.sh PROGRAM.exe...
#        check-imports.sh --self-test     shows that it can fail
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

readonly WINDOWS=' kernel32 user32 gdi32 gdiplus advapi32 shell32 shlwapi ole32 oleaut32 comctl32 comdlg32 version
    wininet ws2_32 msvcrt mstask mpr msimg32 uxtheme winmm rpcrt4 setupapi userenv psapi dbghelp imm32 ntdll '

check() {
    local program library imports failures=0
    for program in "$@"; do
        # objdump belongs to the cross compiler and reads both architectures.
        imports=$(x86_64-w64-mingw32-objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p')
        if [[ -z $imports ]]; then
            note "$program: imports nothing at all, which no program of ours does"
            failures=1
        fi
        for library in ${imports,,}; do
            if [[ $WINDOWS != *[[:space:]]"${library%.dll}"[[:space:]]* ]]; then
                note "$program: imports $library, which is not part of Windows"
                failures=1
            fi
        done
    done
    return $failures
}

self_test() {
    local folder
    folder=$(mktemp -d)
    trap 'rm -rf -- "$folder"' RETURN
    printf 'int main() { throw 1; }\n' >"$folder/a.cpp"
    x86_64-w64-mingw32-g++-posix -static -o "$folder/good.exe" "$folder/a.cpp"
    x86_64-w64-mingw32-g++-posix -o "$folder/bad.exe" "$folder/a.cpp"
    check "$folder/good.exe" || return 1
    if check "$folder/bad.exe" 2>/dev/null; then
        note "check-imports: self-test: a program that needs the compiler's libraries passes"
        return 1
    fi
}

case ${1:-} in
    --self-test) self_test ;;
    '') die "which programs?" ;;
    *) check "$@" ;;
esac

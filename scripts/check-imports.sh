#!/bin/bash
# Holds what our programs import: a program that a user gets only libraries which Windows protects from
# being replaced by one of the same name beside the program; a test only such as Windows brings. Wine brings some of the
# compiler's, so that no test would notice.
# usage: check-imports.sh PROGRAM.exe...
#        check-imports.sh --self-test     shows that it can fail
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

readonly WINDOWS=' kernel32 user32 gdi32 gdiplus advapi32 shell32 shlwapi ole32 oleaut32 comctl32 comdlg32 version
    wininet ws2_32 msvcrt mstask mpr msimg32 uxtheme winmm rpcrt4 setupapi userenv psapi dbghelp imm32 ntdll
    oleacc '
# The known libraries of Windows 7 to 11.
readonly PROTECTED=' kernel32 user32 gdi32 advapi32 shell32 shlwapi ole32 oleaut32 comdlg32 rpcrt4 ws2_32 msvcrt imm32
    psapi setupapi '

check() {
    local program library imports allowed failures=0
    for program in "$@"; do
        allowed=$WINDOWS
        case ${program##*/} in velvane.exe | velvane-cli.exe | velvane-defs.exe) allowed=$PROTECTED ;; esac
        # objdump belongs to the cross compiler and reads both architectures.
        imports=$(x86_64-w64-mingw32-objdump -p "$program" | sed -n 's/^[[:space:]]*DLL Name: //p')
        if [[ -z $imports ]]; then
            note "$program: imports nothing at all, which no program of ours does"
            failures=1
        fi
        for library in ${imports,,}; do
            if [[ $allowed != *[[:space:]]"${library%.dll}"[[:space:]]* ]]; then
                note "$program: imports $library, which Windows does not bring or does not protect"
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
    printf '#include <windows.h>\nint main() { return GetFileVersionInfoSizeA("a", 0); }\n' >"$folder/b.cpp"
    x86_64-w64-mingw32-g++-posix -static -o "$folder/velvane.exe" "$folder/b.cpp" -lversion
    if check "$folder/velvane.exe" 2>/dev/null; then
        note "check-imports: self-test: a program of ours that starts with an unprotected library passes"
        return 1
    fi
}

case ${1:-} in
    --self-test) self_test ;;
    '') die "which programs?" ;;
    *) check "$@" ;;
esac

#!/bin/bash
# Makes an import library whose functions are looked up at their first call, from the one that the compiler brings.
# usage: late-library.sh PREFIX NAME OUTPUT.a       PREFIX as in x86_64-w64-mingw32
set -euo pipefail
prefix=$1 name=$2 output=$3
library=$("$prefix-gcc-posix" -print-file-name="lib$name.a")
definition=${output%.a}.def
{
    printf 'LIBRARY %s.dll\nEXPORTS\n' "$name"
    # A 32-bit name has one underscore more than what the library exports, and the size of its arguments behind it.
    "$prefix-nm" "$library" 2>/dev/null | awk '$2 == "T" { print $3 }' | sort -u |
        if [[ $prefix == i686-* ]]; then sed 's/^_//'; else cat; fi
} >"$definition"
options=()
if [[ $prefix == i686-* ]]; then options=(--kill-at); fi
"$prefix-dlltool" "${options[@]}" --input-def "$definition" --output-delaylib "$output"
# Asks for each function by its name. The linker leaves out the stub of one that is called through its pointer alone,
# as if the system filled that at the start; in 32 bits the first call then goes nowhere.
"$prefix-nm" "$library" 2>/dev/null | awk '$2 == "T" { print "-Wl,-u," $3 }' | sort -u >"${output%.a}.rsp"

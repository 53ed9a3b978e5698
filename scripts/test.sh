#!/bin/bash
# Everything that decides whether a state of the project is sound: makes the machine ready, builds all presets, holds
# the layers, the format and the imports, and runs the tests of the build host and those of Windows. The 32-bit
# build has its own, test-x86.sh.
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"
cd -- "$VELVANE_ROOT"

readonly LOGS=build/logs
mkdir -p -- "$LOGS"
results=() failures=0

# step NAME COMMAND...: runs it, keeps its output in a log as well, and goes on after a failure.
step() {
    local name=$1 start=$SECONDS status=0
    shift
    note "--- $name"
    "$@" 2>&1 </dev/null | tee -- "$LOGS/$name.log" || status=$?
    if ((status)); then
        failures=$((failures + 1))
        results+=("FAILED $name: $LOGS/$name.log")
    else
        results+=("ok     $name ($((SECONDS - start)) s)")
    fi
    return $status
}

# What nothing else can follow when it fails.
must() { step "$@" || exit 1; }

# The prefixes of the tests: one for each test program, named in the build files.
test_prefixes() {
    ctest --preset x64 --show-only=json-v1 2>/dev/null | grep -oE '"VELVANE_PREFIX=[^"]+"' |
        sed -E 's/^"[^=]*=(.*)"$/\1/' | sort -u
}

# Ends the servers of the tests' prefixes and deletes them: before a run, so that it does not begin with what an
# earlier one left, and after it.
remove_prefixes() {
    local name
    for name in $(test_prefixes || true); do scripts/contained-wine --remove "$name"; done
}

finish() {
    local status=$?
    trap - EXIT
    remove_prefixes
    printf '\n'
    printf '%s\n' "${results[@]}"
    printf 'logs: %s\n' "$VELVANE_ROOT/$LOGS"
    if ((failures)); then exit 1; fi
    exit "$status" # of an interruption, or of a slip in this script
}
trap finish EXIT
trap 'exit 130' INT TERM

build() {
    cmake --preset "$1" && cmake --build --preset "$1"
}

checks() {
    local name failed=0
    for name in layers format imports; do
        scripts/check-$name.sh --self-test || { echo "check-$name: its self-test failed"; failed=1; }
    done
    scripts/check-layers.sh || failed=1
    scripts/check-format.sh || failed=1
    scripts/check-imports.sh build/x64/bin/*.exe build/x86/bin/*.exe || failed=1
    return $failed
}

must setup scripts/setup.sh
for preset in native x64 x86; do must "build-$preset" build "$preset"; done
step checks checks || true
step test-native ctest --preset native --output-on-failure --parallel 2 || true
remove_prefixes
# Nothing else is run where the containment does not hold.
must test-containment ctest --preset x64 --output-on-failure --tests-regex "^containment$"
# A prefix is made and kept warm by the first start in it, see contained-wine: no test waits for another's server.
step test-x64 ctest --preset x64 --output-on-failure --parallel 2 --exclude-regex "^containment$" || true

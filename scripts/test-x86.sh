#!/bin/bash
# Runs the 32-bit test programs in a prefix that knows both architectures, as on a 64-bit Windows. The machine's own
# Wine has no 32 bits and cannot get them without losing its 64, so this makes a small Debian beside it, once: some
# minutes and 2 GB in the scratch folder. Not part of test.sh; wants root.
# usage: test-x86.sh [PROGRAM.exe...]    all *_tests.exe of build/x86/bin unless told which
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

((EUID == 0)) || die "only root can make and enter a change of root"
# Mounts and processes of our own: the kernel ends them with this script, however that ends.
if [[ -z ${VELVANE_APART:-} ]]; then
    VELVANE_APART=1 exec unshare --mount --propagation private --pid --fork --kill-child -- \
        "${BASH_SOURCE[0]}" "$@"
fi
unset VELVANE_APART

open_scratch
readonly DEBIAN=$SCRATCH/x86 LOGS=$VELVANE_ROOT/build/logs INSIDE=/velvane
mkdir -p -- "$LOGS"

# Makes the Debian in the folder $1, from the mirror that the machine itself uses.
make_debian() {
    local release mirror proxy
    release=$(. /etc/os-release && printf '%s' "$VERSION_CODENAME")
    mirror=$(apt-get indextargets --format '$(SITE)|$(RELEASE)|$(CREATED_BY)' |
        awk -F'|' -v release="$release" '$2 == release && $3 == "Packages" {print $1; exit}')
    [[ -n $mirror ]] || die "the machine's package sources name no mirror of $release"
    proxy=$(apt-config shell P Acquire::http::Proxy)
    proxy=${proxy#P=\'} proxy=${proxy%\'}
    if [[ -n $proxy ]]; then export http_proxy=$proxy; fi

    if ! command -v debootstrap >/dev/null; then
        apt-get -qq update
        DEBIAN_FRONTEND=noninteractive apt-get -qq -y -o Dpkg::Use-Pty=0 install --no-install-recommends debootstrap
    fi
    rm -rf --one-file-system -- "$1"
    debootstrap --variant=minbase "$release" "$1" "$mirror"
    mount -t proc proc "$1/proc"
    chroot "$1" dpkg --add-architecture i386
    chroot "$1" apt-get -qq update
    DEBIAN_FRONTEND=noninteractive chroot "$1" apt-get -qq -y -o Dpkg::Use-Pty=0 install --no-install-recommends \
        wine wine64 wine32:i386 fonts-wine
    chroot "$1" apt-get clean
    umount -- "$1/proc"
}

# Runs a command as root in the Debian, with a clean environment; only contained-wine and the containment test are.
inside() {
    chroot "$DEBIAN" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LANG=C.UTF-8 \
        VELVANE_SCRATCH=/var/velvane VELVANE_PREFIX=x86 "$@"
}

hand_over() {
    local bin=$DEBIAN$INSIDE/build/x86/bin file
    rm -rf -- "$DEBIAN$INSIDE"
    mkdir -p -- "$bin" "$DEBIAN$INSIDE/tests"
    cp -R -- "$VELVANE_ROOT/scripts" "$DEBIAN$INSIDE/"
    cp -R -- "$VELVANE_ROOT/tests/containment" "$DEBIAN$INSIDE/tests/"
    for file in "$1"/*.{exe,dll,db,dat}; do
        if [[ -f $file ]]; then cp -p -- "$file" "$bin/"; fi
    done
    if [[ -d $1/images ]]; then cp -R -- "$1/images" "$bin/"; fi
}

# A program has passed when it says so: its exit status arrives without all but its low 8 bits.
passed_log() { grep -q '^\[  PASSED  \] [1-9]' "$1" && ! grep -q '^\[  FAILED  \]' "$1"; }

run_program() {
    local name=$1 log=$LOGS/x86-${1%.exe}.log status=0 summary skips
    inside "$INSIDE/scripts/contained-wine" "$INSIDE/build/x86/bin/$name" >"$log" 2>&1 </dev/null || status=$?
    summary=$(grep -oE '^\[==========\] [0-9]+ tests? .*ran.*' "$log" | tr -d '\r' | tail -1) || true
    skips=$(grep -cE '^\[  SKIPPED \] .* \(' "$log") || true
    if ((status == 0)) && passed_log "$log"; then
        printf 'PASS %s: %s %d skipped\n' "$name" "${summary#* }" "$skips"
        return 0
    fi
    printf 'FAIL %s: status %d, %s\n' "$name" "$status" "$log"
    tail -n 40 -- "$log"
    return 1
}

if (($#)); then
    programs=("$@")
else
    programs=("$VELVANE_ROOT"/build/x86/bin/*_tests.exe)
fi
for program in "${programs[@]}"; do
    [[ -f $program ]] || die "there is no $program: build the preset x86 first"
done

if [[ ! -e $DEBIAN/.complete ]]; then
    note "test-x86: making the Debian for 32 bits in $DEBIAN, once, some minutes"
    make_debian "$DEBIAN" >"$LOGS/x86-debian.log" 2>&1 ||
        { tail "$LOGS/x86-debian.log" >&2; die "it could not be made, see $LOGS/x86-debian.log"; }
    : >"$DEBIAN/.complete"
fi
mount -t proc proc "$DEBIAN/proc"
hand_over "$(dirname -- "${programs[0]}")"

passed=0 failed=0
count() { if "$@"; then passed=$((passed + 1)); else failed=$((failed + 1)); fi; }

# First that nothing can escape from here, either.
containment() {
    local log=$LOGS/x86-containment.log
    if inside bash "$INSIDE/tests/containment/containment_test.sh" \
        "$INSIDE/build/x86/bin/containment_probe.exe" >"$log" 2>&1 </dev/null; then
        printf 'PASS containment: %s\n' "$(tail -1 "$log")"
        return 0
    fi
    printf 'FAIL containment: %s\n' "$log"
    grep -v '^PASS' "$log"
    return 1
}
if [[ -e $DEBIAN$INSIDE/build/x86/bin/containment_probe.exe ]]; then
    count containment
    ((failed == 0)) || die "nothing else is run where the containment does not hold"
fi

inside "$INSIDE/scripts/contained-wine" --new x86
for program in "${programs[@]}"; do count run_program "${program##*/}"; done
inside "$INSIDE/scripts/contained-wine" --remove x86

printf '%d passed, %d failed\n' "$passed" "$failed"
((failed == 0))

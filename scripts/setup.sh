#!/bin/bash
# Makes a Debian 12 machine ready to build and test: installs the packages that are missing and fetches the
# sources of the libraries that are built from source. Silent and quick when everything is there.
set -euo pipefail
source "${BASH_SOURCE[0]%/*}/lib.sh"

PACKAGES=(
    g++ cmake ninja-build ccache git dpkg-dev
    g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix libz-mingw-w64-dev # the Windows builds
    nlohmann-json3-dev                                                     # headers only
    zlib1g-dev googletest                                                  # the native build, the tests
    librsvg2-bin icoutils python3                                          # pictures and icon from their drawings
    clang-14 libclang-rt-14-dev clang-format                               # fuzzers, the format check
    wine wine64 fonts-wine                                                 # runs the Windows tests
    xvfb xauth x11-utils                                                   # shows windows, also without a display
)
# Built from source because Debian has no libraries of them for Windows.
SOURCES=(pugixml minizip benchmark)

APT_DIR=$VELVANE_ROOT/.cache/apt
SOURCES_DIR=$VELVANE_ROOT/.cache/sources

missing_packages() {
    local name status
    local -A installed=()
    while read -r name status; do
        [[ $status == installed ]] && installed[$name]=1
    done < <(dpkg-query -W -f='${Package} ${db:Status-Status}\n' "${PACKAGES[@]}" 2>/dev/null || true)
    for name in "${PACKAGES[@]}"; do
        [[ -n ${installed[$name]:-} ]] || printf '%s\n' "$name"
    done
}

install_packages() {
    local as_root=()
    if ((EUID != 0)); then
        if ! command -v sudo >/dev/null || ! sudo -n true 2>/dev/null && [[ ! -t 0 ]]; then
            die "these packages are missing and only root can install them: $*"
        fi
        as_root=(sudo)
    fi
    note "setup: installing $*"
    # A list that was never fetched, or is old, makes the installation fail with a misleading message.
    "${as_root[@]}" apt-get -qq update
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -y -o Dpkg::Use-Pty=0 \
        install --no-install-recommends "$@" >&2
}

# The machine's own package sources, rewritten to offer source packages, in a configuration beside the project:
# nothing under /etc is touched.
write_apt_configuration() {
    local file
    rm -rf -- "$APT_DIR/parts"
    mkdir -p -- "$APT_DIR"/{parts,lists/partial,cache/archives/partial}
    : >"$APT_DIR/sources.list"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        if [[ -f $file ]]; then
            sed -nE 's/^deb(-src)?[[:space:]]+/deb-src /p' "$file" >>"$APT_DIR/sources.list"
        fi
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        if [[ -f $file ]]; then
            sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$APT_DIR/parts/${file##*/}"
        fi
    done
}

private_apt() {
    apt-get -qq -o Dir::Etc::sourcelist="$APT_DIR/sources.list" -o Dir::Etc::sourceparts="$APT_DIR/parts" \
        -o Dir::State::lists="$APT_DIR/lists" -o Dir::Cache="$APT_DIR/cache" -o APT::Sandbox::User=root "$@"
}

# Unpacks the source of each package given to .cache/sources/NAME, with Debian's patches applied.
fetch_sources() {
    local name work=$APT_DIR/work
    note "setup: fetching the sources of $*"
    write_apt_configuration
    # A third party's source without source packages is no reason to stop; a missing package below is.
    private_apt update 2>/dev/null || true
    for name in "$@"; do
        rm -rf -- "$work"
        mkdir -p -- "$work" "$SOURCES_DIR"
        (
            cd -- "$work"
            private_apt source --download-only "$name" >log 2>&1 &&
                dpkg-source --extract ./*.dsc unpacked >>log 2>&1
        ) || { cat "$work/log" >&2; die "the source package $name could not be fetched"; }
        mv -T -- "$work/unpacked" "$SOURCES_DIR/$name"
        rm -rf -- "$work"
    done
}

mapfile -t packages < <(missing_packages)
if ((${#packages[@]})); then install_packages "${packages[@]}"; fi

missing_sources() {
    local name
    for name in "${SOURCES[@]}"; do
        [[ -d $SOURCES_DIR/$name ]] || printf '%s\n' "$name"
    done
}

mapfile -t sources < <(missing_sources)
if ((${#sources[@]})); then
    mkdir -p -- "$VELVANE_ROOT/.cache"
    exec 9>"$VELVANE_ROOT/.cache/setup.lock"
    flock 9 # two checkouts of a build may start at once; the second finds the work done
    mapfile -t sources < <(missing_sources)
    if ((${#sources[@]})); then fetch_sources "${sources[@]}"; fi
fi

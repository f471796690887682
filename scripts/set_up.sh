# shellcheck shell=bash disable=SC2034
# Sourced by ./run and ./check: installs the Debian packages that are missing, configures and builds.

export LC_ALL=C.UTF-8

build_packages=(
    g++ cmake ninja-build
    libpng-dev
    libproj-dev proj-data
    libgdal-dev
    qt6-base-dev qt6-svg-dev libqcustomplot-dev libqcustomplot2.1-qt6 fonts-dejavu-core
    libgtest-dev libbenchmark-dev
)

say() { printf '%s\n' "$*"; }

complain() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; }

missing_packages() {
    local installed package
    installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    for package in "$@"; do
        grep -qxF "installed $package" <<<"$installed" || printf '%s\n' "$package"
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif ! command -v sudo >/dev/null; then
        complain "only root can install packages, and there is no sudo; as root: $*"
        return 1
    elif [ -t 0 ]; then
        sudo "$@"
    else
        sudo -n "$@"
    fi
}

# Without anything missing this asks nobody, so that it works offline.
install_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        complain "no apt-get here. On Debian 12 these packages would be installed; their like are needed: $*"
        return 0 # they may be there under other names; configuring tells
    fi
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ "${#missing[@]}" -gt 0 ] || return 0
    say "Installing ${missing[*]}"
    as_root apt-get -q update &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y install --no-install-recommends "${missing[@]}"
    mkdir -p build && touch build/packages_installed # what was configured before may have left things out
}

# configure PRESET: only for the first time, and after a change of the presets or an installation of packages; the build
# sees other changes itself.
configure() {
    local made=build/$1/build.ninja
    if [ "$made" -nt CMakePresets.json ] && [ ! build/packages_installed -nt "$made" ]; then return; fi
    cmake --preset "$1"
}

# build PRESET [TARGET]
build() {
    cmake --build --preset "$1" --parallel "$(nproc)" ${2:+--target "$2"}
}

# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced: which Debian packages each purpose needs, and how missing ones are installed.
# Everything is said on standard error.

# shellcheck disable=SC2034 # For the scripts that source this one.
{
    packagesToBuild=(
        cmake g++ libcanberra-dev libgl-dev libsecret-1-dev libsimdjson-dev
        libvulkan-dev libxcb-ewmh-dev libxcb-icccm4-dev libxcb-res0-dev libxcb-xfixes0-dev
        libxcb-xtest0-dev libxcb1-dev libxkbcommon-dev libxkbcommon-x11-dev ninja-build pkgconf
        qt6-base-dev qt6-declarative-dev qt6-declarative-dev-tools qt6-svg-dev xkb-data)
    packagesToRun=(
        libcanberra-pulse procps qml6-module-qtqml qml6-module-qtqml-models
        qml6-module-qtqml-workerscript qml6-module-qtquick qml6-module-qtquick-controls
        qml6-module-qtquick-shapes qml6-module-qtquick-templates qml6-module-qtquick-window
        sound-theme-freedesktop xdg-utils)
    packagesToTest=(
        at-spi2-core dbus-daemon foot gnome-keyring i3-wm kwin-x11 libatspi2.0-dev libgcrypt20-dev
        libglib2.0-dev libgmock-dev libgtest-dev libxcb-randr0-dev libxcb-shape0-dev locales mutter
        openbox openssl pulseaudio pulseaudio-utils rxvt-unicode sway x11-xkb-utils
        x11-xserver-utils xfconf xfwm4 xterm xvfb xwayland
        libfaketime libfuse3-dev)
    packagesToCheck=(clang-format clang-tidy shellcheck)
    packagesToFuzz=(clang libclang-rt-dev)
    # Also the panels that people use, to compare with.
    packagesToMeasure=(
        conky-std libbenchmark-dev libxcb-damage0-dev lxqt-panel openbox polybar tint2 xvfb)
    packagesToProve=(debootstrap git)
}

say() {
    printf 'sallowmere: %s\n' "$*" >&2
}

fail() {
    say "$@"
    exit 1
}

# requirePackages PACKAGE...: returns when all of them are installed. Asks the network for nothing
# when they already are.
requirePackages() {
    if ! command -v dpkg-query >/dev/null; then
        requireToolsInstead "$@"
        return
    fi
    local missing
    mapfile -t missing < <(missingPackages "$@")
    if ((${#missing[@]} > 0)); then
        installPackages "${missing[@]}"
    fi
}

missingPackages() {
    local installed package
    # It fails when it knows nothing of one of them; what it says of the others still holds.
    installed=$(dpkg-query --show --showformat '${Package} ${db:Status-Status}\n' "$@" \
        2>/dev/null || true)
    for package; do
        [[ $'\n'$installed$'\n' == *$'\n'"$package installed"$'\n'* ]] || printf '%s\n' "$package"
    done
}

installPackages() {
    local asRoot=()
    if ((EUID != 0)); then
        command -v sudo >/dev/null || failToInstall "you are not root and there is no sudo" "$@"
        asRoot=(sudo)
    fi
    say "installing the missing packages: $*"
    aptGet update || say "apt-get update failed; trying with the package lists that are there"
    aptGet install --yes --no-install-recommends "$@" || failToInstall "apt-get install failed" "$@"
}

aptGet() {
    "${asRoot[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get -qq -o DPkg::Lock::Timeout=300 "$@" </dev/null >&2
}

failToInstall() {
    local reason=$1
    shift
    say "these packages are missing and could not be installed ($reason): $*"
    fail "to install them, run as root: apt-get update && apt-get install --no-install-recommends $*"
}

# Without dpkg the names of the packages are only a hint; the tools tell whether to go on.
requireToolsInstead() {
    local tool missing=()
    say "this is no Debian system; needed is what these Debian packages hold: $*"
    for tool in cmake ninja c++ ps; do
        command -v "$tool" >/dev/null || missing+=("$tool")
    done
    ((${#missing[@]} == 0)) || fail "not found: ${missing[*]}"
}

# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced, after packages.sh: how a preset is configured and built.
# Quiet unless something fails; everything is said on standard error.

sourceRoot=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")

# buildPreset NAME: returns when build/NAME is up to date. Two at a time wait for each other.
# The benchmarks are built beside the program that they measure, in build/release.
buildPreset() {
    local preset=$1
    local name=build/${preset/#bench/release}
    local directory=$sourceRoot/$name
    requireWritable "$directory"
    (
        flock 9
        cd -- "$sourceRoot" || fail "cannot enter $sourceRoot"
        isConfigured || configure
        compile
    ) 9>"$directory/.sallowmere-lock"
}

requireWritable() {
    local refused
    mkdir -p -- "$1" 2>/dev/null || fail "cannot make the directory $1"
    refused=$(find "$1" ! -type l ! -writable -print -quit)
    [[ -z $refused ]] || fail "cannot write to $refused;" \
        "if another user built here, remove $1 as that user, or build as that user"
}

# ninja itself notices changes to the build description, but not to the presets, nor that the
# sources have moved.
isConfigured() {
    [[ -f $directory/build.ninja
        && $directory/build.ninja -nt $sourceRoot/CMakePresets.json ]] \
        && grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$sourceRoot" "$directory/CMakeCache.txt" \
        && { [[ $preset != bench ]] \
            || grep -qxF "SALLOWMERE_BENCHMARKS:BOOL=ON" "$directory/CMakeCache.txt"; }
}

configure() {
    say "configuring and building $name; the first time this takes a minute or two"
    quietly "$name could not be configured" \
        cmake -S "$sourceRoot" --preset "$preset" --fresh
}

compile() {
    # The preset says what of it.
    quietly "$name could not be built" cmake --build --preset "$preset" -- --quiet
}

# quietly COMPLAINT COMMAND...: shows what the command says only if it fails.
quietly() {
    local complaint=$1 output
    shift
    output=$("$@" </dev/null 2>&1) || {
        printf '%s\n' "$output" >&2
        fail "$complaint"
    }
}

# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced by whatever acts on the soaked panel; Scripts/soak sets SOAK_PLACE, SOAK_HOME and
# SOAK_SEED. What is chosen depends on the seed and on the actor's own number.

# chooseBy NUMBER
chooseBy() {
    RANDOM=$(((SOAK_SEED + $1 * 977) % 32768))
}

# chance OF: true once in so many times.
chance() {
    ((RANDOM % $1 == 0))
}

# between LEAST MOST: leaves a number in `number`.
between() {
    number=$(($1 + RANDOM % ($2 - $1 + 1)))
}

# nap LEAST MOST: tenths of a second.
nap() {
    between "$1" "$2"
    sleep "$((number / 10)).$((number % 10))"
}

# note WORD: counted in the verdict.
note() {
    printf '%s\n' "$1" >>"$SOAK_PLACE/deeds"
}

# oneOf VALUE...: leaves one of them in `chosen`.
oneOf() {
    local values=("$@")
    # shellcheck disable=SC2034 # for whoever asked
    chosen=${values[RANDOM % $#]}
}

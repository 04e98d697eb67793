# shellcheck shell=bash
# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# To be sourced: what the soaked panel takes. Each reading is a line of `readingNames`; memory is in
# KiB, processor time in hundredths of a second.

# shellcheck disable=SC2034 # for the script that sources this one
readonly readingNames=(seconds rss pss dirty threads descriptors children zombies switches cpu
    childCpu windows pixmaps pixmapKiB xResources messages bytes restarts)

# memoryOf PROCESS: "RSS PSS PRIVATE_DIRTY"
memoryOf() {
    awk '$1 == "Rss:" { rss = $2 } $1 == "Pss:" { pss = $2 } $1 == "Private_Dirty:" { dirty = $2 }
        END { print rss, pss, dirty }' "/proc/$1/smaps_rollup"
}

# familyOf PROCESS: "THREADS DESCRIPTORS CHILDREN ZOMBIES" at this moment
familyOf() {
    local threads descriptors
    threads=$(find "/proc/$1/task" -mindepth 1 -maxdepth 1 | wc -l)
    descriptors=$(find "/proc/$1/fd" -mindepth 1 | wc -l)
    ps --ppid "$1" -o stat= | awk -v threads="$threads" -v descriptors="$descriptors" \
        '{ ++children } /^Z/ { ++zombies }
        END { print threads, descriptors, children + 0, zombies + 0 }'
}

# The least of several moments: every two seconds there is a `ps` and its pipe.
restingFamilyOf() {
    local moment
    for moment in 1 2 3 4 5; do
        familyOf "$1"
        ((moment == 5)) || sleep 0.43
    done | awk '{ for (i = 1; i <= 4; ++i) if (NR == 1 || $i < least[i]) least[i] = $i }
        END { print least[1], least[2], least[3], least[4] }'
}

# workOf PROCESS: "SWITCHES CPU CHILD_CPU"
workOf() {
    local switches
    switches=$(awk '/ctxt_switches/ { sum += $2 } END { print sum }' "/proc/$1"/task/*/status)
    sed 's/.*) //' "/proc/$1/stat" | awk -v switches="$switches" '{ print switches, $12 + $13, $14 + $15 }'
}

# takeReading PROCESS SECONDS RESTARTS: false when the process is gone.
takeReading() {
    local memory family work windows world
    memory=$(memoryOf "$1") && family=$(restingFamilyOf "$1") && work=$(workOf "$1") || return 1
    windows=$("$SOAK_PLACE/bin/x-resources" "$1") || return 1
    world=$(tail -n 1 "$SOAK_PLACE/logs/world" 2>/dev/null | awk '{ print $2, $1 }')
    printf '%s\n' "$2 $memory $family $work $windows ${world:-0 0} $3"
}

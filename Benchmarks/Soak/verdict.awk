# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# Judges the readings of a soak: awk -f verdict.awk readings. The first line has the names, the
# second is the start at rest, the last one the end at rest, those between are of the work.
# Prints a table and ends with status 1 when something is not flat.

NR == 1 {
    for (i = 1; i <= NF; ++i)
        column[$i] = i
    next
}

{
    ++count
    for (name in column)
        value[name, count] = $column[name]
}

# KiB each second, of the second half of the work, by least squares.
function slope(name,    i, n, x, y, sx, sy, sxx, sxy, first) {
    first = int(count / 2) + 1
    for (i = first; i < count; ++i) {
        x = value["seconds", i]
        y = value[name, i]
        sx += x
        sy += y
        sxx += x * x
        sxy += x * y
        ++n
    }
    return n < 2 ? 0 : (n * sxy - sx * sy) / (n * sxx - sx * sx)
}

function mostOf(name) {
    return mostUntil(count, name)
}

function fail(text) {
    print "FAILED: " text
    failed = 1
}

function mostUntil(last, name,    i, most) {
    for (i = 1; i <= last; ++i)
        if (value[name, i] > most)
            most = value[name, i]
    return most + 0
}

# Where a limit is given it is judged by.
function memoryRow(name, label, limit,    perHour) {
    perHour = slope(name) * 3600 / 1024
    printf "| %s, MiB | %.1f | %.1f | %.1f | %+.2f |\n", label, value[name, 1] / 1024, \
        mostOf(name) / 1024, value[name, count] / 1024, perHour
    # Less than an hour of work tells nothing of what is left after one.
    if (isLong && limit != "" && perHour > limit)
        fail(label " grows by " perHour " MiB an hour")
}

function row(name) {
    printf "| %s | %d | %d | %d | |\n", name, value[name, 1], mostOf(name), value[name, count]
}

function mustReturn(name) {
    row(name)
    if (value[name, count] > value[name, 1])
        fail(name " at rest: " value[name, 1] " at the start, " value[name, count] " at the end")
}

# Cursors, and the window that tells a window manager when there was a user, are made when they are
# first needed.
function mustNotGrow(name,    before) {
    row(name)
    before = mostUntil(int(count / 2), name)
    if (value[name, count] > before)
        fail(name " at rest: " value[name, count] ", in the first half at most " before)
}

END {
    if (count < 4) {
        fail("too few readings: " count)
        exit 1
    }
    isLong = value["seconds", count] >= 1800
    print "| | start, at rest | most | end, at rest | an hour, second half |"
    print "| --- | --- | --- | --- | --- |"
    memoryRow("rss", "resident", allowed)
    # It grows when somebody else ends who shared the libraries.
    memoryRow("pss", "proportional")
    memoryRow("dirty", "private and changed", allowed)
    mustReturn("threads")
    mustReturn("descriptors")
    mustReturn("children")
    row("zombies")
    mustNotGrow("windows")
    mustNotGrow("pixmaps")
    mustNotGrow("xResources")
    if (mostOf("zombies") > 0)
        fail("zombies: " mostOf("zombies"))
    if (mostOf("restarts") > 0)
        fail("the panel ended " mostOf("restarts") " times")
    if (!isLong)
        print "(too short to judge memory by)"
    exit failed
}

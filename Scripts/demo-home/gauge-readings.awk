# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
#
# Prints 54 tool calls, each with a result of some 46 kilobytes, as lines of a transcript. The
# environment gives what they have in common: CONTEXT, MODEL, USAGE, MINUTE (a time up to its
# seconds), PARENT (the line before) and PROMPT_ID.

function identity(number) {
    return sprintf("5ea1e7e1-0000-4000-9000-%012d", number)
}

function line(parent, rest, number) {
    printf "{\"parentUuid\":\"%s\",\"isSidechain\":false,%s,\"uuid\":\"%s\",", parent, rest, identity(number)
    printf "\"timestamp\":\"%s%02d.%03dZ\"", ENVIRON["MINUTE"], int(number / 2), number % 2 * 500
}

BEGIN {
    for (row = 0; row < 1150; ++row)
        readings = readings sprintf("2016-%02d-%02d %02d:00  gauge 7  %5.2f m\\n", \
            row % 12 + 1, row % 28 + 1, row % 24, (row * 37 % 640) / 100)

    parent = ENVIRON["PARENT"]
    for (call = 0; call < 54; ++call) {
        message = sprintf("msg_ea1e7e10%04d", call)
        tool = sprintf("toolu_ea1e7e10%04d", call)
        line(parent, "\"message\":{\"model\":\"" ENVIRON["MODEL"] "\",\"id\":\"" message "\",\"type\":\"message\"," \
            "\"role\":\"assistant\",\"content\":[{\"type\":\"tool_use\",\"id\":\"" tool "\"," \
            "\"name\":\"Bash\",\"input\":{\"command\":\"./import --year 2016 --part " call "\"," \
            "\"description\":\"検潮記録を読む\"}}],\"stop_reason\":\"tool_use\",\"stop_sequence\":null," \
            ENVIRON["USAGE"] "},\"requestId\":\"req_ea1e7e10" call "\",\"type\":\"assistant\"", 2 * call)
        print "," ENVIRON["CONTEXT"]
        parent = identity(2 * call)
        line(parent, "\"promptId\":\"" ENVIRON["PROMPT_ID"] "\",\"type\":\"user\",\"message\":{" \
            "\"role\":\"user\",\"content\":[{\"tool_use_id\":\"" tool "\",\"type\":\"tool_result\"," \
            "\"content\":\"" readings "\"}]}", 2 * call + 1)
        print ",\"sourceToolAssistantUUID\":\"" parent "\"," ENVIRON["CONTEXT"]
        parent = identity(2 * call + 1)
    }
}

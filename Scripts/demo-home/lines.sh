# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
#
# Writes the lines of a transcript, in the assistant's order of keys and without blanks between
# them. Each function appends whole lines to the transcript of the session last chosen with
# `use_session`, at the time `clock` (milliseconds since 1970), and moves `clock` on.
# shellcheck disable=SC2034,SC2154 # variables shared with the files beside
# Set by the caller: `home`, `home_json` (the same inside a JSON string), `projects`, `run`.

# By session: who and where it is, and where its conversation stands.
declare -gA session_id project model title branch place parent last_prompt
declare -gA prompt_id turn_start call_id call_tool call_is_open
clock=0
# Whether lines are written at the time that it is, not at the time told by `clock`.
is_live=false
# Counts lines; together with the number of the run it makes every identifier unique.
serial=0

# cast NAME UUID PROJECT MODEL TITLE [BRANCH]: a session that may be written.
cast() {
    session_id[$1]=$2
    project[$1]=$3
    model[$1]=$4
    title[$1]=$5
    branch[$1]=${6:-main}
    parent[$1]=null
    last_prompt[$1]='""'
    call_is_open[$1]=false
}

# The name of a project's directory: every UTF-16 unit of its path outside [A-Za-z0-9] is a dash.
# Counted in bytes: a sequence of four stands for two units, any other one for one.
encode_path() {
    local name
    name=$(printf '%s' "$1" | sed -e 's/[\x80-\xBF]//g' -e 's/[\xF0-\xF7]/--/g' \
        -e 's/[^A-Za-z0-9-]/-/g')
    if ((${#name} > 200)); then
        name="${name:0:200}-$(printf '%s' "$1" | cksum | cut -d ' ' -f 1)"
    fi
    encoded=$name
}

place_session() {
    [[ -z ${place[$1]:-} ]] || return 0
    encode_path "$home/code/${project[$1]}"
    place[$1]="$projects/$encoded"
    mkdir -p "$home/code/${project[$1]}" "${place[$1]}"
}

use_session() {
    session=$1
    sid=${session_id[$1]}
    here="$home_json/code/${project[$1]}"
    place_session "$1"
    directory=${place[$1]}
    transcript="$directory/$sid.jsonl"
    sidechain=false
    refresh_context
}

# What every line of a conversation ends with.
refresh_context() {
    context='"userType":"external","entrypoint":"cli","cwd":"'$here'","sessionId":"'$sid
    context+='","version":"2.1.329","gitBranch":"'${branch[$session]}'"}'
}

# From here on the lines are those of a sub-agent: its own file, the parent's session.
enter_agent() {
    agent_of=$transcript
    main_parent=${parent[$session]}
    parent[$session]=null
    mkdir -p "$directory/$sid/subagents"
    transcript="$directory/$sid/subagents/agent-$1.jsonl"
    printf '{"agentType":"%s","description":"%s","toolUseId":"%s","finished":true}\n' \
        "$2" "$3" "${call_id[$session]}" >"${transcript%.jsonl}.meta.json"
    sidechain=true
    context='"agentId":"'$1'",'$context
}

leave_agent() {
    set_file_time
    touch -d "@$((clock / 1000))" "${transcript%.jsonl}.meta.json"
    transcript=$agent_of
    parent[$session]=$main_parent
    sidechain=false
    refresh_context
}

set_file_time() {
    touch -d "@$((clock / 1000))" "$transcript"
}

# put LINE [MILLISECONDS]: one line, and how long until the next.
put() {
    printf '%s\n' "$1" >>"$transcript"
    if $is_live; then
        read_clock
    else
        clock=$((clock + ${2:-1730}))
    fi
}

read_clock() {
    local time=$EPOCHREALTIME
    clock=$((${time%.*} * 1000 + 10#${time#*.} / 1000))
}

quote() {
    local text=$1 backslash=\\
    text=${text//"$backslash"/"$backslash$backslash"}
    text=${text//'"'/"$backslash\""}
    text=${text//$'\n'/"${backslash}n"}
    text=${text//$'\t'/"${backslash}t"}
    quoted="\"$text\""
}

stamp() {
    printf -v stamp '%(%Y-%m-%dT%H:%M:%S)T.%03dZ' $((clock / 1000)) $((clock % 1000))
}

new_uuid() {
    serial=$((serial + 1))
    printf -v uuid '%08x-%04x-4%03x-a%03x-%012x' $((serial * 2654435761 & 0xffffffff)) "$run" \
        $((serial * 40503 & 0xfff)) $((serial * 977 & 0xfff)) $((serial * 48271))
}

quoted_parent() {
    parent_json=${parent[$session]}
    [[ $parent_json == null ]] || parent_json="\"$parent_json\""
}

# linked REST [MILLISECONDS]: a line of the conversation. REST holds the keys after isSidechain and
# may name the time and identity of the line as @time@ and @uuid@.
linked() {
    local rest=$1
    new_uuid
    stamp
    quoted_parent
    rest=${rest//@time@/$stamp}
    rest=${rest//@uuid@/$uuid}
    put "{\"parentUuid\":$parent_json,\"isSidechain\":$sidechain,$rest,$context" "${2:-1730}"
    parent[$session]=$uuid
}

# user CONTENT [KEYS] [MORE]: KEYS stand before the type, MORE behind the time.
user() {
    linked "\"promptId\":\"${prompt_id[$session]}\",${2:-}\"type\":\"user\",\"message\":{\"role\":\"user\",\
\"content\":$1},\"uuid\":\"@uuid@\",\"timestamp\":\"@time@\"${3:-}"
}

# prompt TEXT: typed by the person.
prompt() {
    quote "$1"
    last_prompt[$session]=$quoted
    new_uuid
    prompt_id[$session]=$uuid
    turn_start[$session]=$clock
    user "$quoted" '' ',"permissionMode":"default","origin":{"kind":"human"},"promptSource":"typed"'
}

# task TEXT: given to a sub-agent.
task() {
    quote "$1"
    user "$quoted"
}

meta() {
    quote "$1"
    user "$quoted" '"isMeta":true,'
}

interrupted() {
    user '[{"type":"text","text":"[Request interrupted by user]"}]'
}

# Starts a message: the identity and usage that all lines of its blocks repeat.
message() {
    new_uuid
    printf -v message_id 'msg_%02x%06x%08x' "$run" "$serial" $((serial * 2246822519 & 0xffffffff))
    local created=$((1800 + serial * 977 % 6000)) spoken=$((180 + serial * 331 % 1400))
    local remembered=$((18000 + serial * 7919 % 60000))
    if $is_live; then
        # So many messages in so little time would soon use up every allowance.
        created=$((created / 10)) spoken=$((spoken / 10)) remembered=$((remembered / 10))
    fi
    usage="\"usage\":{\"input_tokens\":$((3 + serial % 9)),\"cache_creation_input_tokens\":$created,"
    usage+="\"cache_read_input_tokens\":$remembered,"
    usage+="\"output_tokens\":$spoken,\"server_tool_use\":{\
\"web_search_requests\":0,\"web_fetch_requests\":0},\"service_tier\":\"standard\",\
\"cache_creation\":{\"ephemeral_1h_input_tokens\":0,\"ephemeral_5m_input_tokens\":$created}}"
}

# block CONTENT STOP_REASON
block() {
    linked "\"message\":{\"model\":\"${model[$session]}\",\"id\":\"$message_id\",\
\"type\":\"message\",\"role\":\"assistant\",\"content\":[$1],\"stop_reason\":\"$2\",\
\"stop_sequence\":null,$usage},\"requestId\":\"req_${message_id#msg_}\",\"type\":\"assistant\",\
\"uuid\":\"@uuid@\",\"timestamp\":\"@time@\"" "${3:-2210}"
}

think() {
    quote "$1"
    block "{\"type\":\"thinking\",\"thinking\":$quoted,\"signature\":\"ZGVtbw==\"}" "${2:-tool_use}"
}

say() {
    quote "$1"
    block "{\"type\":\"text\",\"text\":$quoted}" "${2:-tool_use}"
}

# call TOOL INPUT: @here@ in the input is the working directory.
call() {
    local tool_id
    printf -v tool_id 'toolu_%02x%06x%08x' "$run" "$serial" $((serial * 3266489917 & 0xffffffff))
    block "{\"type\":\"tool_use\",\"id\":\"$tool_id\",\"name\":\"$1\",\
\"input\":${2//@here@/"$here"}}" tool_use
    call_id[$session]=$tool_id
    call_tool[$session]=$1
    call_is_open[$session]=true
}

# result TEXT: what the last tool call gave.
result() {
    quote "$1"
    local kept="{\"content\":$quoted}"
    [[ ${call_tool[$session]} != Bash ]] || kept="{\"stdout\":$quoted,\"stderr\":\"\",\"interrupted\":false}"
    user "[{\"tool_use_id\":\"${call_id[$session]}\",\"type\":\"tool_result\",\"content\":$quoted}]" '' \
        ",\"toolUseResult\":$kept,\"sourceToolAssistantUUID\":\"${parent[$session]}\""
    call_is_open[$session]=false
}

# step TOOL INPUT RESULT: a message of one tool call, and its result.
step() {
    message
    call "$1" "$2"
    result "$3"
}

progress() {
    quote "$1"
    linked "\"type\":\"progress\",\"data\":{\"type\":\"bash_progress\",\"output\":$quoted,\
\"elapsedTimeSeconds\":4},\"toolUseID\":\"bash-progress-0\",\"parentToolUseID\":\"${call_id[$session]}\",\
\"uuid\":\"@uuid@\",\"timestamp\":\"@time@\""
}

environment_attachment() {
    linked "\"attachment\":{\"type\":\"environment\",\"workingDirectory\":\"$here\",\
\"platform\":\"linux\"},\"type\":\"attachment\",\"uuid\":\"@uuid@\",\"timestamp\":\"@time@\"" 15
}

file_history() {
    new_uuid
    stamp
    put "{\"type\":\"file-history-snapshot\",\"messageId\":\"$uuid\",\"snapshot\":{\
\"messageId\":\"$uuid\",\"trackedFileBackups\":{},\"timestamp\":\"$stamp\"},\
\"isSnapshotUpdate\":false}" 5
}

queue() {
    quote "$2"
    stamp
    put "{\"type\":\"queue-operation\",\"operation\":\"$1\",\"timestamp\":\"$stamp\",\
\"sessionId\":\"$sid\",\"content\":$quoted}" 40
}

summary() {
    quote "$1"
    put "{\"type\":\"summary\",\"summary\":$quoted,\"leafUuid\":\"${parent[$session]}\"}" 5
}

modes() {
    put "{\"type\":\"mode\",\"mode\":\"normal\",\"sessionId\":\"$sid\"}" 2
    put "{\"type\":\"permission-mode\",\"permissionMode\":\"default\",\"sessionId\":\"$sid\"}" 2
}

ai_title() {
    quote "${title[$session]}"
    put "{\"type\":\"ai-title\",\"aiTitle\":$quoted,\"sessionId\":\"$sid\"}" 5
}

# The group that stands between turns.
bookkeeping() {
    ai_title
    put "{\"type\":\"last-prompt\",\"lastPrompt\":${last_prompt[$session]},\
\"leafUuid\":\"${parent[$session]}\",\"sessionId\":\"$sid\"}" 2
    modes
}

# compacted SUMMARY: the conversation goes on from a summary of itself.
compacted() {
    local before=${parent[$session]}
    parent[$session]=null
    linked "\"logicalParentUuid\":\"$before\",\"type\":\"system\",\"subtype\":\"compact_boundary\",\
\"content\":\"Earlier turns were compacted\",\"isMeta\":false,\"timestamp\":\"@time@\",\
\"uuid\":\"@uuid@\",\"level\":\"info\",\"compactMetadata\":{\"trigger\":\"auto\",\"preTokens\":155021}"
    quote "$1"
    user "$quoted" '"isVisibleInTranscriptOnly":true,"isCompactSummary":true,'
}

begin_session() {
    modes
    file_history
    environment_attachment
    prompt "$1"
    ai_title
}

stop_marker() {
    linked "\"type\":\"system\",\"subtype\":\"stop_hook_summary\",\"hookCount\":1,\"hookInfos\":[{\
\"command\":\"demo-stop-hook\",\"durationMs\":14}],\"hookErrors\":[],\
\"preventedContinuation\":false,\"stopReason\":\"\",\"hasOutput\":false,\"level\":\"suggestion\",\
\"timestamp\":\"@time@\",\"uuid\":\"@uuid@\",\"toolUseID\":\"${call_id[$session]:-}\"" 30
}

# finish TEXT: the last words of a turn, and what marks its end.
finish() {
    message
    say "$1" end_turn
    stop_marker
    linked "\"type\":\"system\",\"subtype\":\"turn_duration\",\"durationMs\":$((clock - turn_start[$session])),\
\"messageCount\":12,\"timestamp\":\"@time@\",\"uuid\":\"@uuid@\",\"isMeta\":false" 5
    bookkeeping
}

# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# shellcheck disable=SC2004,SC2034,SC2154 # variables shared with the files beside
#
# Keeps a demo home alive: a story in scenes, each of which appends to one session, spread evenly
# over the time; in the seconds between, the session that is at work goes on working. The story
# ends with a session in each state again.

# "SESSION FUNCTION", in order.
story=(
    'tides work' 'tides work' 'tides work'
    'search answer_question' 'search work' 'tides work' 'search work'
    'hours new_wish' 'hours work' 'search work' 'tides end_tides' 'hours work' 'search work'
    'hours ask_about_sundays' 'search work' 'fresh begin_fresh' 'search work' 'fresh work'
    'search end_search' 'fresh work' 'fresh work' 'fresh stay_at_work'
)

# The session that RUN begins.
cast_fresh() {
    local id
    printf -v id '8ad1c2f4-6b07-4e59-9c3d-%012x' "$1"
    place[fresh]=
    cast fresh "$id" lantern-notes claude-sonnet-4-5-20250929 'Dark theme for the night shift 🌙'
}

# What a transcript tells of where its conversation stands, for a story that goes on with it.
pick_up() {
    local lines answered open
    use_session "$1"
    [[ -f $transcript ]] || return 0
    turn_start[$1]=$clock
    lines=$(tail -n 60 "$transcript")
    last_match parent 's/.*"uuid":"\([^"]*\)".*/\1/p'
    last_match prompt_id 's/.*"promptId":"\([^"]*\)".*/\1/p'
    last_match last_prompt 's/.*"role":"user","content":\(".*"\)},"uuid".*"promptSource":"typed".*/\1/p'
    last_match call_id 's/.*"type":"tool_use","id":"\([^"]*\)".*/\1/p'
    last_match call_tool 's/.*"type":"tool_use","id":"[^"]*","name":"\([^"]*\)".*/\1/p'
    open=${call_id[$1]:-}
    answered=$(sed -n 's/.*"tool_use_id":"\([^"]*\)".*/\1/p' <<<"$lines" | tail -n 1)
    call_is_open[$1]=false
    [[ -z $open || $open == "$answered" ]] || call_is_open[$1]=true
}

# last_match VARIABLE SED_COMMAND: the last of what the command prints from the lines picked up.
last_match() {
    local -n variable=$1
    local found
    found=$(sed -n "$2" <<<"$lines" | tail -n 1)
    [[ -z $found ]] || variable[$session]=$found
}

# One line: the result of the open tool call, or the next call.
work() {
    if ${call_is_open[$session]}; then
        result 'That worked.'
        return
    fi
    message
    case $((serial % 4)) in
    0) call Read '{"file_path":"@here@/README.md"}' ;;
    1) call Bash '{"command":"make check","description":"Run the checks"}' ;;
    2) call Grep '{"pattern":"deprecated","path":"@here@"}' ;;
    3) call Edit '{"file_path":"@here@/CHANGES.md","old_string":"","new_string":"- one more change"}' ;;
    esac
}

stay_at_work() {
    close_call
    work
}

close_call() {
    if ${call_is_open[$session]}; then
        result 'That worked.'
    fi
}

end_turn() {
    close_call
    finish "$1"
}

end_tides() {
    close_call
    todos 'completed:Group rows by local day' 'completed:Pass the time zone in' \
        'completed:Test the night of the change' 'completed:Note it in the changelog'
    end_turn 'The table follows the harbour'"'"'s own day now, short nights included.'
    busy=search
}

answer_question() {
    result 'Réponse : « SQLite FTS5 ».'
}

end_search() {
    end_turn 'La recherche passe par FTS5 et ignore les accents.'
    busy=fresh
}

new_wish() {
    close_call
    prompt 'Danke! Bitte noch die Sonntage im Advent – da ist vormittags offen. 🕯️'
}

sundays_input='{"questions":[{"question":"Gilt das für alle vier Adventssonntage?","header":"Advent","options":[{"label":"Alle vier","description":"Auch der vierte"},{"label":"Nur die ersten drei","description":"Der vierte bleibt zu"}],"multiSelect":false}]}'

ask_about_sundays() {
    close_call
    message
    call AskUserQuestion "$sundays_input"
}

begin_fresh() {
    begin_session 'The night shift finds the page too bright. Add a dark theme that follows the system.'
}

# A story told before left its sessions elsewhere: they take their first places again.
restore_places() {
    cast_fresh $((run - 1))
    pick_up fresh
    [[ ! -f $transcript ]] || end_turn 'The dark theme is there.'
    use_session tides
    close_call
    prompt 'Do the same for the table of the currents.'
    work
    use_session search
    close_call
    prompt 'Et pour les pièces jointes ?'
    message
    call AskUserQuestion "$question_input"
    use_session hours
    end_turn 'Die Adventssonntage stehen jetzt in der Datei.'
}

play() {
    local scene=$1
    use_session "${scene% *}"
    read_clock
    "${scene#* }"
}

tell_story() {
    local beat scene=0 due
    for ((beat = 1; beat <= live_seconds; ++beat)); do
        due=$((beat * ${#story[@]} / live_seconds))
        ((scene < due)) || play "$busy work"
        for (( ; scene < due; ++scene)); do
            play "${story[scene]}"
        done
        sleep 1 || :
        ! $is_stopped || return 0
    done
}

live() {
    local name
    is_stopped=false
    trap 'is_stopped=true' INT TERM
    run=$((10#$run + 1))
    printf '%s\n' "$run" >"$marker"
    is_live=true
    read_clock
    for name in tides search hours; do
        pick_up "$name"
    done
    ((run == 1)) || restore_places
    cast_fresh "$run"
    busy=tides
    tell_story
}

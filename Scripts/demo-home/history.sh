# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# shellcheck disable=SC2004,SC2034,SC2154 # variables shared with the files beside
#
# Sessions of the last six days, too old to be listed, that count in the usage; and a transcript of
# a sub-agent in the place where earlier versions of the assistant put it.

cast_history() {
    cast berths 31d5a0c8-7f42-4e6b-9b18-c09e5d27a4f6 harbour-app claude-sonnet-4-5-20250929 \
        'Berth list as CSV'
    cast notes-hindi 7c0b9e3d-15a6-4d84-b3f2-68e1d7a05c9b lantern-notes claude-opus-4-5-20251101 \
        'नोट्स की खोज में मात्राएँ ठीक करें'
    cast pruning a86f4d12-c3e0-4795-8d6b-1f29b7e504ca orchard.planner claude-fable-5 \
        'Pruning reminders, weekly'
    cast imprint 4e27c6f9-b081-4a5d-9e34-83d0f1a6b75c 'Gärtnerei Mühlbach' \
        claude-haiku-4-5-20251001 'Impressum prüfen 👨‍👩‍👧'
    cast buoys d90e3b75-4a1f-4c68-a2d7-5b86c0f9e143 harbour-app claude-opus-4-5-20251101 \
        'מפת המצופים'
    cast links 62a8f5e0-9d37-4b12-8f4c-e7b1350d6a98 lantern-notes claude-sonnet-4-5-20250929 \
        'Backlinks between notebooks'
    cast warmup 00000000-5a11-4e00-8000-000000000001 lantern-notes claude-haiku-4-5-20251001 Warmup
}

# past_session NAME HOURS STEPS PROMPT: a session that ended so long ago.
past_session() {
    local count
    use_session "$1"
    at $(($2 * 60))
    begin_session "$4"
    for ((count = 0; count < $3; ++count)); do
        step Read "{\"file_path\":\"@here@/src/part-$count.txt\"}" "Part $count of the file."
    done
    message
    think 'Everything is in place now.' end_turn
    finish 'Done, and the tests pass.'
    set_file_time
}

write_history() {
    past_session berths 14 6 'Export the berth list as CSV, one line per berth, for Mr Lindqvist.'
    past_session notes-hindi 27 9 'खोज में "कि" और "की" अलग-अलग हैं, पर मात्राएँ छूट जाती हैं। ठीक करें।'
    past_session pruning 51 12 'Send one reminder a week, not one per tree.'
    past_session imprint 77 5 'Bitte prüfe, ob im Impressum alles Nötige steht.'
    past_session buoys 100 14 'הוסף מפה של המצופים עם האורות שלהם.'
    past_session links 141 8 'Show which notebooks link to the open one.'
}

write_bystander() {
    use_session warmup
    transcript="$directory/agent-1f0e2d3c.jsonl"
    sidechain=true
    context="\"agentId\":\"1f0e2d3c\",${context/2.1.329/2.0.76}"
    at 30
    new_uuid
    prompt_id[$session]=$uuid
    task 'Warmup'
    message
    say 'Ready.' end_turn
    set_file_time
}

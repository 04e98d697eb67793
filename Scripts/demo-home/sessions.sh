# SPDX-FileCopyrightText: 2026 the Sallowmere authors
# SPDX-License-Identifier: MIT
# shellcheck shell=bash
# shellcheck disable=SC2004,SC2034,SC2154 # variables shared with the files beside
#
# The sessions that the program lists: one in each state. The people and their projects are made up.

cast_listed() {
    cast tides 5b1f3c52-8a44-4c0e-9d07-2f6a1be0c911 harbour-app claude-opus-4-5-20251101 \
        'Fix the tide table around midnight 🌊' fix/tide-table
    cast search 0d9e7a16-3b5c-4f7e-8a21-94c6d05e7b32 lantern-notes claude-sonnet-4-5-20250929 \
        $'Choisir l\'index de recherche des cahiers d\'e\xCC\x81te\xCC\x81'
    cast seasons c47a2e90-61d8-4b93-b0f5-7e18a9d3c264 orchard.planner claude-fable-5 \
        'خطة مواسم البستان 🍎' seasons
    cast hours 9f60b8d4-27e3-4a1c-8c5e-d1a47b3f0e58 'Gärtnerei Mühlbach' \
        claude-haiku-4-5-20251001 'Öffnungszeiten an Feiertagen 👩🏽‍🌾'
    cast gauges e2c81f07-94ab-4d36-a7f9-0b5d6c3e1a8f harbour-app claude-opus-4-5-20251101 \
        '潮位データ十年分の取り込み' import/gauges
}

# at MINUTES [SECONDS]: so long ago.
at() {
    clock=$(((now - $1 * 60 - ${2:-0}) * 1000))
}

todos() {
    local status content input='' entry
    for entry; do
        status=${entry%%:*}
        content=${entry#*:}
        input+="${input:+,}{\"content\":\"$content\",\"status\":\"$status\",\"activeForm\":\"$content\"}"
    done
    step TodoWrite "{\"todos\":[$input]}" 'The list was updated.'
}

write_working() {
    use_session tides
    at 170
    begin_session 'The tide table shows tomorrow'"'"'s first low water under today when it falls after midnight. Mara from the harbour office found it on the 3rd. 👩‍💻 Please find out why.'
    message
    think 'A day boundary in UTC, perhaps, while the harbour thinks in local time.'
    say 'I look at how the table groups its rows.'
    call Grep '{"pattern":"startOfDay","path":"@here@/src","output_mode":"content"}'
    result $'src/tides/table.cpp:41: const auto day = startOfDay(row.time);\nsrc/tides/day.cpp:9: Day startOfDay(Instant instant)'
    step Read '{"file_path":"@here@/src/tides/table.cpp"}' $'1\t#include "table.h"\n2\t\n3\t// Rows are grouped by UTC day.'
    delegate_timezones
    finish 'The rows are grouped by UTC day, not by the harbour'"'"'s. Shall I change it?'
    at 1 5
    file_history
    prompt 'Yes, use the harbour'"'"'s own time zone, and add a test for the night of the change to summer time.'
    todos 'completed:Group rows by local day' 'completed:Pass the time zone in' \
        'in_progress:Test the night of the change' 'pending:Note it in the changelog'
    step Edit '{"file_path":"@here@/src/tides/table.cpp","old_string":"startOfDay(row.time)","new_string":"startOfDay(row.time, harbour.zone)"}' 'The file was changed.'
    message
    say 'Now the test for the night that has only 23 hours.'
    call Edit '{"file_path":"@here@/tests/table_test.cpp","old_string":"// more","new_string":"TEST(TideTable, KeepsTheShortNight) {}"}'
    result 'The file was changed.'
    at 0 4
    message
    call Bash '{"command":"cmake --build build && ctest --test-dir build -R TideTable","description":"Build and run the tide table tests"}'
    progress '[3/9] Building table_test.cpp'
    set_file_time
}

# A sub-agent that runs in the background and reports when it has finished.
delegate_timezones() {
    message
    call Agent '{"description":"Compare time zone libraries","prompt":"Which time zone database does each dependency carry?","subagent_type":"Explore"}'
    result 'The agent was started in the background.'
    enter_agent a7c3e91b Explore 'Compare time zone libraries'
    task 'Which time zone database does each dependency carry?'
    step Grep '{"pattern":"tzdata","path":"@here@"}' 'vcpkg.json:12: "tzdata"'
    step WebFetch '{"url":"https://tz.example/releases","prompt":"Which release is the newest?"}' 'Release 2026b.'
    message
    say 'Only one dependency carries a database, and it is current.' end_turn
    leave_agent
    queue enqueue '<task-notification>Agent a7c3e91b has finished.</task-notification>'
    user '"<task-notification>Agent a7c3e91b has finished: the database is current.</task-notification>"'
}

question_input='{"questions":[{"question":"Quel moteur de recherche pour les cahiers ? 🔎","header":"Recherche","options":[{"label":"SQLite FTS5","description":"Dans le fichier qui existe déjà"},{"label":"Un index « maison »","description":"Petit, mais à écrire"},{"label":"Aucun : \"grep\" suffit","description":"Rien à entretenir"}],"multiSelect":false}]}'

write_question() {
    use_session search
    at 34
    begin_session $'Les notes de Zoe\xCC\x81 Marchand sont lentes a\xCC\x80 chercher : 40 000 cahiers, et l\'accent n\'est pas toujours e\xCC\x81crit de la me\u0302me fac\xCC\xA7on. Que proposes-tu ?'
    step Bash '{"command":"du -sh notes && find notes -name \"*.md\" | wc -l","description":"Mesurer les cahiers"}' $'412M\tnotes\n40117'
    prompt 'Regarde aussi la normalisation Unicode.'
    interrupted
    prompt 'Commence par la normalisation, la recherche ensuite.'
    todos 'completed:Normaliser en NFC' 'in_progress:Choisir le moteur' 'pending:Écrire la migration'
    step Read '{"file_path":"@here@/src/search.ts"}' $'1\texport function search(text: string) {'
    at 6 20
    message
    think 'Trois voies sont possibles ; le choix revient à Zoé.'
    say 'Il me faut une décision avant de continuer.'
    call AskUserQuestion "$question_input"
    set_file_time
}

# shellcheck disable=SC2016 # backticks of Markdown
plan_input='{"plan":"# Seasons for the orchard\n\n1. **Model**: a `Season` has a name, a first and a last day.\n2. **Import** the old calendar of *Yusuf Haddad*:\n   - apples 🍎, quinces and medlars\n   - days without a year stay open\n3. **View**: one row per tree, one column per week.\n\n| week | work |\n| --- | --- |\n| 9 | prune |\n| 38 | pick |\n\n```sh\nmake check\n```\n\nNothing is deleted; the old calendar stays readable."}'

write_plan() {
    use_session seasons
    at 52
    begin_session 'أضف المواسم إلى مخطط البستان: كل شجرة لها أسابيع تقليم وقطاف. اكتب الخطة أولاً ثم انتظر موافقتي 🙏'
    meta 'The plan mode is on: nothing is changed before the plan was approved.'
    step Read '{"file_path":"@here@/calendar/yusuf.csv"}' $'tree,prune,pick\nquince,10,41'
    message
    say 'سأقرأ التقويم القديم أولاً.'
    call Grep '{"pattern":"week_of","path":"@here@/lib","output_mode":"count"}'
    result 'lib/weeks.rb:7'
    at 10 45
    message
    think 'The calendar has gaps; the plan has to say what becomes of them.'
    call ExitPlanMode "$plan_input"
    set_file_time
}

write_done() {
    use_session hours
    at 75
    summary 'Karte der Anfahrt erneuert'
    modes
    user_command
    begin_session 'Die Gärtnerei hat an Feiertagen andere Zeiten. Frau Özdemir möchte sie selbst eintragen können – ohne dass jemand die Seite neu baut.'
    step Read '{"file_path":"@here@/inhalt/öffnungszeiten.json"}' '{"mo":"8-18","so":null}'
    todos 'completed:Datei für Feiertage' 'completed:Anzeige anpassen' 'completed:Anleitung schreiben'
    compacted 'Bisher: Die Zeiten stehen in einer Datei, die Anzeige liest sie beim Laden.'
    step Edit '{"file_path":"@here@/inhalt/feiertage.json","old_string":"{}","new_string":"{\"12-24\":\"8-12\"}"}' 'Die Datei wurde geändert.'
    at 17
    step Bash '{"command":"npm test -- --silent","description":"Prüfungen laufen lassen"}' '23 passed'
    finish $'Fertig: Frau Özdemir trägt Feiertage in `feiertage.json` ein.\nDie Anleitung liegt daneben.'
    set_file_time
}

# A command of the client itself, which nobody typed as a prompt.
user_command() {
    new_uuid
    prompt_id[$session]=$uuid
    user '"<local-command-caveat>What follows came from a local command.</local-command-caveat>"' '"isMeta":true,'
    user '"<command-name>/model</command-name>\n<command-message>model</command-message>\n<command-args>haiku</command-args>"'
    user '"<local-command-stdout>Model: haiku</local-command-stdout>"'
}

write_idle() {
    use_session gauges
    at 512
    clock=$((clock / 60000 * 60000))
    begin_session '検潮所の十年分の記録を読み込んで、欠けている時間を報告してください。港務課の田中さんが使います。'
    write_gauge_readings
    finish '読み込みました。'
    prompt '欠けている時間を年ごとの表にしてください。'
    step Bash '{"command":"./import --report","description":"欠測を数える"}' '欠測 1 827 時間'
    finish '表ができました。欠測は合わせて 1 827 時間です。'
    set_file_time
}

# Two and a half megabytes of results, a second apart within one minute.
write_gauge_readings() {
    clock=$((clock / 60000 * 60000 + 60000))
    stamp
    message
    CONTEXT=$context MODEL=${model[$session]} USAGE=$usage MINUTE=${stamp:0:17} PARENT=${parent[$session]} \
        PROMPT_ID=${prompt_id[$session]} awk -f "$parts/gauge-readings.awk" >>"$transcript"
    parent[$session]=5ea1e7e1-0000-4000-9000-000000000107
    clock=$((clock + 60000))
}

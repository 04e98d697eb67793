// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a transcript. However it is read, its tail says the same, and what it says keeps
// the bounds that the views rely on.
#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Transcripts/TranscriptParser.h"
#include "Support/FakeFileSystem.h"
#include "Support/Graphemes.h"
#include "Support/Input.h"
#include "Support/Lines.h"
#include "Support/Require.h"

#include <algorithm>
#include <utility>

namespace sallowmere::fuzz {
namespace {

const std::string path = "/transcripts/session.jsonl";

std::optional<ParsedTail> tailOf(std::string transcript, std::size_t readLimit = SIZE_MAX) {
    FakeFileSystem files;
    files.addFile(path, std::move(transcript)).readLimit = readLimit;
    return TranscriptParser::parseTail(files, path);
}

/// Line and block number of an event.
std::pair<int, int> position(const LogEvent& event) {
    bool lineOk = false;
    bool blockOk = false;
    const int line = event.id.section(u'.', 0, 0).toInt(&lineOk);
    const int block = event.id.section(u'.', 1).toInt(&blockOk);
    require(lineOk && blockOk && line >= 1 && block >= 0, "an event has its line and its block");
    return {line, block};
}

void requireEventRules(const LogEvent& event) {
    require(!event.detail, "the reader gives no details");
    if (event.kind == LogEvent::Kind::text) {
        require(!event.label.isEmpty() && !event.label.contains(u'\n'), "prose fills one line");
        require(graphemes(event.label) <= 120, "prose has at most 120 characters");
        require(TranscriptParser::activityLine(event) == event.label, "prose speaks for itself");
    } else {
        require(TranscriptParser::activityLine(event).size() <= event.label.size() + 20,
                "a call's activity line is its label in other words");
    }
}

void requireTailRules(const ParsedTail& tail) {
    require(tail.events.size() <= TranscriptParser::maxEvents, "at most 12 events are kept");
    std::for_each(tail.events.begin(), tail.events.end(), requireEventRules);
    require(std::is_sorted(tail.events.begin(), tail.events.end(),
                           [](const LogEvent& left, const LogEvent& right) {
                               return position(left) <= position(right);
                           }),
            "events come in order, each once");
    require(tail.ask || !tail.askAnswered, "only what was asked is answered");
    require(tail.plan || !tail.planAnswered, "only what was planned is reviewed");
    require(!tail.plan || !tail.plan->isEmpty(), "a plan says something");
    require(!tail.title || !tail.title->isEmpty(), "a title says something");
    require(!tail.model || !tail.model->startsWith(u'<'), "a placeholder is no model");
    require(!tail.todo
                || (tail.todo->total > 0 && tail.todo->completed >= 0
                    && tail.todo->completed <= tail.todo->total),
            "no more is done than there is to do");
    if (tail.lastPrompt) {
        require(!tail.lastPrompt->isEmpty() && !tail.lastPrompt->startsWith(u'<')
                    && !tail.lastPrompt->contains(u'\n'),
                "a prompt was typed and fills one line");
        require(graphemes(*tail.lastPrompt) <= 141, "a prompt has at most 140 characters and …");
    }
}

/// Each call's argument, read from the lines without the reader's folding.
void requireArgumentRules(std::string_view line) {
    JsonReader reader;
    const JsonObject object = reader.object(line).value_or(JsonObject());
    const JsonObject message = object.object("message").value_or(JsonObject());
    for (const JsonObject& block :
         dictArray(message, "content").value_or(std::vector<JsonObject>())) {
        const QString argument =
            TranscriptParser::primaryArgument(block.object("input").value_or(JsonObject()));
        require(graphemes(argument) <= 49, "an argument has at most 48 characters and …");
        require(!argument.contains(u'\n'), "an argument fills one line");
    }
}

/// The cut looks at a window of the text only; where it falls must not depend on that.
void requireCutRules(QStringView text) {
    for (const qsizetype count : {1, 3, 48, 120, 140, 160}) {
        const QStringView cut = firstCharacters(text, count);
        require(cut == text.first(endOfGraphemes(text, count)), "a cut falls between characters");
        const QString elision = elided(text, count);
        require(elision.startsWith(cut) && elision.size() <= cut.size() + 1
                    && (elision.size() == cut.size()) == (cut.size() == text.size()),
                "what is cut off is marked");
    }
}

/// With so much before it that only the input itself lies behind the tail's first line feed.
void requireSameBehindLongLine(const std::string& transcript, const ParsedTail& expected) {
    const std::string longLine(TranscriptParser::tailBytes, 'x');
    require(tailOf(longLine + '\n' + transcript) == expected,
            "what was cut at the start is left out");
}

void requireReaderRules(const std::string& transcript) {
    const std::optional<ParsedTail> tail = tailOf(transcript);
    require(tail.has_value() == !transcript.empty(), "what has bytes has a tail");
    if (!tail) {
        return;
    }
    requireTailRules(*tail);
    require(tailOf(transcript, transcript.size() / 8 + 1) == tail, "small reads say the same");
    require(tailOf(withBytesReplaced(transcript)) == tail, "bad bytes count as replaced");
    const std::vector<std::string_view> lines = nonEmptyLines(transcript);
    require(TranscriptParser::parseLines(lines) == *tail, "a small file is its lines");
    std::for_each(lines.begin(), lines.end(), requireArgumentRules);
    if (transcript.size() % 16 == 0) {
        requireSameBehindLongLine(transcript, *tail);
    }
    requireCutRules(decodeUtf8(transcript));
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireReaderRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}

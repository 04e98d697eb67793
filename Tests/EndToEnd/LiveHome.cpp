// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/LiveHome.h"

#include "Support/TranscriptLines.h"

#include <chrono>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace sallowmere {

namespace {

std::string timeBefore(std::chrono::seconds ago) {
    const auto now = (std::chrono::system_clock::now() - ago).time_since_epoch();
    const std::time_t seconds = std::chrono::duration_cast<std::chrono::seconds>(now).count();
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(now).count() % 1'000;
    std::tm utc{};
    char text[32] = {};
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", gmtime_r(&seconds, &utc));
    const std::string fraction = std::to_string(1'000 + milliseconds).substr(1);
    return std::string(text) + '.' + fraction + 'Z';
}

} // namespace

LiveSession::LiveSession(const TemporaryHome& home, const std::string& project,
                         const std::string& title)
    : id_("0c0ffee0-0000-4000-8000-" + project), title_(title),
      directory_(home.makeDirectory("work/" + project)),
      transcript_(home.write(".claude/projects/-work-" + project + '/' + id_ + ".jsonl",
                             transcript::title(title) + '\n')),
      ago_(60) {
    work();
    say("All done.");
    finish();
    ago_ = std::chrono::seconds(0);
}

std::string LiveSession::members() const {
    return "\"cwd\":" + transcript::json(directory_) + ",\"sessionId\":" + transcript::json(id_)
           + ',' + transcript::time(timeBefore(ago_));
}

void LiveSession::append(const std::string& line) {
    std::ofstream stream(transcript_, std::ios::binary | std::ios::app);
    stream << line + '\n' << std::flush;
    if (!stream) {
        throw std::runtime_error("cannot write " + transcript_);
    }
}

void LiveSession::work(std::string_view prompt) {
    append(transcript::prompt(prompt, members()));
}

void LiveSession::say(std::string_view text) {
    append(transcript::assistant(transcript::prose(text), members()));
}

void LiveSession::ask(std::string_view question, const std::vector<std::string>& options) {
    std::string labels;
    for (const std::string& option : options) {
        labels += (labels.empty() ? "" : ",") + ("{\"label\":" + transcript::json(option) + '}');
    }
    append(transcript::assistant(
        transcript::toolUse("AskUserQuestion",
                            "{\"questions\":[{\"question\":" + transcript::json(question)
                                + ",\"options\":[" + labels + "]}]}"),
        members()));
}

void LiveSession::plan(std::string_view text) {
    append(transcript::assistant(transcript::plan(text), members()));
}

void LiveSession::takeAnswer() {
    append(transcript::toolResult(members()));
}

void LiveSession::finish() {
    append(transcript::turnEnd(members()));
}

LiveHome::LiveHome(const std::string& settings)
    : assistant_(home_.makeLink("programs/claude", SALLOWMERE_KEY_RECORDER)) {
    home_.write(".config/sallowmere/settings.json",
                "{\"usageAPIEnabled\":false,\"soundsEnabled\":false" + settings + "}\n");
    home_.makeDirectory(".config/sallowmere/notifications");
    std::filesystem::permissions(home_.makeDirectory("run"), std::filesystem::perms::owner_all);
}

LiveSession LiveHome::addSession(const std::string& project, const std::string& title) const {
    return {home_, project, title};
}

std::string LiveHome::requestPermission(const LiveSession& session,
                                        const std::string& message) const {
    // Complete at once, as the hook makes it.
    const std::string part =
        home_.write("part", "{\"session_id\":" + transcript::json(session.id())
                                + ",\"message\":" + transcript::json(message) + "}\n");
    std::string path = home_ / (".config/sallowmere/notifications/" + session.id() + ".json");
    std::filesystem::rename(part, path);
    return path;
}

} // namespace sallowmere

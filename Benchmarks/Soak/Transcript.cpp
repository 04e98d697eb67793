// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/Transcript.h"

#include <array>
#include <cerrno>
#include <ctime>
#include <initializer_list>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace sallowmere {

namespace {

constexpr std::int64_t million = 1'000'000;

constexpr std::string_view messageEnd =
    R"(],"stop_reason":"tool_use","stop_sequence":null,"usage":{"input_tokens":4,)"
    R"("cache_creation_input_tokens":40,"cache_read_input_tokens":900,)"
    R"("output_tokens":30,"service_tier":"standard"}},"type":"assistant",)";

std::string joined(std::initializer_list<std::string_view> pieces) {
    std::string text;
    for (const std::string_view piece : pieces) {
        text += piece;
    }
    return text;
}

std::string written(Timestamp time) {
    const std::int64_t microseconds = time.time_since_epoch().count();
    const std::time_t seconds = microseconds / million;
    std::tm calendar{};
    gmtime_r(&seconds, &calendar);
    std::array<char, 40> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &calendar);
    const std::string fraction = std::to_string(million + microseconds % million).substr(1, 3);
    return std::string(text.data(), length) + '.' + fraction + 'Z';
}

timespec fileTime(Timestamp time) {
    const std::int64_t microseconds = time.time_since_epoch().count();
    return {microseconds / million, microseconds % million * 1'000};
}

[[noreturn]] void fail(const std::filesystem::path& path) {
    throw std::system_error(errno, std::generic_category(), path.native());
}

} // namespace

Transcript::Transcript(std::filesystem::path path, std::string cwd, std::string model)
    : path_(std::move(path)), cwd_(std::move(cwd)), model_(std::move(model)) {
    std::filesystem::create_directories(path_.parent_path());
    std::filesystem::create_directories(cwd_);
}

void Transcript::title(std::string_view text, Timestamp now) {
    put(joined({R"({"type":"ai-title","aiTitle":")", text, R"(","sessionId":")",
                path_.stem().native(), "\"}"}),
        now);
}

void Transcript::prompt(std::string_view text, Timestamp now) {
    put(joined({R"({"parentUuid":null,"isSidechain":false,"promptId":"p","type":"user",)"
                R"("message":{"role":"user","content":")",
                text, R"("},"permissionMode":"default",)", context(now)}),
        now);
}

void Transcript::step(std::string_view messageId, int lines, std::string_view result,
                      Timestamp now) {
    for (int line = 1; line < lines; ++line) {
        message(messageId, R"({"type":"text","text":"I look at it."})", now);
    }
    toolCall(messageId, "Bash", R"({"command":"make check","description":"Run the checks"})", now);
    put(joined({R"({"parentUuid":"7f","isSidechain":false,"type":"user","message":{"role":"user",)"
                R"("content":[{"tool_use_id":"toolu_1","type":"tool_result","content":")",
                result, R"("}]},)", context(now)}),
        now);
}

void Transcript::ask(std::string_view messageId, Timestamp now) {
    toolCall(messageId, "AskUserQuestion",
             R"({"questions":[{"question":"Which one?","header":"Choice","options":)"
             R"([{"label":"The first"},{"label":"The second"}],"multiSelect":false}]})",
             now);
}

void Transcript::plan(std::string_view messageId, Timestamp now) {
    toolCall(messageId, "ExitPlanMode",
             R"({"plan":"# A plan\n\n1. **First** this\n2. then *that*\n\n| a | b |\n| --- | --- |)"
             R"(\n| 1 | 2 |\n\n```sh\nmake check\n```\n"})",
             now);
}

void Transcript::endTurn(Timestamp now) {
    put(joined({R"({"parentUuid":"7f","isSidechain":false,"type":"system",)"
                R"("subtype":"stop_hook_summary","hookCount":1,)",
                context(now)}),
        now);
}

void Transcript::beginAgain(Timestamp now) {
    isTorn_ = false;
    rest_.clear();
    size_ = 0;
    write({}, now, false);
}

void Transcript::remove() {
    std::filesystem::remove(path_);
}

std::string Transcript::context(Timestamp now) const {
    return joined({R"("uuid":"7f","timestamp":")", written(now),
                   R"(","userType":"external","entrypoint":"cli","cwd":")", cwd_,
                   R"(","sessionId":")", path_.stem().native(),
                   R"(","version":"2.1.329","gitBranch":"main"})"});
}

void Transcript::message(std::string_view messageId, std::string_view block, Timestamp now) {
    put(joined({R"({"parentUuid":"7f","isSidechain":false,"message":{"model":")", model_,
                R"(","id":")", messageId, R"(","type":"message","role":"assistant","content":[)",
                block, messageEnd, context(now)}),
        now);
}

void Transcript::toolCall(std::string_view messageId, std::string_view name, std::string_view input,
                          Timestamp now) {
    message(messageId,
            joined({R"({"type":"tool_use","id":"toolu_1","name":")", name, R"(","input":)", input,
                    "}"}),
            now);
}

void Transcript::put(std::string line, Timestamp now) {
    line = std::exchange(rest_, {}) + line + '\n';
    if (std::exchange(isTorn_, false)) {
        rest_ = line.substr(line.size() / 2);
        line.resize(line.size() / 2);
    }
    write(line, now, true);
}

void Transcript::write(std::string_view bytes, Timestamp now, bool append) {
    const int file = open(path_.c_str(), // NOLINT(cppcoreguidelines-pro-type-vararg)
                          O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC), 0600);
    if (file < 0) {
        fail(path_);
    }
    const bool isWritten = ::write(file, bytes.data(), bytes.size()) == std::ssize(bytes);
    const std::array<timespec, 2> times{fileTime(now), fileTime(now)};
    const bool isDated = futimens(file, times.data()) == 0;
    close(file);
    if (!isWritten || !isDated) {
        fail(path_);
    }
    size_ += bytes.size();
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Corpus.h"

#include <array>
#include <chrono>
#include <ctime>
#include <fstream>

namespace sallowmere {

namespace {

constexpr std::int64_t sixDays = 518'400;
constexpr int projectCount = 20;
/// About what a turn comes to; a smaller transcript holds messages alone.
constexpr std::size_t turnBytes = 150'000;

std::int64_t nowMilliseconds() {
    using namespace std::chrono;
    return floor<milliseconds>(system_clock::now()).time_since_epoch().count();
}

} // namespace

std::string Corpus::transcript(std::size_t bytes, double age) {
    sessionId_ = identifier("", 36);
    clock_ = nowMilliseconds() - static_cast<std::int64_t>(age * 1'000);
    std::string text;
    text.reserve(bytes + 200'000);
    const bool isSmall = bytes < turnBytes;
    while (text.size() < bytes) {
        text += isSmall ? message() : turn();
    }
    return text;
}

void Corpus::write(const std::filesystem::path& root, int files, std::uint64_t bytes) {
    for (int file = 0; file < files; ++file) {
        const auto project =
            root / ("-home-user-code-project-" + std::to_string(file % projectCount));
        std::filesystem::create_directories(project);
        const double age = static_cast<double>(sixDays) * (file + 1) / files;
        std::ofstream(project / (identifier("", 36) + ".jsonl"), std::ios::binary)
            << transcript(bytes / static_cast<std::uint64_t>(files), age);
    }
}

std::string Corpus::turn() {
    std::string text =
        conversationLine("user", R"({"role":"user","content":")" + prose(between(60, 900)) + "\"}");
    text += R"({"parentUuid":")" + identifier("", 36)
            + R"(","isSidechain":false,"attachment":{"type":"prompt_snapshot","content":")"
            + prose(between(4'000, 40'000)) + R"("},"type":"attachment","uuid":")"
            + identifier("", 36) + R"(","timestamp":")" + timestamp() + "\"}\n";
    for (std::size_t messages = between(4, 8); messages > 0; --messages) {
        text += message();
        text += conversationLine(
            "user",
            R"({"role":"user","content":[{"tool_use_id":"toolu_01","type":"tool_result","content":")"
                + prose(between(500, 20'000)) + "\"}]}");
    }
    text += R"({"type":"last-prompt","lastPrompt":")" + prose(100) + R"(","sessionId":")"
            + sessionId_ + "\"}\n";
    text += R"({"type":"mode","mode":"normal","sessionId":")" + sessionId_ + "\"}\n";
    return text;
}

std::string Corpus::message() {
    const std::string id = identifier("msg_01", 22);
    const int output = static_cast<int>(between(20, 2'000));
    std::string text =
        assistantLine(id,
                      R"({"type":"thinking","thinking":")" + prose(between(200, 2'000))
                          + R"(","signature":")" + identifier("", 300) + "\"}",
                      output);
    if (between(0, 1) == 0) {
        text += assistantLine(id, R"({"type":"text","text":")" + prose(between(40, 1'200)) + "\"}",
                              output);
    }
    text += assistantLine(
        id,
        R"({"type":"tool_use","id":"toolu_01","name":"Edit","input":{"file_path":"/home/user/a.cpp","old_string":")"
            + prose(between(40, 1'500)) + R"(","new_string":")" + prose(between(40, 2'500))
            + "\"}}",
        output);
    return text;
}

std::string Corpus::textMessage(const std::string& text, std::size_t bytes) {
    return assistantLine(identifier("msg_01", 22),
                         R"({"type":"text","text":")" + text + prose(bytes) + "\"}",
                         static_cast<int>(between(20, 2'000)));
}

std::string Corpus::assistantLine(const std::string& id, const std::string& block, int output) {
    return conversationLine(
        "assistant",
        R"({"model":"claude-opus-4-5-20251101","id":")" + id
            + R"(","type":"message","role":"assistant","content":[)" + block
            + R"(],"stop_reason":"tool_use","stop_sequence":null,"usage":{"input_tokens":)"
            + std::to_string(between(1, 4'000)) + R"(,"cache_creation_input_tokens":)"
            + std::to_string(between(0, 20'000)) + R"(,"cache_read_input_tokens":)"
            + std::to_string(between(0, 120'000))
            + R"(,"cache_creation":{"ephemeral_5m_input_tokens":0,"ephemeral_1h_input_tokens":0})"
            + R"(,"output_tokens":)" + std::to_string(output) + R"(,"service_tier":"standard"}})");
}

std::string Corpus::conversationLine(const char* type, const std::string& message) {
    clock_ += static_cast<std::int64_t>(between(200, 4'000));
    return R"({"parentUuid":")" + identifier("", 36)
           + R"(","isSidechain":false,"promptId":"1","message":)" + message + R"(,"type":")" + type
           + R"(","uuid":")" + identifier("", 36) + R"(","timestamp":")" + timestamp()
           + R"(","userType":"external","entrypoint":"cli","cwd":"/home/user/code/project")"
           + R"(,"sessionId":")" + sessionId_ + R"(","version":"2.1.329","gitBranch":"main"})"
           + "\n";
}

std::string Corpus::prose(std::size_t bytes) {
    static constexpr std::array<const char*, 24> words{
        "the ",
        "value ",
        "of ",
        "a ",
        "window ",
        "returns ",
        "when ",
        "nothing ",
        "is ",
        "left; ",
        "if (x) {\\n    ",
        "}\\n",
        "\\\"key\\\"",
        "const ",
        "auto& ",
        "= map[i];\\n",
        "// see below\\n",
        "\\t",
        "naïve ",
        "…",
        "test_case(",
        ") -> ",
        "0x1f, ",
        "for every line ",
    };
    std::string text;
    text.reserve(bytes + 32);
    while (text.size() < bytes) {
        text += words[random_() % words.size()];
    }
    return text;
}

std::string Corpus::timestamp() {
    const std::time_t seconds = clock_ / 1'000;
    std::tm calendar{};
    gmtime_r(&seconds, &calendar);
    std::array<char, 40> text{};
    const std::size_t length =
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &calendar);
    const std::string fraction = std::to_string(1'000 + clock_ % 1'000).substr(1);
    return std::string(text.data(), length) + '.' + fraction + 'Z';
}

std::size_t Corpus::between(std::size_t least, std::size_t most) {
    return least + random_() % (most - least + 1);
}

std::string Corpus::identifier(const char* prefix, std::size_t length) {
    static constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    std::string text = prefix;
    for (std::size_t i = 0; i < length; ++i) {
        text += letters[random_() % letters.size()];
    }
    return text;
}

} // namespace sallowmere

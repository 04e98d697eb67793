// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <random>
#include <string>

namespace sallowmere {

/// Writes transcripts in the shapes and proportions of real ones: of the bytes, a good fifth are
/// assistant lines with usage, the rest tool results, attachments and bookkeeping. The same seed
/// gives the same texts; times spread over the last six days.
class Corpus {
public:
    explicit Corpus(std::uint32_t seed = 1) : random_(seed) {}

    /// One transcript of at least `bytes` bytes. `age` is the seconds since its first line.
    std::string transcript(std::size_t bytes, double age);

    /// One assistant message: a line for each of its blocks, all with its id and its usage.
    std::string message();

    /// One assistant message of one line: `text`, which must need no escapes, and so many bytes of
    /// prose.
    std::string textMessage(const std::string& text, std::size_t bytes);

    /// Writes `files` transcripts of together about `bytes` bytes into projects below `root`.
    void write(const std::filesystem::path& root, int files, std::uint64_t bytes);

private:
    std::string turn();
    std::string prose(std::size_t bytes);
    std::string conversationLine(const char* type, const std::string& message);
    std::string assistantLine(const std::string& id, const std::string& block, int output);
    std::string timestamp();
    std::size_t between(std::size_t least, std::size_t most);
    std::string identifier(const char* prefix, std::size_t length);

    std::mt19937 random_;
    std::string sessionId_;
    /// Milliseconds since 1970.
    std::int64_t clock_ = 0;
};

} // namespace sallowmere

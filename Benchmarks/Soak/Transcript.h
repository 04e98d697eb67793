// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Timestamp.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace sallowmere {

/// A transcript that is being written, and what it holds. Its file's time is that of its last line,
/// whatever clock that came from. Throws when it cannot be written.
class Transcript {
public:
    /// `path` is its file, which is made with the first line, and `cwd` the session's directory.
    Transcript(std::filesystem::path path, std::string cwd, std::string model);

    const std::filesystem::path& path() const { return path_; }
    /// Bytes of the file.
    std::uint64_t size() const { return size_; }

    void title(std::string_view text, Timestamp now);
    void prompt(std::string_view text, Timestamp now);
    /// A message that calls a tool, in `lines` lines that repeat its id and usage, and what the
    /// tool gave. `messageId` is the message's and no other's; `result` needs no escapes.
    void step(std::string_view messageId, int lines, std::string_view result, Timestamp now);
    void ask(std::string_view messageId, Timestamp now);
    void plan(std::string_view messageId, Timestamp now);
    void endTurn(Timestamp now);

    /// The next line comes in two parts: what is left of it with the next call.
    void tearNextLine() { isTorn_ = true; }
    /// The file begins anew and is shorter than before.
    void beginAgain(Timestamp now);
    void remove();

private:
    std::string context(Timestamp now) const;
    void message(std::string_view messageId, std::string_view block, Timestamp now);
    void toolCall(std::string_view messageId, std::string_view name, std::string_view input,
                  Timestamp now);
    void put(std::string line, Timestamp now);
    void write(std::string_view bytes, Timestamp now, bool append);

    std::filesystem::path path_;
    std::string cwd_;
    std::string model_;
    std::uint64_t size_ = 0;
    bool isTorn_ = false;
    /// The rest of a torn line.
    std::string rest_;
};

} // namespace sallowmere

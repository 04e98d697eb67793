// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/World.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace sallowmere {

namespace {

constexpr double secondsPerHour = 3'600;
constexpr std::size_t proseBytes = std::size_t{4} << 20;
constexpr std::uint64_t projectCount = 8;
constexpr int mostLines = 3;

constexpr std::array<std::string_view, 4> models{"claude-opus-4-5-20251101",
                                                 "claude-sonnet-4-5-20250929",
                                                 "claude-haiku-4-5-20251001", "claude-fable-5"};

std::string someProse(std::mt19937_64& random) {
    constexpr std::array<std::string_view, 8> words{
        "the ", "window ", "returns ", "nothing; ", "if (x) {\\n", "naïve ", "…", "0x1f, "};
    std::string text;
    text.reserve(proseBytes + 16);
    while (text.size() < proseBytes) {
        text += words[random() % words.size()];
    }
    return text;
}

bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// A part that splits neither a character nor an escape.
std::string_view part(std::string_view text, std::size_t start, std::size_t length) {
    std::size_t end = std::min(start + length, text.size());
    while (start < end && (!beginsCharacter(text[start]) || text[start - (start > 0)] == '\\')) {
        ++start;
    }
    while (end > start
           && (text[end - 1] == '\\' || (end < text.size() && !beginsCharacter(text[end])))) {
        --end;
    }
    return text.substr(start, end - start);
}

/// The name that the assistant gives to the directory of a project's transcripts.
std::string encoded(std::string path) {
    for (char& letter : path) {
        const bool isKept = (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
                            || (letter >= '0' && letter <= '9');
        letter = isKept ? letter : '-';
    }
    return path;
}

} // namespace

World::World(std::filesystem::path home, std::uint64_t seed, WorldPace pace)
    : home_(std::move(home)), seed_(seed), pace_(pace), random_(seed), prose_(someProse(random_)) {}

void World::step(Timestamp now, double seconds) {
    while (std::ssize(sessions_) < pace_.sessions) {
        sessions_.push_back(begin(now));
    }
    if (happens(pace_.goingsPerHour, seconds)) {
        replace(anySession(), now);
    }
    if (happens(pace_.shorteningsPerHour, seconds)) {
        shorten(anySession(), now);
    }
    if (happens(pace_.turnsPerHour, seconds)) {
        endTurn(now);
    }
    for (due_ += pace_.bytesPerSecond * seconds; due_ > 0;) {
        grow(now);
    }
}

World::Session World::begin(Timestamp now) {
    const std::uint64_t number = counts_.begun++;
    const std::string cwd =
        (home_ / "soak" / ("project-" + std::to_string(below(projectCount)))).native();
    std::string tail = std::to_string(1'000'000'000'000ULL + number);
    const std::string id =
        std::to_string(10'000'000 + seed_ % 10'000'000) + "-0000-4000-8000-" + tail.substr(1);
    Session session{Transcript(home_ / ".claude/projects" / encoded(cwd) / (id + ".jsonl"), cwd,
                               std::string(models[below(models.size())])),
                    cwd};
    session.transcript.title("Soak " + std::to_string(number), now);
    session.transcript.prompt("Go on with number " + std::to_string(number), now);
    return session;
}

void World::grow(Timestamp now) {
    Session& session = anySession();
    if (session.transcript.size() > pace_.largest) {
        shorten(session, now);
    }
    const std::uint64_t before = session.transcript.size();
    if (below(50) == 0) {
        session.transcript.tearNextLine();
    }
    const std::size_t length = below(2 * pace_.stepBytes);
    const std::size_t start = below(prose_.size() - std::min(prose_.size() - 1, length));
    session.transcript.step(nextMessage(), 1 + static_cast<int>(below(mostLines)),
                            part(prose_, start, length), now);
    const std::uint64_t grown = session.transcript.size() - before;
    due_ -= static_cast<double>(grown);
    counts_.bytes += grown;
}

void World::endTurn(Timestamp now) {
    Session& session = anySession();
    switch (below(4)) {
    case 0:
        session.transcript.ask(nextMessage(), now);
        return;
    case 1:
        session.transcript.plan(nextMessage(), now);
        return;
    default:
        session.transcript.endTurn(now);
    }
}

void World::shorten(Session& session, Timestamp now) {
    session.transcript.beginAgain(now);
    session.transcript.title("Again", now);
    session.transcript.prompt("Begin again", now);
    ++counts_.shortened;
}

void World::replace(Session& session, Timestamp now) {
    session.transcript.remove();
    ++counts_.gone;
    session = begin(now);
}

bool World::happens(double perHour, double seconds) {
    constexpr std::uint64_t fine = 1'000'000'000;
    return static_cast<double>(below(fine)) / fine < perHour * seconds / secondsPerHour;
}

World::Session& World::anySession() {
    return sessions_[below(sessions_.size())];
}

std::string World::nextMessage() {
    return "msg_" + std::to_string(seed_) + '_' + std::to_string(++counts_.messages);
}

} // namespace sallowmere

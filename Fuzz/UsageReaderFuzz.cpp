// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a transcript and two bytes that say where it is cut. However it reaches the
// calculator, in pieces, in small reads, over two files, the usage is what the rules say of the
// whole.
#include "Sallowmere/Usage/UsageCalculator.h"
#include "Support/FakeFileSystem.h"
#include "Support/Input.h"
#include "Support/Require.h"
#include "UsageReference.h"

#include <algorithm>
#include <cmath>

namespace sallowmere::fuzz {
namespace {

constexpr Timestamp now =
    std::chrono::sys_days{std::chrono::November / 21 / std::chrono::year{2026}}
    + std::chrono::hours(12);
constexpr Timestamp horizon =
    now - std::chrono::seconds(static_cast<std::int64_t>(UsageCalculator::horizonSpan));

const std::string root = "/projects";
const std::string first = root + "/a/first.jsonl";
const std::string second = root + "/a/second.jsonl";

/// Weights that multiply whole numbers exactly, and limits that hide no sum.
Settings settings() {
    Settings result = Settings::defaults("/home/user");
    result.claudeRoot = root;
    result.weightCacheRead = 0.125;
    result.fiveHourLimit = 1;
    result.weeklyLimit = 1;
    result.weeklyFableLimit = 1;
    return result;
}

/// Equal, or both no number at all: counts of some 1e308 tokens, of either sign, add up to that.
bool same(double left, double right) {
    return left == right || (std::isnan(left) && std::isnan(right));
}

bool same(const UsageWindow& left, const UsageWindow& right) {
    return same(left.weightedTokens, right.weightedTokens) && same(left.limit, right.limit)
           && left.resetsIn == right.resetsIn && left.officialFraction == right.officialFraction;
}

bool sameWeek(const UsageSnapshot& left, const UsageSnapshot& right) {
    return same(left.weekly, right.weekly) && same(*left.weeklyFable, *right.weeklyFable)
           && left.computedAt == right.computedAt;
}

bool same(const UsageSnapshot& left, const UsageSnapshot& right) {
    return sameWeek(left, right) && same(left.fiveHour, right.fiveHour);
}

UsageSnapshot snapshotOf(const std::string& transcript, std::size_t readLimit = SIZE_MAX) {
    FakeFileSystem files;
    files.addFile(first, transcript, now).readLimit = readLimit;
    return UsageCalculator(files).compute(settings(), now);
}

void requireReferenceFigures(const UsageSnapshot& snapshot, const UsageReference& reference) {
    require(same(snapshot.weekly.weightedTokens, reference.week(now, false)), "the week adds up");
    require(same(snapshot.weeklyFable->weightedTokens, reference.week(now, true)),
            "the family's week adds up");
    require(same(snapshot.fiveHour.weightedTokens, reference.block(now)), "the block adds up");
    require(same(snapshot.fiveHour.limit,
                 std::max(std::max(1.0, reference.peak()), snapshot.fiveHour.weightedTokens)),
            "the largest block is the least limit");
}

/// A block that once began is never taken back: messages that arrive out of order may leave
/// another current block than a fresh look at them would find.
void requireSame(const UsageSnapshot& grown, const UsageSnapshot& whole, bool inOrder,
                 const char* what) {
    require(inOrder ? same(grown, whole) : sameWeek(grown, whole), what);
}

void requireSameInPieces(const std::string& transcript, std::size_t cut, const UsageSnapshot& whole,
                         bool inOrder) {
    FakeFileSystem files;
    UsageCalculator calculator(files);
    files.addFile(first, transcript.substr(0, cut), now);
    const UsageSnapshot before = calculator.compute(settings(), now);
    require(same(before, calculator.compute(settings(), now)), "nothing new changes nothing");
    files.addFile(first, transcript, now);
    requireSame(calculator.compute(settings(), now), whole, inOrder, "pieces are the whole");
}

/// Cut between lines, a transcript's two parts in two files are the whole too.
void requireSameInFiles(const std::string& transcript, std::size_t cut, const UsageSnapshot& whole,
                        bool inOrder) {
    const std::size_t lineFeed = transcript.rfind('\n', cut);
    const std::size_t start = lineFeed == std::string::npos ? 0 : lineFeed + 1;
    FakeFileSystem files;
    UsageCalculator calculator(files);
    files.addFile(first, transcript.substr(0, start), now);
    calculator.compute(settings(), now);
    files.addFile(second, transcript.substr(start), now);
    requireSame(calculator.compute(settings(), now), whole, inOrder, "two files are the whole");
    require(same(UsageCalculator(files).compute(settings(), now), whole),
            "two files at once are the whole");
}

/// Some time later, by what is remembered and by a fresh look.
void requireSameLater(const std::string& transcript, std::size_t cut) {
    const Timestamp later = now + std::chrono::hours(cut % 200);
    FakeFileSystem files;
    UsageCalculator calculator(files);
    files.addFile(first, transcript, now);
    calculator.compute(settings(), now);
    files.file(first).modified = later;
    const UsageSnapshot remembered = calculator.compute(settings(), later);
    const UsageSnapshot fresh = UsageCalculator(files).compute(settings(), later);
    require(sameWeek(remembered, fresh), "what fell behind the horizon is left out");
    require(remembered.fiveHour.resetsIn != fresh.fiveHour.resetsIn
                || same(remembered.fiveHour.weightedTokens, fresh.fiveHour.weightedTokens),
            "one block has one sum");
}

void requireUsageRules(std::string transcript) {
    std::size_t cut = 0;
    if (transcript.size() >= 2) {
        const std::string tail = transcript.substr(transcript.size() - 2);
        transcript.resize(transcript.size() - 2);
        cut = static_cast<unsigned char>(tail[0]) * 256U + static_cast<unsigned char>(tail[1]);
        cut %= transcript.size() + 1;
    }
    const UsageReference reference(transcript, settings(), horizon);
    const UsageSnapshot whole = snapshotOf(transcript);
    requireReferenceFigures(whole, reference);
    require(same(snapshotOf(transcript, 1 + cut % 13), whole), "small reads say the same");
    // One of them for each input: a computation's large read buffer is what an input costs.
    if (cut % 3 == 0) {
        requireSameInPieces(transcript, cut, whole, reference.isInOrder());
    } else if (cut % 3 == 1) {
        requireSameInFiles(transcript, cut, whole, reference.isInOrder());
    } else if (!reference.repeats) {
        requireSameLater(transcript, cut);
    }
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireUsageRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}

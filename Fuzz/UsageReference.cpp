// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "UsageReference.h"

#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Transcripts/JSONLine.h"
#include "Support/Lines.h"

#include <algorithm>

namespace sallowmere::fuzz {

namespace {

constexpr std::chrono::hours blockLength(5);
constexpr std::chrono::days weekLength(7);

double sum(const std::vector<UsageReference::Message>& messages) {
    double total = 0;
    for (const UsageReference::Message& message : messages) {
        total += message.weighted;
    }
    return total;
}

bool isEarlier(const UsageReference::Message& left, const UsageReference::Message& right) {
    return left.time < right.time;
}

bool isFable(const QString& model) {
    return model.contains(u"fable") || model.contains(u"mythos") || model.contains(u"opus");
}

} // namespace

UsageReference::UsageReference(std::string_view transcript, const Settings& settings,
                               Timestamp horizon) {
    const std::size_t end = transcript.rfind('\n') + 1;
    for (const std::string_view line : nonEmptyLines(transcript.substr(0, end))) {
        readLine(line, settings, horizon);
    }
}

void UsageReference::readLine(std::string_view line, const Settings& settings, Timestamp horizon) {
    if (line.find(R"("type":"assistant")") == std::string_view::npos
        || line.find(R"("usage")") == std::string_view::npos) {
        return;
    }
    JsonReader reader;
    const JsonObject object = reader.object(line).value_or(JsonObject());
    const JsonObject message = object.object("message").value_or(JsonObject());
    const auto id = message.string("id");
    const auto usage = message.object("usage");
    const auto time = JSONLine::date(object.string("timestamp"));
    if (object.string("type") != "assistant" || !id || !usage || !time || *time <= horizon) {
        return;
    }
    if (!ids_.emplace(*id).second) {
        repeats = true;
        return;
    }
    const double weighted =
        usage->number("input_tokens").value_or(0) * settings.weightInput
        + usage->number("output_tokens").value_or(0) * settings.weightOutput
        + usage->number("cache_creation_input_tokens").value_or(0) * settings.weightCacheCreate
        + usage->number("cache_read_input_tokens").value_or(0) * settings.weightCacheRead;
    messages.push_back(
        {*time, weighted, isFable(message.text("model").value_or(QString()).toLower())});
}

bool UsageReference::isInOrder() const {
    return std::is_sorted(messages.begin(), messages.end(), isEarlier);
}

std::vector<UsageReference::Message> UsageReference::sorted() const {
    std::vector<Message> result = messages;
    std::stable_sort(result.begin(), result.end(), isEarlier);
    return result;
}

double UsageReference::week(Timestamp now, bool fableOnly) const {
    std::vector<Message> inWeek = sorted();
    std::erase_if(inWeek, [=](const Message& message) {
        return message.time <= now - weekLength || message.time > now
               || (fableOnly && !message.isFable);
    });
    return sum(inWeek);
}

std::vector<std::vector<UsageReference::Message>> UsageReference::blocks() const {
    std::vector<std::vector<Message>> result;
    for (const Message& message : sorted()) {
        if (result.empty() || message.time >= result.back().front().time + blockLength) {
            result.emplace_back();
        }
        result.back().push_back(message);
    }
    return result;
}

double UsageReference::block(Timestamp now) const {
    const auto all = blocks();
    const bool isOver = all.empty() || now >= all.back().front().time + blockLength;
    return isOver ? 0 : sum(all.back());
}

double UsageReference::peak() const {
    double largest = 0;
    for (const auto& block : blocks()) {
        largest = std::max(largest, sum(block));
    }
    return largest;
}

} // namespace sallowmere::fuzz

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is a response of the service. Whatever stands in it, the figures that come of it are
// shares of an allowance, and each is one that the response holds.
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Usage/UsageAPI.h"
#include "Support/Input.h"
#include "Support/Require.h"

#include <algorithm>

namespace sallowmere::fuzz {
namespace {

using Limit = OfficialUsage::Limit;

constexpr Timestamp now =
    std::chrono::sys_days{std::chrono::November / 21 / std::chrono::year{2026}}
    + std::chrono::hours(12);
constexpr std::string_view blanks = " \t\r\n";

/// The share that a percentage stands for; absent when it is no percentage.
std::optional<double> shareOf(const JsonObject& object, std::string_view key) {
    const std::optional<double> percent = object.number(key);
    if (!percent || object.boolean(key) || !(*percent >= 0)) {
        return std::nullopt;
    }
    return *percent > 100 ? 1 : *percent / 100;
}

/// The shares of one kind in the list, in order.
std::vector<double> sharesOf(const JsonObject& response, std::string_view kind) {
    std::vector<double> shares;
    for (const JsonObject& entry :
         dictArray(response, "limits").value_or(std::vector<JsonObject>())) {
        const std::optional<double> share = shareOf(entry, "percent");
        if (share && entry.string("kind") == kind) {
            shares.push_back(*share);
        }
    }
    return shares;
}

std::optional<double> latestShare(const JsonObject& response, std::string_view kind,
                                  std::string_view olderKey) {
    const std::vector<double> shares = sharesOf(response, kind);
    return shares.empty() ? shareOf(response.object(olderKey).value_or(JsonObject()), "utilization")
                          : std::optional(shares.back());
}

std::optional<double> largestShare(const JsonObject& response, std::string_view kind) {
    const std::vector<double> shares = sharesOf(response, kind);
    return shares.empty() ? std::nullopt
                          : std::optional(*std::max_element(shares.begin(), shares.end()));
}

void requireLimit(const std::optional<Limit>& limit, const std::optional<double>& share) {
    require(limit.has_value() == share.has_value(), "a limit is found where there is one");
    if (!limit) {
        return;
    }
    require(limit->fraction >= 0 && limit->fraction <= 1, "a fraction lies between 0 and 1");
    require(limit->fraction == *share, "a fraction is the one that is written");
    require(!limit->resetsAt
                || (*limit->resetsAt > distantPast - std::chrono::days(367)
                    && *limit->resetsAt < distantFuture + std::chrono::days(2)),
            "a reset lies within the years of four digits");
}

void requireFigures(const OfficialUsage& usage, const JsonObject& response) {
    requireLimit(usage.session, latestShare(response, "session", "five_hour"));
    requireLimit(usage.weekly, latestShare(response, "weekly_all", "seven_day"));
    requireLimit(usage.scoped, largestShare(response, "weekly_scoped"));
    require(usage.scoped || !usage.scopedLabel, "only a scoped limit has a name");
}

void requireNoneOfCut(const std::string& response) {
    const std::size_t end = response.find_last_not_of(blanks);
    for (const std::size_t length : {end, end / 2}) {
        require(!UsageAPI::parse(response.substr(0, length), now), "a cut response has no figures");
    }
}

void requireUsageRules(const std::string& text) {
    const std::optional<OfficialUsage> usage = UsageAPI::parse(text, now);
    JsonReader reader;
    const std::optional<JsonObject> response = reader.object(text);
    requireFigures(usage.value_or(OfficialUsage()), response.value_or(JsonObject()));
    if (usage) {
        require(!usage->isEmpty(), "figures are not empty");
        require(usage->fetchedAt == now, "figures are of their time");
        requireNoneOfCut(text);
    }
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireUsageRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}

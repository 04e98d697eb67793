// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageAPI.h"

#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Transcripts/JSONLine.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <utility>

namespace sallowmere {

namespace {

constexpr int ok = 200;
constexpr int unauthorized = 401;
constexpr int forbidden = 403;
constexpr double millisecondsPerSecond = 1'000;

/// The credentials in what a keychain item or a credentials file holds.
std::optional<JsonObject> oauthBlob(const std::string& bytes, JsonReader& reader) {
    const std::optional<JsonObject> root = reader.object(bytes);
    return root ? root->object("claudeAiOauth") : std::nullopt;
}

/// A number only: true and false are none here.
std::optional<double> numberOnly(const JsonObject& object, std::string_view key) {
    return object.boolean(key) ? std::nullopt : object.number(key);
}

bool hasExpired(const JsonObject& blob, Timestamp now) {
    const std::optional<double> expiresAt = numberOnly(blob, "expiresAt");
    return expiresAt && *expiresAt / millisecondsPerSecond <= secondsBetween(Timestamp{}, now);
}

HttpRequest request(const std::string& url, const std::string& token, double timeout) {
    return {url,
            {{"Authorization", "Bearer " + token},
             {"anthropic-beta", "oauth-2025-04-20"},
             {"Content-Type", "application/json"}},
            timeout};
}

bool isNumeric(char c) {
    return c >= '0' && c <= '9';
}

/// With at most three digits of the fraction; absent when there is nothing to cut.
std::optional<std::string> withShortFraction(std::string_view text) {
    const std::size_t dot = text.find('.');
    if (dot == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view fraction = text.substr(dot + 1);
    const auto end = std::find_if_not(fraction.begin(), fraction.end(), isNumeric);
    if (end == fraction.end()) {
        return std::nullopt;
    }
    const auto digits = static_cast<std::size_t>(end - fraction.begin());
    return std::string(text.substr(0, dot + 1))
        .append(fraction.substr(0, std::min<std::size_t>(digits, 3)))
        .append(fraction.substr(digits));
}

std::optional<Timestamp> date(std::optional<std::string_view> value) {
    if (const std::optional<Timestamp> exact = JSONLine::date(value)) {
        return exact;
    }
    const auto shortened = value ? withShortFraction(*value) : std::nullopt;
    return shortened ? JSONLine::date(*shortened) : std::nullopt;
}

std::optional<double> percentFraction(std::optional<double> percent) {
    if (!percent || !std::isfinite(*percent) || *percent < 0) {
        return std::nullopt;
    }
    return std::min(*percent / 100, 1.0);
}

std::optional<QString> modelName(const JsonObject& entry) {
    const auto scope = entry.object("scope");
    const auto model = scope ? scope->object("model") : std::nullopt;
    return model ? model->text("display_name") : std::nullopt;
}

void readLimit(const JsonObject& entry, OfficialUsage& usage) {
    const std::optional<double> fraction = percentFraction(numberOnly(entry, "percent"));
    const std::optional<std::string_view> kind = entry.string("kind");
    if (!fraction || !kind) {
        return;
    }
    const OfficialUsage::Limit limit{*fraction, date(entry.string("resets_at"))};
    if (kind == "session") {
        usage.session = limit;
    } else if (kind == "weekly_all") {
        usage.weekly = limit;
    } else if (kind == "weekly_scoped"
               && limit.fraction > (usage.scoped ? usage.scoped->fraction : -1)) {
        usage.scoped = limit;
        usage.scopedLabel = modelName(entry);
    }
}

/// A limit as older responses give it.
std::optional<OfficialUsage::Limit> olderLimit(const JsonObject& root, std::string_view key) {
    const std::optional<JsonObject> entry = root.object(key);
    const auto fraction = entry ? percentFraction(numberOnly(*entry, "utilization")) : std::nullopt;
    return fraction
               ? std::optional(OfficialUsage::Limit{*fraction, date(entry->string("resets_at"))})
               : std::nullopt;
}

} // namespace

/// Until when nobody is asked. Any thread.
class UsageAPI::Block {
public:
    bool isBlocked(Timestamp now) {
        const std::lock_guard locked(lock_);
        if (blockedUntil_ && *blockedUntil_ <= now) {
            blockedUntil_.reset();
        }
        return blockedUntil_.has_value();
    }

    /// A block is only ever prolonged.
    void block(Timestamp until) {
        const std::lock_guard locked(lock_);
        blockedUntil_ = std::max(blockedUntil_.value_or(until), until);
    }

private:
    std::mutex lock_;
    std::optional<Timestamp> blockedUntil_;
};

std::string UsageAPI::endpoint() {
    return "https://" SALLOWMERE_USAGE_HOST "/api/oauth/usage";
}

UsageAPI::UsageAPI(Keychain& keychain, const FileSystem& files, Clock clock, std::string home,
                   std::string url)
    : keychain_(keychain), files_(files), clock_(std::move(clock)), home_(std::move(home)),
      url_(std::move(url)), block_(std::make_shared<Block>()) {}

void UsageAPI::fetch(double timeout, HttpClient& session, Completion completion) {
    const Timestamp now = clock_();
    const auto token = block_->isBlocked(now) ? std::nullopt : accessToken(now);
    if (!token) {
        completion(std::nullopt);
        return;
    }
    session.get(request(url_, *token, timeout),
                [block = block_, clock = clock_,
                 completion = std::move(completion)](std::optional<HttpResponse> response) {
                    const int status = response ? response->status : 0;
                    if (status == unauthorized || status == forbidden) {
                        block->block(advancedBy(clock(), blockAfterRefusal));
                    }
                    completion(status == ok ? parse(response->body, clock()) : std::nullopt);
                });
}

std::optional<std::string> UsageAPI::accessToken(Timestamp now) {
    JsonReader reader;
    const std::optional<std::string> item = keychainData();
    std::optional<JsonObject> blob = item ? oauthBlob(*item, reader) : std::nullopt;
    if (!blob) {
        const auto file = readWholeFile(files_, joinPath(home_, ".claude/.credentials.json"));
        blob = file ? oauthBlob(*file, reader) : std::nullopt;
    }
    const auto token = blob ? blob->string("accessToken") : std::nullopt;
    if (!token || token->empty() || hasExpired(*blob, now)) {
        return std::nullopt;
    }
    return std::string(*token);
}

std::optional<std::string> UsageAPI::keychainData() {
    Keychain::Item item = keychain_.genericPassword("Claude Code-credentials");
    if (item.outcome == Keychain::Item::Outcome::refused) {
        block_->block(distantFuture);
    }
    return item.outcome == Keychain::Item::Outcome::found ? std::optional(std::move(item.secret))
                                                          : std::nullopt;
}

std::optional<OfficialUsage> UsageAPI::parse(std::string_view data, Timestamp now) {
    JsonReader reader;
    const std::optional<JsonObject> root = reader.object(data);
    if (!root) {
        return std::nullopt;
    }
    OfficialUsage usage;
    usage.fetchedAt = now;
    for (const JsonObject& entry : dictArray(*root, "limits").value_or(std::vector<JsonObject>())) {
        readLimit(entry, usage);
    }
    if (!usage.session) {
        usage.session = olderLimit(*root, "five_hour");
    }
    if (!usage.weekly) {
        usage.weekly = olderLimit(*root, "seven_day");
    }
    return usage.isEmpty() ? std::nullopt : std::optional(std::move(usage));
}

} // namespace sallowmere

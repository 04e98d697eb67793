// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/UsageAPI.h"
#include "Support/FakeFileSystem.h"
#include "Support/FakeNetwork.h"
#include "Support/Times.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace sallowmere {
namespace {

using std::chrono::days;
using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

const std::string credentialsFile = "/home/user/.claude/.credentials.json";
const std::string body = R"({"five_hour":{"utilization":42.5}})";

/// Credentials as the assistant keeps them, with further members of the inner object.
std::string credentials(const std::string& token, const std::string& members = "") {
    return R"({"claudeAiOauth":{"accessToken":")" + token + '"' + members + "}}";
}

std::string expiring(Timestamp moment) {
    return R"(,"expiresAt":)"
           + std::to_string(std::chrono::floor<milliseconds>(moment).time_since_epoch().count());
}

class UsageAPITest : public testing::Test {
protected:
    /// What came of a question.
    struct Told {
        int completions = 0;
        std::optional<OfficialUsage> usage;
    };

    Timestamp now = at("2025-06-02T09:14:05.678Z");
    FakeKeychain keychain;
    FakeFileSystem files;
    FakeHttpClient session;
    std::optional<UsageAPI> api;

    void SetUp() override {
        keep(Keychain::Item::Outcome::found, credentials("from-keychain"));
        startAnew();
    }

    /// As if the program had been started again.
    void startAnew(const std::string& url = "https://service.example/usage") {
        api.emplace(
            keychain, files, [this] { return now; }, "/home/user", url);
    }

    void keep(Keychain::Item::Outcome outcome, std::string secret = {}) {
        keychain.item = {outcome, std::move(secret)};
    }

    std::shared_ptr<Told> fetch() {
        auto told = std::make_shared<Told>();
        api->fetch(8, session, [told](std::optional<OfficialUsage> usage) {
            ++told->completions;
            told->usage = std::move(usage);
        });
        return told;
    }

    /// Asks, and answers a question that comes of it.
    std::shared_ptr<Told> fetch(std::optional<HttpResponse> response) {
        const std::size_t before = session.asked.size();
        std::shared_ptr<Told> told = fetch();
        EXPECT_EQ(session.asked.size(), before + 1) << "the service is asked";
        EXPECT_EQ(told->completions, 0);
        session.asked.back().completion(std::move(response));
        EXPECT_EQ(told->completions, 1);
        return told;
    }

    /// Whether the service would be asked. Asks it if so.
    bool asks() {
        const std::size_t before = session.asked.size();
        const std::shared_ptr<Told> told = fetch();
        const bool isAsked = session.asked.size() > before;
        EXPECT_EQ(told->completions, isAsked ? 0 : 1);
        EXPECT_EQ(told->usage, std::nullopt);
        return isAsked;
    }

    bool isBlocked() { return !asks(); }

    OfficialUsage figures(Timestamp fetchedAt) {
        OfficialUsage usage;
        usage.session = OfficialUsage::Limit{0.425, {}};
        usage.fetchedAt = fetchedAt;
        return usage;
    }
};

TEST_F(UsageAPITest, AsksTheService) {
    EXPECT_EQ(UsageAPI::endpoint(), "https://api.anthropic.com/api/oauth/usage");
    fetch();
    ASSERT_EQ(session.asked.size(), 1);
    const HttpRequest& request = session.asked.front().request;
    EXPECT_EQ(request.url, "https://service.example/usage");
    EXPECT_THAT(request.headers, ElementsAre(Pair("Authorization", "Bearer from-keychain"),
                                             Pair("anthropic-beta", "oauth-2025-04-20"),
                                             Pair("Content-Type", "application/json")));
    EXPECT_EQ(request.timeout, 8);
}

TEST_F(UsageAPITest, AsksAtTheEndpointUnlessToldOtherwise) {
    UsageAPI usual(
        keychain, files, [this] { return now; }, "/home/user");
    usual.fetch(2.5, session, [](const std::optional<OfficialUsage>&) {});
    EXPECT_EQ(session.asked.at(0).request.url, UsageAPI::endpoint());
    EXPECT_EQ(session.asked.at(0).request.timeout, 2.5);
}

TEST_F(UsageAPITest, AnAnswerIsParsedAsOfTheTimeItCame) {
    const std::shared_ptr<Told> told = fetch();
    now += seconds(3);
    session.asked.at(0).completion(HttpResponse{200, body});
    EXPECT_EQ(told->completions, 1);
    EXPECT_EQ(told->usage, figures(at("2025-06-02T09:14:08.678Z")));
}

TEST_F(UsageAPITest, AnAnswerWithoutFiguresIsNone) {
    for (const char* damaged : {"", "{", "[]", "{}", "<html></html>"}) {
        EXPECT_EQ(fetch(HttpResponse{200, damaged})->usage, std::nullopt) << damaged;
    }
}

TEST_F(UsageAPITest, NoAnswerIsNoneAndBlocksNothing) {
    EXPECT_EQ(fetch(std::nullopt)->usage, std::nullopt);
    EXPECT_FALSE(isBlocked());
}

TEST_F(UsageAPITest, AnotherStatusIsNoneAndBlocksNothing) {
    for (const int status : {0,   100, 199, 201, 204, 206, 301, 302, 307, 400, 402,
                             404, 407, 408, 418, 429, 500, 502, 503, 529, 599, 2001}) {
        EXPECT_EQ(fetch(HttpResponse{status, body})->usage, std::nullopt) << status;
        EXPECT_FALSE(isBlocked()) << status;
    }
}

TEST_F(UsageAPITest, QuestionsUnderWayAreToldApart) {
    const std::shared_ptr<Told> first = fetch();
    const std::shared_ptr<Told> second = fetch();
    session.asked.at(1).completion(HttpResponse{200, body});
    EXPECT_EQ(first->completions, 0);
    EXPECT_EQ(second->usage, figures(now));
    session.asked.at(0).completion(std::nullopt);
    EXPECT_EQ(first->completions, 1);
    EXPECT_EQ(second->completions, 1);
}

TEST_F(UsageAPITest, WithoutATokenNobodyIsAsked) {
    keep(Keychain::Item::Outcome::missing);
    const std::shared_ptr<Told> told = fetch();
    EXPECT_EQ(told->completions, 1);
    EXPECT_EQ(told->usage, std::nullopt);
    EXPECT_THAT(session.asked, IsEmpty());
    files.addFile(credentialsFile, credentials("new"));
    EXPECT_FALSE(isBlocked()) << "until there is one";
}

TEST_F(UsageAPITest, ARefusalBlocksForTenMinutesToTheMicrosecond) {
    for (const int status : {401, 403}) {
        startAnew();
        const std::shared_ptr<Told> told = fetch();
        now += seconds(2);
        session.asked.back().completion(HttpResponse{status, body});
        EXPECT_EQ(told->usage, std::nullopt);
        const Timestamp refused = now;
        for (const microseconds later : {microseconds(0), microseconds(1),
                                         microseconds(seconds(300)), microseconds(599'999'999)}) {
            now = refused + later;
            EXPECT_TRUE(isBlocked()) << later.count();
        }
        now = refused + seconds(600);
        EXPECT_FALSE(isBlocked());
    }
}

TEST_F(UsageAPITest, WhileBlockedTheKeychainIsLeftAlone) {
    fetch(HttpResponse{401, ""});
    keychain.asked.clear();
    files.forget();
    EXPECT_TRUE(isBlocked());
    EXPECT_THAT(keychain.asked, IsEmpty());
    EXPECT_THAT(files.opened(), IsEmpty());
}

TEST_F(UsageAPITest, AnotherRefusalProlongsTheBlock) {
    fetch();
    fetch();
    session.asked.at(0).completion(HttpResponse{401, ""});
    const Timestamp first = now;
    now += seconds(100);
    session.asked.at(1).completion(HttpResponse{403, ""});
    now = first + seconds(600);
    EXPECT_TRUE(isBlocked());
    now = first + seconds(700) - microseconds(1);
    EXPECT_TRUE(isBlocked());
    now = first + seconds(700);
    EXPECT_FALSE(isBlocked());
}

TEST_F(UsageAPITest, ABlockIsNeverShortened) {
    fetch();
    fetch();
    session.asked.at(0).completion(HttpResponse{401, ""});
    const Timestamp first = now;
    now -= seconds(300);
    session.asked.at(1).completion(HttpResponse{401, ""});
    now = first + seconds(600) - microseconds(1);
    EXPECT_TRUE(isBlocked());
    now = first + seconds(600);
    EXPECT_FALSE(isBlocked());
}

TEST_F(UsageAPITest, ABlockThatHasEndedDoesNotComeBack) {
    fetch(HttpResponse{401, ""});
    const Timestamp refused = now;
    now = refused + seconds(600);
    EXPECT_FALSE(isBlocked());
    now = refused + seconds(1);
    EXPECT_FALSE(isBlocked()) << "although the clock was turned back";
    session.asked.back().completion(HttpResponse{401, ""});
    now = refused + seconds(600);
    EXPECT_TRUE(isBlocked()) << "a new one is a new one";
    now = refused + seconds(601);
    EXPECT_FALSE(isBlocked());
}

TEST_F(UsageAPITest, AnAnswerDuringABlockStillCounts) {
    fetch();
    const std::shared_ptr<Told> second = fetch();
    session.asked.at(0).completion(HttpResponse{401, ""});
    session.asked.at(1).completion(HttpResponse{200, body});
    EXPECT_EQ(second->usage, figures(now));
    EXPECT_TRUE(isBlocked());
}

TEST_F(UsageAPITest, ARestartForgetsBlocks) {
    fetch(HttpResponse{401, ""});
    EXPECT_TRUE(isBlocked());
    startAnew();
    EXPECT_FALSE(isBlocked());
}

TEST_F(UsageAPITest, AnAnswerComesToItsEndAfterTheObjectHasGone) {
    const std::shared_ptr<Told> good = fetch();
    const std::shared_ptr<Told> refused = fetch();
    api.reset();
    session.asked.at(0).completion(HttpResponse{200, body});
    session.asked.at(1).completion(HttpResponse{401, ""});
    EXPECT_EQ(good->usage, figures(now));
    EXPECT_EQ(good->completions, 1);
    EXPECT_EQ(refused->completions, 1);
}

TEST_F(UsageAPITest, TheKeychainGoesBeforeTheFile) {
    files.addFile(credentialsFile, credentials("from-file"));
    EXPECT_EQ(api->accessToken(now), "from-keychain");
    EXPECT_THAT(keychain.asked, ElementsAre("Claude Code-credentials"));
    EXPECT_THAT(files.opened(), IsEmpty());
}

TEST_F(UsageAPITest, AMissingItemLeavesTheFileAndBlocksNothing) {
    files.addFile(credentialsFile, credentials("from-file"));
    keep(Keychain::Item::Outcome::missing);
    EXPECT_EQ(api->accessToken(now), "from-file");
    EXPECT_THAT(files.opened(), ElementsAre(credentialsFile));
    EXPECT_FALSE(isBlocked());
    EXPECT_FALSE(isBlocked());
    EXPECT_EQ(keychain.asked.size(), 3) << "it is tried each time";
}

TEST_F(UsageAPITest, AnItemWithoutCredentialsLeavesTheFileAndBlocksNothing) {
    files.addFile(credentialsFile, credentials("from-file"));
    for (const char* item :
         {"", "password", "{", "[]", "{}", R"({"accessToken":"x"})", R"({"claudeAiOauth":null})",
          R"({"claudeAiOauth":"x"})", R"({"claudeAiOauth":[{"accessToken":"x"}]})",
          R"([{"claudeAiOauth":{"accessToken":"x"}}])", R"({"claudeAiOauth":{"accessToken":"x"})",
          R"({"mcp":{"claudeAiOauth":{"accessToken":"x"}}})"}) {
        keep(Keychain::Item::Outcome::found, item);
        EXPECT_EQ(api->accessToken(now), "from-file") << item;
        EXPECT_FALSE(isBlocked()) << item;
    }
}

TEST_F(UsageAPITest, AnItemWithCredentialsIsTheOnlyOneThatCounts) {
    files.addFile(credentialsFile, credentials("from-file"));
    for (const std::string& item : {std::string(R"({"claudeAiOauth":{}})"), credentials(""),
                                    credentials("x", expiring(now - seconds(1))),
                                    std::string(R"({"claudeAiOauth":{"refreshToken":"x"}})")}) {
        keep(Keychain::Item::Outcome::found, item);
        EXPECT_EQ(api->accessToken(now), std::nullopt) << item;
    }
    EXPECT_THAT(files.opened(), IsEmpty());
}

TEST_F(UsageAPITest, ARefusedItemBlocksForGoodWhateverTheFileSays) {
    files.addFile(credentialsFile, credentials("from-file"));
    keep(Keychain::Item::Outcome::refused);
    EXPECT_TRUE(asks()) << "this once, with the file's token";
    EXPECT_EQ(session.asked.at(0).request.headers.at(0).second, "Bearer from-file");
    for (const days later : {days(0), days(1), days(365'000)}) {
        now += later;
        EXPECT_TRUE(isBlocked()) << later.count();
    }
    session.asked.at(0).completion(HttpResponse{401, ""});
    now += seconds(601);
    EXPECT_TRUE(isBlocked()) << "the shorter block does not replace it";
    EXPECT_EQ(keychain.asked.size(), 1) << "the user is not asked again";
}

TEST_F(UsageAPITest, ARefusedItemWithoutAFileBlocksForGoodToo) {
    keep(Keychain::Item::Outcome::refused, credentials("not to be used"));
    EXPECT_FALSE(asks());
    keep(Keychain::Item::Outcome::found, credentials("from-keychain"));
    now += days(1'000);
    EXPECT_TRUE(isBlocked());
    startAnew();
    EXPECT_FALSE(isBlocked()) << "until the program is started again";
}

TEST_F(UsageAPITest, AFileWithoutCredentialsGivesNoToken) {
    keep(Keychain::Item::Outcome::missing);
    EXPECT_EQ(api->accessToken(now), std::nullopt) << "there is none";
    for (const char* content : {"", "{", "[]", "{}", R"({"claudeAiOauth":"x"})",
                                R"({"claudeAiOauth":{}})", R"({"accessToken":"x"})"}) {
        files.addFile(credentialsFile, content);
        EXPECT_EQ(api->accessToken(now), std::nullopt) << content;
    }
    files.addFile(credentialsFile, credentials("x")).readable = false;
    EXPECT_EQ(api->accessToken(now), std::nullopt) << "unreadable";
    files.addFile(credentialsFile, credentials("x")).failsAt = 3;
    EXPECT_EQ(api->accessToken(now), std::nullopt) << "broken";
}

TEST_F(UsageAPITest, ACutFileGivesNoToken) {
    keep(Keychain::Item::Outcome::missing);
    const std::string whole = credentials("the-token", expiring(now + seconds(1)));
    for (std::size_t length = 0; length < whole.size(); ++length) {
        files.addFile(credentialsFile, whole.substr(0, length));
        EXPECT_EQ(api->accessToken(now), std::nullopt) << length;
    }
    files.addFile(credentialsFile, whole);
    EXPECT_EQ(api->accessToken(now), "the-token");
}

TEST_F(UsageAPITest, ATokenIsAStringThatIsNotEmpty) {
    for (const char* token : {R"("")", "null", "7", "true", "{}", R"(["x"])"}) {
        keep(Keychain::Item::Outcome::found,
             std::string(R"({"claudeAiOauth":{"accessToken":)") + token + "}}");
        EXPECT_EQ(api->accessToken(now), std::nullopt) << token;
    }
    keep(Keychain::Item::Outcome::found, credentials(R"(a\u0062\/c)"));
    EXPECT_EQ(api->accessToken(now), "ab/c");
}

TEST_F(UsageAPITest, ATokenExpiresToTheMillisecond) {
    const auto isValid = [&](const std::string& expiresAt) {
        keep(Keychain::Item::Outcome::found, credentials("x", R"(,"expiresAt":)" + expiresAt));
        return api->accessToken(now).has_value();
    };
    for (const char* moment : {"2025-06-02T09:14:05.678Z", "2025-06-02T09:14:05Z",
                               "2038-01-19T03:14:08.001Z", "2025-12-31T23:59:59.999Z"}) {
        now = at(moment);
        const auto time = std::chrono::floor<milliseconds>(now).time_since_epoch().count();
        EXPECT_FALSE(isValid(std::to_string(time - 1))) << moment;
        EXPECT_FALSE(isValid(std::to_string(time))) << moment;
        EXPECT_FALSE(isValid(std::to_string(time) + ".0")) << moment;
        EXPECT_TRUE(isValid(std::to_string(time) + ".5")) << moment;
        EXPECT_TRUE(isValid(std::to_string(time + 1))) << moment;
        now += microseconds(1);
        EXPECT_FALSE(isValid(std::to_string(time))) << moment;
        EXPECT_TRUE(isValid(std::to_string(time + 1))) << moment;
    }
}

TEST_F(UsageAPITest, AnExpiryIsAnyNumber) {
    const std::pair<const char*, bool> rows[] = {
        {"0", false},
        {"-1", false},
        {"1e3", false},
        {"1e300", true},
        {"1.8e12", true},
        {"123456789012345678901234567890", true},
        {"-123456789012345678901234567890", false},
        {"null", true},
        {"true", true},
        {"false", true},
        {R"("0")", true},
        {R"("2020-01-01T00:00:00Z")", true},
        {"{}", true},
        {"[0]", true},
    };
    for (const auto& [expiresAt, isValid] : rows) {
        keep(Keychain::Item::Outcome::found,
             credentials("x", std::string(R"(,"expiresAt":)") + expiresAt));
        EXPECT_EQ(api->accessToken(now).has_value(), isValid) << expiresAt;
    }
    keep(Keychain::Item::Outcome::found, credentials("x"));
    EXPECT_EQ(api->accessToken(now), "x") << "none at all";
}

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "NetworkTest.h"

#include "Sallowmere/Usage/UsageAPI.h"
#include "Shell.h"
#include "Support/FakeFileSystem.h"
#include "Support/FakeNetwork.h"
#include "Support/Missing.h"
#include "Support/Times.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

namespace sallowmere {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Pair;

const std::string body =
    R"({"limits":[{"kind":"session","percent":42.5,"resets_at":"2025-06-02T14:00:00.123456+00:00"}]})";

/// The official figures, asked for over a real connection.
class OfficialFiguresTest : public NetworkTest {
protected:
    const Timestamp now = at("2025-06-02T09:14:05Z");
    FakeKeychain keychain;
    FakeFileSystem files;
    std::optional<UsageAPI> api;

    void SetUp() override {
        NetworkTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        keychain.item = {Keychain::Item::Outcome::found,
                         std::string(R"({"claudeAiOauth":{"accessToken":")") + secret + "\"}}"};
        startAnew();
    }

    /// Forgets that the token was refused.
    void startAnew() {
        api.emplace(
            keychain, files, [now = now] { return now; }, "/home/user",
            server().url("/api/oauth/usage"));
    }

    /// The figures that come, and on which thread; the server answers as it was told to.
    std::pair<std::optional<OfficialUsage>, std::thread::id> fetch(double timeout = noTimeout) {
        std::pair<std::optional<OfficialUsage>, std::thread::id> result;
        int completions = 0;
        api->fetch(timeout, client(), [&](const std::optional<OfficialUsage>& usage) {
            queue().post([&, usage, thread = std::this_thread::get_id()] {
                result = {usage, thread};
                ++completions;
            });
        });
        EXPECT_TRUE(waitUntil([&] { return completions > 0; }));
        EXPECT_EQ(completions, 1);
        return result;
    }

    std::optional<OfficialUsage> figures(double timeout = noTimeout) {
        return fetch(timeout).first;
    }

    OfficialUsage session(double fraction, std::optional<Timestamp> resetsAt) const {
        OfficialUsage usage;
        usage.session = OfficialUsage::Limit{fraction, resetsAt};
        usage.fetchedAt = now;
        return usage;
    }
};

TEST_F(OfficialFiguresTest, AnswersOfBothShapesAreUnderstood) {
    server().answerWith(answer(200, body));
    EXPECT_EQ(figures(), session(0.425, at("2025-06-02T14:00:00.123Z")));
    server().answerWith(answer(200, R"({"five_hour":{"utilization":7,"resets_at":null}})"));
    EXPECT_EQ(figures(), session(0.07, std::nullopt));
}

TEST_F(OfficialFiguresTest, TheServerSeesAGetWithTheTokenAndNothingOfTheUsersElse) {
    server().answerWith(answer(200, body, {"Set-Cookie: a=b"}));
    figures();
    figures();
    ASSERT_EQ(server().requests().size(), 2);
    for (const SeenRequest& request : server().requests()) {
        EXPECT_EQ(request.line, "GET /api/oauth/usage HTTP/1.1");
        EXPECT_EQ(request.rest, "");
        std::vector<std::string> names;
        for (const auto& [name, value] : request.headers) {
            names.push_back(name);
        }
        EXPECT_THAT(names, ElementsAre("accept-encoding", "accept-language", "anthropic-beta",
                                       "authorization", "connection", "content-type", "host",
                                       "user-agent"));
        EXPECT_THAT(request.headers,
                    Contains(Pair("authorization", std::string("Bearer ") + secret)));
        EXPECT_THAT(request.headers, Contains(Pair("anthropic-beta", "oauth-2025-04-20")));
        EXPECT_THAT(request.headers, Contains(Pair("content-type", "application/json")));
    }
}

TEST_F(OfficialFiguresTest, ARefusalEndsTheQuestionsForAWhile) {
    for (const int status : {401, 403}) {
        startAnew();
        const std::size_t before = server().requests().size();
        server().answerWith(answer(status, body));
        EXPECT_EQ(figures(), std::nullopt);
        server().answerWith(answer(200, body));
        const auto [usage, thread] = fetch();
        EXPECT_EQ(usage, std::nullopt);
        EXPECT_EQ(thread, std::this_thread::get_id());
        EXPECT_EQ(server().requests().size(), before + 1);
    }
}

TEST_F(OfficialFiguresTest, AnyOtherStatusIsNoAnswerAndNoRefusal) {
    for (const int status : {201, 204, 302, 400, 404, 429, 500, 503}) {
        server().answerWith(answer(status, status == 204 ? "" : body, {"Retry-After: 3600"}));
        EXPECT_EQ(figures(), std::nullopt) << status;
    }
    server().answerWith(answer(200, body));
    EXPECT_NE(figures(), std::nullopt);
    EXPECT_EQ(server().requests().size(), 9) << "each was asked once";
}

TEST_F(OfficialFiguresTest, ABodyThatIsDamagedOrMissingGivesNone) {
    for (const std::string& damaged : {std::string(), std::string("{"), std::string("[]"),
                                       std::string("<html>"), body.substr(0, 40), body + "}"}) {
        server().answerWith(answer(200, damaged));
        EXPECT_EQ(figures(), std::nullopt) << damaged;
    }
}

TEST_F(OfficialFiguresTest, AHugeBodyIsRead) {
    const std::string padding(std::size_t{20} << 20, 'x');
    server().answerWith(
        answer(200, R"({"padding":")" + padding + R"(","five_hour":{"utilization":7}})"));
    EXPECT_EQ(figures(), session(0.07, std::nullopt));
}

TEST_F(OfficialFiguresTest, ACompressedBodyIsRead) {
    const TemporaryHome home;
    home.write("body", body);
    const auto packed = runInShell("gzip -c body", home.path());
    if (!packed) {
        MISSING_FOR_TEST("needs the gzip command");
    }
    server().answerWith(answer(200, *packed, {"Content-Encoding: gzip"}));
    EXPECT_EQ(figures(), session(0.425, at("2025-06-02T14:00:00.123Z")));
}

TEST_F(OfficialFiguresTest, AServerThatIsTooSlowGivesNoneAndNoRefusal) {
    server().handle([](QSslSocket& connection, const SeenRequest&) {
        dribble(connection, "HTTP/1.1 401 No\r\nContent-Length: 1000000\r\n\r\n");
    });
    EXPECT_EQ(figures(shortTimeout), std::nullopt);
    server().answerWith(answer(200, body));
    EXPECT_NE(figures(), std::nullopt);
}

TEST_F(OfficialFiguresTest, ARedirectTakesTheTokenNowhere) {
    HttpsServer other(certificate());
    other.answerWith(answer(200, body));
    server().answerWith(answer(307, "", {"Location: " + other.url("/api/oauth/usage")}));
    EXPECT_EQ(figures(), std::nullopt);
    EXPECT_EQ(other.connections(), 0);
}

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "NetworkTest.h"

#include "Shell.h"
#include "Support/Missing.h"
#include "System/TemporaryHome.h"

#include <QTimer>

#include <gmock/gmock.h>

#include <array>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::size_t largestBody = std::size_t{64} << 20;

/// What becomes of a question, and of whole answers.
class QtHttpClientTest : public NetworkTest {
protected:
    static std::string header(const SeenRequest& request, std::string_view name) {
        for (const auto& [seenName, value] : request.headers) {
            if (seenName == name) {
                return value;
            }
        }
        return "none";
    }
};

TEST_F(QtHttpClientTest, AnAnswerComesWithItsStatusAndBody) {
    for (const int status : {200, 201, 206, 226, 300, 305, 400, 401, 402, 403, 404, 405, 409,
                             410, 418, 422, 429, 451, 500, 501, 502, 503, 504, 529, 599}) {
        const std::string body = "body of " + std::to_string(status);
        server().answerWith(answer(status, body));
        const Heard heard = hearServer();
        EXPECT_EQ(heard.status(), status);
        EXPECT_EQ(heard.response.value_or(HttpResponse()).body, body);
        EXPECT_EQ(heard.completions, 1);
    }
}

TEST_F(QtHttpClientTest, AnAnswerNeedNotHaveABody) {
    for (const int status : {200, 204, 401, 500}) {
        server().answerWith(answer(status, ""));
        const Heard heard = hearServer();
        EXPECT_EQ(heard.status(), status);
        EXPECT_EQ(heard.response.value_or(HttpResponse{0, "none"}).body, "");
    }
}

TEST_F(QtHttpClientTest, ABodyIsBytes) {
    const std::string body("\0\r\n\r\n\xFF\xFE\x80 \n\0", 11);
    server().answerWith(answer(200, body));
    EXPECT_EQ(hearServer().response.value().body, body);
}

TEST_F(QtHttpClientTest, ABodyInChunksIsPutTogether) {
    server().answerWith("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                        "5\r\nwhole\r\n1\r\n \r\nb\r\nand correct\r\n0\r\n\r\n");
    EXPECT_EQ(hearServer().response.value().body, "whole and correct");
}

TEST_F(QtHttpClientTest, ABodyOfUnknownLengthLastsUntilTheConnectionEnds) {
    server().handle([](QSslSocket& connection, const SeenRequest&) {
        connection.write("HTTP/1.1 200 OK\r\n\r\nto the end");
        connection.disconnectFromHost();
    });
    EXPECT_EQ(hearServer().response.value().body, "to the end");
}

TEST_F(QtHttpClientTest, ACompressedBodyIsUnpacked) {
    const TemporaryHome home;
    home.write("body", R"({"plain":true})");
    const auto packed = runInShell("gzip -c body", home.path());
    if (!packed) {
        MISSING_FOR_TEST("needs the gzip command");
    }
    server().answerWith(answer(200, *packed, {"Content-Encoding: gzip"}));
    EXPECT_EQ(hearServer().response.value().body, R"({"plain":true})");
    EXPECT_THAT(header(server().requests().at(0), "accept-encoding"), HasSubstr("gzip"));
}

TEST_F(QtHttpClientTest, ABodyOfTheLargestSizeComesWhole) {
    const std::string body(largestBody, 'x');
    server().answerWith(answer(200, body));
    const Heard heard = hearServer();
    EXPECT_EQ(heard.status(), 200);
    EXPECT_TRUE(heard.response.value_or(HttpResponse()).body == body);
}

TEST_F(QtHttpClientTest, ABodyOfOneByteMoreIsNone) {
    server().answerWith(answer(200, std::string(largestBody + 1, 'x')));
    EXPECT_EQ(hearServer().response, std::nullopt);
}

TEST_F(QtHttpClientTest, ABodyWithoutEndIsGivenUp) {
    server().handle([](QSslSocket& connection, const SeenRequest&) {
        connection.write("HTTP/1.1 200 OK\r\n\r\n");
        auto* timer = new QTimer(&connection);
        QObject::connect(timer, &QTimer::timeout, &connection, [&connection] {
            if (connection.bytesToWrite() + connection.encryptedBytesToWrite() == 0) {
                connection.write(QByteArray(1 << 20, 'x'));
            }
        });
        timer->start();
    });
    EXPECT_EQ(hearServer().response, std::nullopt);
    EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
}

TEST_F(QtHttpClientTest, ASmallBodyThatUnpacksToATooLargeOneIsNone) {
    const TemporaryHome home;
    const auto packed = runInShell("head -c 67108865 /dev/zero | gzip -c", home.path());
    if (!packed) {
        MISSING_FOR_TEST("needs the gzip command");
    }
    server().answerWith(answer(200, *packed, {"Content-Encoding: gzip"}));
    EXPECT_EQ(hearServer().response, std::nullopt);
}

TEST_F(QtHttpClientTest, TheServerSeesAGetForTheUrl) {
    server().answerWith(answer(200, ""));
    hear({server().url("/api/oauth/usage?a=b%20c"), {}, noTimeout});
    EXPECT_EQ(server().requests().at(0).line, "GET /api/oauth/usage?a=b%20c HTTP/1.1");
    EXPECT_EQ(server().requests().at(0).rest, "");
}

TEST_F(QtHttpClientTest, TheServerSeesTheHeadersAndThoseOfHttp) {
    server().answerWith(answer(200, ""));
    hear({server().url(), {{"Authorization", "Bearer x"}, {"X-Empty", ""}}, noTimeout});
    std::vector<std::string> names;
    for (const auto& [name, value] : server().requests().at(0).headers) {
        names.push_back(name);
    }
    EXPECT_THAT(names, ElementsAre("accept-encoding", "accept-language", "authorization",
                                   "connection", "host", "user-agent", "x-empty"));
    EXPECT_EQ(header(server().requests().at(0), "authorization"), "Bearer x");
}

TEST_F(QtHttpClientTest, AHeaderWithALineBreakIsNeverSent) {
    server().answerWith(answer(200, ""));
    for (const auto& [name, value] : std::vector<std::pair<std::string, std::string>>{
             {"Authorization", "Bearer x\r\nX-Other: y"},
             {"Authorization", "Bearer x\ny"},
             {"Authorization", "Bearer x\r"},
             {"Authorization", std::string("Bearer x\0", 9)},
             {"X-Other: y\r\nAuthorization", "Bearer x"},
         }) {
        const Heard heard = hear({server().url(), {{"X-Good", "x"}, {name, value}}, noTimeout});
        EXPECT_EQ(heard.response, std::nullopt) << value;
        EXPECT_EQ(heard.completions, 1);
    }
    EXPECT_EQ(hearServer().status(), 200);
    EXPECT_EQ(server().requests().size(), 1);
}

TEST_F(QtHttpClientTest, WhatIsNoSecureWebAddressIsNotAsked) {
    const TemporaryHome home;
    const std::string hostAndPort = server().url().substr(std::string("https").size());
    for (const std::string& url :
         {std::string(), std::string("nonsense"), std::string("/path"), std::string("https:"),
          std::string("https://"), std::string("https://127.0.0.1:x/"), std::string("https://[/"),
          std::string("data:,content"), "file://" + home.write("file", "content"),
          "http" + hostAndPort, "ftp" + hostAndPort}) {
        const Heard heard = hear({url, {}, noTimeout});
        EXPECT_EQ(heard.response, std::nullopt) << url;
        EXPECT_EQ(heard.completions, 1) << url;
    }
    EXPECT_EQ(server().connections(), 0);
}

TEST_F(QtHttpClientTest, AConnectionEndsWithItsAnswer) {
    server().answerWith(answer(200, ""));
    hearServer();
    EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
}

TEST_F(QtHttpClientTest, CookiesAreNotKept) {
    server().answerWith(answer(200, "", {"Set-Cookie: a=b; Path=/", "Set-Cookie: c=d"}));
    hearServer();
    hearServer();
    EXPECT_EQ(header(server().requests().at(1), "cookie"), "none");
}

TEST_F(QtHttpClientTest, AnswersAreNotKept) {
    const std::vector<std::string> lasting{"Cache-Control: max-age=3600, immutable", "ETag: \"a\"",
                                           "Last-Modified: Mon, 02 Jun 2025 09:14:05 GMT"};
    server().answerWith(answer(200, "first", lasting));
    EXPECT_EQ(hearServer().response.value().body, "first");
    server().answerWith(answer(200, "second", lasting));
    EXPECT_EQ(hearServer().response.value().body, "second");
    EXPECT_EQ(header(server().requests().at(1), "if-none-match"), "none");
    EXPECT_EQ(header(server().requests().at(1), "if-modified-since"), "none");
}

TEST_F(QtHttpClientTest, ARedirectIsAnAnswerAndNobodyElseIsAsked) {
    HttpsServer other(certificate());
    other.answerWith(answer(200, "lured"));
    for (const int status : {301, 302, 303, 307, 308}) {
        server().answerWith(answer(status, "elsewhere", {"Location: " + other.url("/other")}));
        const Heard heard = hearServer();
        EXPECT_EQ(heard.status(), status);
        EXPECT_EQ(heard.response.value_or(HttpResponse()).body, "elsewhere");
    }
    server().answerWith(answer(302, "", {"Location: /other"}));
    EXPECT_EQ(hearServer().status(), 302) << "nor the same host";
    EXPECT_EQ(server().requests().size(), 6);
    EXPECT_EQ(other.connections(), 0);
}

TEST_F(QtHttpClientTest, OtherCredentialsThanTheGivenOnesAreNeverOffered) {
    for (const char* challenge :
         {"Basic realm=\"a\"", "Digest realm=\"a\", nonce=\"b\", qop=\"auth\"", "NTLM", "Negotiate",
          "Bearer error=\"invalid_token\"", "Unheard-Of"}) {
        const std::size_t before = server().requests().size();
        server().answerWith(answer(401, "who?", {std::string("WWW-Authenticate: ") + challenge}));
        const Heard heard = hearServer();
        EXPECT_EQ(heard.status(), 401) << challenge;
        EXPECT_EQ(heard.response.value_or(HttpResponse()).body, "who?") << challenge;
        ASSERT_EQ(server().requests().size(), before + 1) << challenge;
        EXPECT_EQ(header(server().requests().back(), "authorization"), secret);
    }
}

TEST_F(QtHttpClientTest, ANewerProtocolIsNotSpoken) {
    server().offer({"h2", "http/1.1"});
    QByteArray agreed = "none";
    server().handle([&](QSslSocket& connection, const SeenRequest&) {
        agreed = connection.sslConfiguration().nextNegotiatedProtocol();
        connection.write(QByteArray::fromStdString(answer(200, "")));
    });
    EXPECT_EQ(hearServer().status(), 200);
    EXPECT_NE(agreed, "h2");
}

TEST_F(QtHttpClientTest, TheHostIsFoundByItsNameToo) {
    server().answerWith(answer(200, "all is well"));
    const Heard heard = hear({server().url("/", "localhost"), {}, noTimeout});
    EXPECT_EQ(heard.status(), 200);
}

TEST_F(QtHttpClientTest, QuestionsAskedAtOnceEachGetTheirOwnAnswer) {
    constexpr std::size_t count = 5;
    std::vector<std::function<void()>> answers;
    server().handle([&](QSslSocket& connection, const SeenRequest& request) {
        answers.push_back([&connection, line = request.line] {
            connection.write(QByteArray::fromStdString(answer(200, line)));
        });
    });
    std::vector<std::shared_ptr<Heard>> heard;
    for (std::size_t i = 0; i < count; ++i) {
        heard.push_back(ask({server().url('/' + std::to_string(i)), {}, noTimeout}));
    }
    ASSERT_TRUE(waitUntil([&] { return answers.size() == count; })) << "not one after the other";
    for (auto give = answers.rbegin(); give != answers.rend(); ++give) {
        (*give)();
    }
    for (std::size_t i = 0; i < count; ++i) {
        ASSERT_TRUE(waitUntil([&] { return heard[i]->completions > 0; }));
        EXPECT_EQ(heard[i]->response.value().body, "GET /" + std::to_string(i) + " HTTP/1.1");
    }
}

TEST_F(QtHttpClientTest, CompletionsComeOnOneThreadOfTheClients) {
    server().answerWith(answer(200, ""));
    const Heard first = hearServer();
    const Heard second = hearServer();
    const Heard refused = hear({"nonsense", {}, noTimeout});
    EXPECT_NE(first.thread, std::this_thread::get_id());
    EXPECT_EQ(second.thread, first.thread);
    EXPECT_EQ(refused.thread, first.thread);
}

TEST_F(QtHttpClientTest, AnyThreadMayAsk) {
    server().answerWith(answer(200, ""));
    std::vector<std::shared_ptr<Heard>> heard(4);
    {
        std::array<std::jthread, 4> threads;
        for (std::size_t i = 0; i < threads.size(); ++i) {
            threads.at(i) = std::jthread([&, i] { heard[i] = ask(requestFor(server())); });
        }
    }
    for (const std::shared_ptr<Heard>& one : heard) {
        ASSERT_TRUE(waitUntil([&] { return one->completions > 0; }));
        EXPECT_EQ(one->status(), 200);
    }
}

TEST_F(QtHttpClientTest, ACompletionMayAskAgain) {
    server().answerWith(answer(200, ""));
    int completions = 0;
    client().get(requestFor(server()), [&](const std::optional<HttpResponse>&) {
        client().get(requestFor(server()), [&](const std::optional<HttpResponse>& response) {
            queue().post([&, status = response ? response->status : 0] {
                EXPECT_EQ(status, 200);
                ++completions;
            });
        });
    });
    EXPECT_TRUE(waitUntil([&] { return completions == 1; }));
    EXPECT_EQ(server().requests().size(), 2);
}

} // namespace
} // namespace sallowmere

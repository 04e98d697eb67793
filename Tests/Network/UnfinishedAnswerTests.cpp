// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "NetworkTest.h"

#include <QPointer>
#include <QTcpSocket>

#include <chrono>
#include <future>

namespace sallowmere {
namespace {

/// Questions without a whole answer: there is none then, once, and soon.
class UnfinishedAnswerTest : public NetworkTest {
protected:
    /// Nothing comes of a question to the server in time, and nobody waits on.
    void expectGivenUp() {
        const Heard heard = hearServer(shortTimeout);
        EXPECT_EQ(heard.response, std::nullopt);
        EXPECT_EQ(heard.completions, 1);
        EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
    }

    /// Nothing comes of a question to a server that writes this and goes.
    void expectNothingOf(const std::string& bytes) {
        server().handle([bytes](QSslSocket& connection, const SeenRequest&) {
            connection.write(QByteArray::fromStdString(bytes));
            connection.disconnectFromHost();
        });
        const Heard heard = hearServer();
        EXPECT_EQ(heard.response, std::nullopt) << bytes;
        EXPECT_EQ(heard.completions, 1) << bytes;
    }

    /// A question whose completion must never be called, and what that holds.
    std::weak_ptr<int> askInVain() {
        auto held = std::make_shared<int>();
        std::weak_ptr<int> watched = held;
        client().get(requestFor(server()), [held = std::move(held)](auto) {
            ADD_FAILURE() << "completed although the client has gone";
        });
        return watched;
    }
};

TEST_F(UnfinishedAnswerTest, AServerThatNeverSpeaksIsGivenUp) {
    server().becomeMute();
    expectGivenUp();
}

TEST_F(UnfinishedAnswerTest, AServerThatNeverAnswersIsGivenUp) {
    expectGivenUp();
}

TEST_F(UnfinishedAnswerTest, AHeadThatTakesForeverIsGivenUp) {
    server().handle([](QSslSocket& connection, const SeenRequest&) {
        dribble(connection, "HTTP/1.1 200 OK\r\nX-Slow: ");
    });
    expectGivenUp();
}

TEST_F(UnfinishedAnswerTest, ABodyThatTakesForeverIsGivenUp) {
    for (const char* head : {"HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n",
                             "HTTP/1.1 200 OK\r\n\r\n", "HTTP/1.1 401 No\r\n\r\n"}) {
        server().handle(
            [head](QSslSocket& connection, const SeenRequest&) { dribble(connection, head); });
        expectGivenUp();
    }
}

TEST_F(UnfinishedAnswerTest, NoTimeAtAllIsTooLittle) {
    server().answerWith(answer(200, ""));
    for (const double timeout : {0.0, -1.0}) {
        EXPECT_EQ(hearServer(timeout).response, std::nullopt);
    }
}

TEST_F(UnfinishedAnswerTest, TimeCountsFromTheQuestion) {
    server().answerWith(answer(200, ""));
    bool isBusy = false;
    std::promise<void> timeIsOver;
    client().get(requestFor(server()), [&, over = timeIsOver.get_future().share()](auto) {
        queue().post([&] { isBusy = true; });
        over.wait();
    });
    ASSERT_TRUE(waitUntil([&] { return isBusy; }));
    const std::shared_ptr<Heard> heard = ask(requestFor(server(), shortTimeout));
    std::this_thread::sleep_until(std::chrono::steady_clock::now()
                                  + std::chrono::duration<double>(shortTimeout));
    timeIsOver.set_value();
    ASSERT_TRUE(waitUntil([&] { return heard->completions > 0; }));
    EXPECT_EQ(heard->response, std::nullopt);
}

TEST_F(UnfinishedAnswerTest, AnAnswerInSmallPiecesIsWaitedForWhileThereIsTime) {
    server().handle([](QSslSocket& connection, const SeenRequest&) {
        dribble(connection, "HTTP/1.1 200 OK\r\nContent-Length: 8\r\n\r\n");
    });
    const Heard heard = hearServer();
    EXPECT_EQ(heard.response.value_or(HttpResponse()).body, "xxxxxxxx");
}

TEST_F(UnfinishedAnswerTest, AnAnswerThatComesTooLateIsHeardOfNoMore) {
    QPointer<QSslSocket> late;
    server().handle([&](QSslSocket& connection, const SeenRequest&) { late = &connection; });
    const std::shared_ptr<Heard> heard = ask(requestFor(server(), shortTimeout));
    ASSERT_TRUE(waitUntil([&] { return heard->completions > 0; }));
    if (late) {
        late->write(QByteArray::fromStdString(answer(200, "late")));
    }
    server().answerWith(answer(200, "in time"));
    EXPECT_EQ(hearServer().response.value_or(HttpResponse()).body, "in time");
    EXPECT_EQ(heard->completions, 1);
}

TEST_F(UnfinishedAnswerTest, AHostWhereNobodyListensGivesNone) {
    QTcpSocket reserved;
    ASSERT_TRUE(reserved.bind(QHostAddress::LocalHost));
    const std::string url = "https://127.0.0.1:" + std::to_string(reserved.localPort()) + '/';
    const Heard heard = hear({url, {}, noTimeout});
    EXPECT_EQ(heard.response, std::nullopt);
    EXPECT_EQ(heard.completions, 1);
}

TEST_F(UnfinishedAnswerTest, AnAnswerThatIsCutIsNone) {
    const std::string whole = answer(200, R"({"limits":[]})");
    // The last byte of all is the only one that makes it whole.
    for (std::size_t length = 0; length < whole.size(); ++length) {
        expectNothingOf(whole.substr(0, length));
    }
}

TEST_F(UnfinishedAnswerTest, AnAnswerThatIsCutIsNoneWhateverItsStatus) {
    for (const int status : {302, 401, 403, 404, 429, 500, 503}) {
        const std::string whole = answer(status, "the body");
        expectNothingOf(whole.substr(0, whole.size() - 1));
    }
}

TEST_F(UnfinishedAnswerTest, ChunksThatAreCutAreNone) {
    const std::string whole = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                              "5\r\nwhole\r\n0\r\n\r\n";
    for (std::size_t length = whole.find("5\r\n"); length + 4 < whole.size(); ++length) {
        expectNothingOf(whole.substr(0, length));
    }
}

TEST_F(UnfinishedAnswerTest, WhatIsNoHttpIsNone) {
    for (const std::string& bytes :
         {std::string("hello\r\n\r\n"), std::string("{\"limits\":[]}\r\n\r\n"),
          std::string("\r\n\r\n\r\n"), std::string("HTTP/1.1 abc OK\r\n\r\n"),
          std::string("HTTP\r\n\r\n"), std::string(5000, '\0')}) {
        expectNothingOf(bytes);
    }
}

TEST_F(UnfinishedAnswerTest, ABodyThatDoesNotUnpackIsNone) {
    server().answerWith(answer(200, "this is not packed", {"Content-Encoding: gzip"}));
    EXPECT_EQ(hearServer().response, std::nullopt);
}

TEST_F(UnfinishedAnswerTest, AServerThatIsNotTrustedIsToldNothing) {
    server().answerWith(answer(200, "all is well"));
    QtHttpClient systemsTrust;
    EXPECT_EQ(hear(systemsTrust, requestFor(server())).response, std::nullopt);
    const auto stranger = makeCertificate("IP:127.0.0.1").value();
    QtHttpClient anothersTrust(stranger.trusted());
    EXPECT_EQ(hear(anothersTrust, requestFor(server())).response, std::nullopt);
    EXPECT_EQ(server().connections(), 2);
    EXPECT_EQ(server().requests().size(), 0);
}

TEST_F(UnfinishedAnswerTest, ThatCertificatesAreNotLookedAtCannotBeChosen) {
    server().answerWith(answer(200, "all is well"));
    QSslConfiguration careless = QSslConfiguration::defaultConfiguration();
    for (const auto mode : {QSslSocket::VerifyNone, QSslSocket::QueryPeer}) {
        careless.setPeerVerifyMode(mode);
        QtHttpClient carelessClient(careless);
        EXPECT_EQ(hear(carelessClient, requestFor(server())).response, std::nullopt);
    }
    EXPECT_EQ(server().requests().size(), 0);
}

TEST_F(UnfinishedAnswerTest, ACertificateOfAnotherHostIsNone) {
    const Certificate others = makeCertificate("DNS:localhost,IP:127.0.0.2").value();
    HttpsServer impostor(others);
    impostor.answerWith(answer(200, "all is well"));
    QtHttpClient trusting(others.trusted());
    EXPECT_EQ(hear(trusting, requestFor(impostor)).response, std::nullopt);
    EXPECT_EQ(impostor.requests().size(), 0);
    EXPECT_EQ(hear(trusting, {impostor.url("/", "localhost"), {}, noTimeout}).status(), 200)
        << "by the name that it has, it is trusted";
}

TEST_F(UnfinishedAnswerTest, ACertificateThatHasExpiredIsNone) {
    const Certificate old = makeCertificate("IP:127.0.0.1", Validity::past).value();
    HttpsServer forgotten(old);
    forgotten.answerWith(answer(200, "all is well"));
    QtHttpClient trusting(old.trusted());
    EXPECT_EQ(hear(trusting, requestFor(forgotten)).response, std::nullopt);
    EXPECT_EQ(forgotten.requests().size(), 0);
}

TEST_F(UnfinishedAnswerTest, AClientThatGoesLeavesQuestionsUncompleted) {
    server().answerWith(answer(200, ""));
    const std::weak_ptr<int> held = askInVain();
    destroyClient();
    EXPECT_TRUE(held.expired());
}

TEST_F(UnfinishedAnswerTest, AClientMayGoWhileItGreetsTheServer) {
    server().becomeMute();
    const std::weak_ptr<int> held = askInVain();
    ASSERT_TRUE(waitUntil([&] { return server().connections() == 1; }));
    destroyClient();
    EXPECT_TRUE(held.expired());
    EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
}

TEST_F(UnfinishedAnswerTest, AClientMayGoWhileItWaitsForAnswers) {
    std::vector<std::weak_ptr<int>> held(10);
    for (std::weak_ptr<int>& one : held) {
        one = askInVain();
    }
    ASSERT_TRUE(waitUntil([&] { return server().requests().size() == held.size(); }));
    destroyClient();
    for (const std::weak_ptr<int>& one : held) {
        EXPECT_TRUE(one.expired());
    }
    EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
}

TEST_F(UnfinishedAnswerTest, AClientMayGoInTheMiddleOfABody) {
    bool hasBegun = false;
    server().handle([&](QSslSocket& connection, const SeenRequest&) {
        QObject::connect(&connection, &QSslSocket::encryptedBytesWritten, &connection,
                         [&] { hasBegun = true; });
        dribble(connection, "HTTP/1.1 200 OK\r\nContent-Length: 1000000\r\n\r\n");
    });
    const std::weak_ptr<int> held = askInVain();
    ASSERT_TRUE(waitUntil([&] { return hasBegun; }));
    destroyClient();
    EXPECT_TRUE(held.expired());
    EXPECT_TRUE(waitUntil([&] { return server().openConnections() == 0; }));
}

TEST_F(UnfinishedAnswerTest, AClientThatIsNeverAskedGoesToo) {
    destroyClient();
    EXPECT_EQ(server().connections(), 0);
}

} // namespace
} // namespace sallowmere

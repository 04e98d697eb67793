// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "ForwardProxy.h"
#include "NetworkTest.h"

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <thread>

namespace sallowmere {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* nothing = "0 ";

class ProxyTest : public NetworkTest {
protected:
    ForwardProxy proxy;

    /// What a program prints that asks the server in this environment.
    std::string ask(std::vector<std::string> environment) {
        const std::string trusted =
            home_.write("trusted.pem", certificate().certificate.toPem().toStdString());
        const Command command{SALLOWMERE_ASKING_PROGRAM,
                              {"asking-program", trusted, server().url(), secret},
                              std::move(environment),
                              {}};
        Outcome outcome;
        bool hasEnded = false;
        std::thread waiting([&] {
            Outcome ended = run(command);
            queue().post([&, ended = std::move(ended)] {
                outcome = ended;
                hasEnded = true;
            });
        });
        EXPECT_TRUE(waitUntil([&] { return hasEnded; }));
        waiting.join();
        EXPECT_EQ(outcome.exitStatus, 0) << outcome.errors;
        EXPECT_THAT(outcome.output + outcome.errors, Not(HasSubstr(secret)));
        return outcome.output;
    }

    std::string askThroughProxy() { return ask({"https_proxy=" + proxy.url()}); }

private:
    TemporaryHome home_;
};

TEST_F(ProxyTest, AProxyOfTheEnvironmentCarriesWhatItCannotRead) {
    server().answerWith(answer(200, "all is well"));
    EXPECT_EQ(askThroughProxy(), "200 all is well");
    ASSERT_EQ(proxy.heads().size(), 1);
    EXPECT_THAT(
        proxy.heads().front(),
        StartsWith("CONNECT 127.0.0.1:" + std::to_string(server().serverPort()) + " HTTP/1.1\r\n"));
    EXPECT_THAT(proxy.sent(), Not(HasSubstr(secret)));
    EXPECT_THAT(proxy.sent(), Not(HasSubstr("GET")));
    EXPECT_EQ(server().requests().size(), 1);
}

TEST_F(ProxyTest, WithoutAProxyTheServerIsAskedStraight) {
    server().answerWith(answer(200, "all is well"));
    EXPECT_EQ(ask({}), "200 all is well");
    EXPECT_THAT(proxy.heads(), IsEmpty());
}

TEST_F(ProxyTest, AHostThatTheEnvironmentExemptsIsAskedStraight) {
    server().answerWith(answer(200, "all is well"));
    EXPECT_EQ(ask({"https_proxy=" + proxy.url(), "no_proxy=127.0.0.1"}), "200 all is well");
    EXPECT_THAT(proxy.heads(), IsEmpty());
}

TEST_F(ProxyTest, AProxysRefusalIsNotTheServers) {
    for (const int status : {302, 401, 403, 404, 502, 503}) {
        proxy.refuseWith(answer(
            status, "no", {"WWW-Authenticate: Basic realm=\"a\"", "Location: " + server().url()}));
        EXPECT_EQ(askThroughProxy(), nothing) << status;
    }
    proxy.refuseWith(answer(407, "who?", {"Proxy-Authenticate: Basic realm=\"a\""}));
    EXPECT_EQ(askThroughProxy(), nothing);
    EXPECT_EQ(server().connections(), 0);
    EXPECT_THAT(proxy.sent(), Not(HasSubstr(secret)));
}

TEST_F(ProxyTest, AProxyThatIsNotThereIsNotPassedBy) {
    proxy.close();
    EXPECT_EQ(askThroughProxy(), nothing);
    EXPECT_EQ(server().connections(), 0);
}

TEST_F(ProxyTest, AProxyThatPosesAsTheServerIsToldNothing) {
    HttpsServer impostor(makeCertificate("IP:127.0.0.1").value());
    impostor.answerWith(answer(200, "all is well"));
    proxy.leadTo(impostor.serverPort());
    EXPECT_EQ(askThroughProxy(), nothing);
    EXPECT_EQ(impostor.connections(), 1);
    EXPECT_EQ(impostor.requests().size(), 0);
    EXPECT_EQ(server().connections(), 0);
}

} // namespace
} // namespace sallowmere

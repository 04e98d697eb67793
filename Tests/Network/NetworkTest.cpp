// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "NetworkTest.h"

#include "Support/Missing.h"

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <mutex>
#include <utility>

namespace sallowmere {

namespace {

constexpr std::chrono::seconds patience(60);

/// What Qt logged since the test began, from whatever thread.
std::mutex logLock;
std::string logged;

void takeLog(QtMsgType, const QMessageLogContext&, const QString& message) {
    const std::lock_guard locked(logLock);
    logged += message.toStdString() + '\n';
}

/// Takes the log away.
std::string takenLog() {
    const std::lock_guard locked(logLock);
    return std::exchange(logged, {});
}

const std::optional<Certificate>& ownCertificate() {
    static const std::optional<Certificate> made = makeCertificate("IP:127.0.0.1,DNS:localhost");
    return made;
}

} // namespace

bool waitUntil(const std::function<bool()>& holds) {
    QTimer end;
    end.setSingleShot(true);
    end.start(patience);
    while (!holds() && end.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return holds();
}

const Certificate& NetworkTest::certificate() {
    return *ownCertificate();
}

void NetworkTest::SetUp() {
    if (!ownCertificate()) {
        MISSING_FOR_TEST("needs the openssl command");
    }
    for (const char* name : {"http_proxy", "https_proxy", "all_proxy", "no_proxy", "HTTP_PROXY",
                             "HTTPS_PROXY", "ALL_PROXY", "NO_PROXY"}) {
        environment_.push_back(std::make_unique<EnvironmentVariable>(name, std::nullopt));
    }
    queue_.emplace();
    server_.emplace(certificate());
    client_.emplace(certificate().trusted());
    takenLog();
    qInstallMessageHandler(takeLog);
}

void NetworkTest::TearDown() {
    client_.reset();
    server_.reset();
    queue_.reset();
    qInstallMessageHandler(nullptr);
    const std::string log = takenLog();
    EXPECT_EQ(log.find(secret), std::string::npos) << log;
}

HttpRequest NetworkTest::requestFor(const HttpsServer& server, double timeout) {
    return {server.url(), {{"Authorization", secret}}, timeout};
}

std::shared_ptr<NetworkTest::Heard> NetworkTest::ask(HttpClient& client, HttpRequest request) {
    auto heard = std::make_shared<Heard>();
    client.get(std::move(request), [this, heard](std::optional<HttpResponse> response) {
        queue().post([heard, response = std::move(response), thread = std::this_thread::get_id()] {
            ++heard->completions;
            heard->response = response;
            heard->thread = thread;
        });
    });
    return heard;
}

NetworkTest::Heard NetworkTest::hear(HttpClient& client, HttpRequest request) {
    const std::shared_ptr<Heard> heard = ask(client, std::move(request));
    EXPECT_TRUE(waitUntil([&] { return heard->completions > 0; })) << "nothing was completed";
    return *heard;
}

} // namespace sallowmere

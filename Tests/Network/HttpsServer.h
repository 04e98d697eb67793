// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Certificates.h"

#include <QSslSocket>
#include <QTcpServer>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace sallowmere {

/// What a server saw of one request.
struct SeenRequest {
    /// "GET /path HTTP/1.1".
    std::string line;
    /// Names in lower case, in alphabetical order.
    std::vector<std::pair<std::string, std::string>> headers;
    /// What came in one go with the head, behind it.
    std::string rest;
};

/// A whole answer as it goes over the wire, with its length among the headers.
std::string answer(int status, std::string_view body, const std::vector<std::string>& headers = {});

/// Writes this and then, until the connection ends, a byte every now and then.
void dribble(QSslSocket& connection, std::string_view start);

/// An HTTPS server on the loopback interface that lives on the test's own thread: it answers while
/// the test waits.
class HttpsServer : public QTcpServer {
public:
    /// Called for each request; writes what it likes, when it likes.
    using Handler = std::function<void(QSslSocket& connection, const SeenRequest& request)>;

    explicit HttpsServer(const Certificate& certificate);
    ~HttpsServer() override;

    /// What it does with the requests to come. At first it leaves them unanswered.
    void handle(Handler handler) { handler_ = std::move(handler); }
    void answerWith(const std::string& bytes);
    /// Connections to come are taken, and nothing is ever said on them.
    void becomeMute() { isMute_ = true; }
    /// Protocols that it offers on top of the encryption, the best first.
    void offer(const QList<QByteArray>& protocols) { tls_.setAllowedNextProtocols(protocols); }

    std::string url(std::string_view path = "/", std::string_view host = "127.0.0.1") const;

    const std::vector<SeenRequest>& requests() const { return requests_; }
    /// How many connections were ever opened, encrypted or not.
    int connections() const { return connections_; }
    /// How many of them are open still.
    int openConnections() const { return openConnections_; }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    void read(QSslSocket& connection, std::string& received);

    QSslConfiguration tls_;
    Handler handler_;
    bool isMute_ = false;
    std::vector<SeenRequest> requests_;
    int connections_ = 0;
    int openConnections_ = 0;
};

} // namespace sallowmere

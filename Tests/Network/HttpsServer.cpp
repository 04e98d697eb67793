// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HttpsServer.h"

#include <QTimer>

#include <algorithm>
#include <chrono>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace sallowmere {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view headEnd = "\r\n\r\n";
constexpr std::chrono::milliseconds dribbleInterval(10);

SeenRequest parsed(const std::string& head) {
    SeenRequest request;
    std::istringstream lines(head);
    std::getline(lines, request.line, '\r');
    for (std::string line; lines.get() == '\n' && std::getline(lines, line, '\r');) {
        const std::size_t colon = line.find(": ");
        const QByteArray name = QByteArray::fromStdString(line.substr(0, colon)).toLower();
        request.headers.emplace_back(name.toStdString(),
                                     colon == std::string::npos ? "" : line.substr(colon + 2));
    }
    std::sort(request.headers.begin(), request.headers.end());
    return request;
}

} // namespace

std::string answer(int status, std::string_view body, const std::vector<std::string>& headers) {
    std::string bytes = "HTTP/1.1 " + std::to_string(status) + " Whatever\r\n";
    for (const std::string& header : headers) {
        bytes.append(header).append(lineEnd);
    }
    bytes += "Content-Length: " + std::to_string(body.size());
    return bytes.append(headEnd).append(body);
}

void dribble(QSslSocket& connection, std::string_view start) {
    connection.write(start.data(), static_cast<qint64>(start.size()));
    auto* timer = new QTimer(&connection);
    QObject::connect(timer, &QTimer::timeout, &connection,
                     [&connection] { connection.write("x"); });
    timer->start(dribbleInterval);
}

HttpsServer::HttpsServer(const Certificate& certificate) : tls_(certificate.shown()) {
    if (!listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("cannot listen");
    }
}

HttpsServer::~HttpsServer() {
    // They tell of their end when they go.
    for (QSslSocket* connection : findChildren<QSslSocket*>()) {
        connection->disconnect(this);
    }
}

void HttpsServer::answerWith(const std::string& bytes) {
    handle([bytes = QByteArray::fromStdString(bytes)](QSslSocket& connection, const SeenRequest&) {
        connection.write(bytes);
    });
}

std::string HttpsServer::url(std::string_view path, std::string_view host) const {
    return "https://" + std::string(host) + ':' + std::to_string(serverPort()) + std::string(path);
}

void HttpsServer::incomingConnection(qintptr descriptor) {
    ++connections_;
    ++openConnections_;
    auto* connection = new QSslSocket(this);
    connect(connection, &QSslSocket::disconnected, this, [this, connection] {
        --openConnections_;
        connection->deleteLater();
    });
    connection->setSocketDescriptor(descriptor);
    if (isMute_) {
        return;
    }
    const auto received = std::make_shared<std::string>();
    connect(connection, &QSslSocket::readyRead, this,
            [this, connection, received] { read(*connection, *received); });
    connection->setSslConfiguration(tls_);
    connection->startServerEncryption();
}

void HttpsServer::read(QSslSocket& connection, std::string& received) {
    received += connection.readAll().toStdString();
    const std::size_t end = received.find(headEnd);
    if (end == std::string::npos) {
        return;
    }
    SeenRequest request = parsed(received.substr(0, end + lineEnd.size()));
    request.rest = received.substr(end + headEnd.size());
    received.clear();
    requests_.push_back(request);
    if (handler_) {
        handler_(connection, request);
    }
}

} // namespace sallowmere

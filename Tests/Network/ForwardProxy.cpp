// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "ForwardProxy.h"

#include <QNetworkProxy>

#include <memory>
#include <stdexcept>

namespace sallowmere {

ForwardProxy::ForwardProxy() {
    if (!listen(QHostAddress::LocalHost)) {
        throw std::runtime_error("cannot listen");
    }
}

ForwardProxy::~ForwardProxy() {
    // They tell of their end when they go.
    for (QTcpSocket* connection : findChildren<QTcpSocket*>()) {
        connection->disconnect();
    }
}

std::string ForwardProxy::url() const {
    return "http://127.0.0.1:" + std::to_string(serverPort());
}

void ForwardProxy::incomingConnection(qintptr descriptor) {
    const auto tunnel = std::make_shared<Tunnel>();
    tunnel->client = new QTcpSocket(this);
    tunnel->client->setSocketDescriptor(descriptor);
    connect(tunnel->client, &QTcpSocket::readyRead, this, [this, tunnel] { read(*tunnel); });
}

void ForwardProxy::read(Tunnel& tunnel) {
    const QByteArray bytes = tunnel.client->readAll();
    sent_ += bytes.toStdString();
    if (tunnel.server != nullptr) {
        tunnel.server->write(bytes);
        return;
    }
    tunnel.head += bytes.toStdString();
    if (!tunnel.head.ends_with("\r\n\r\n")) {
        return;
    }
    heads_.push_back(tunnel.head);
    if (refusal_.empty()) {
        open(tunnel);
    } else {
        tunnel.client->write(QByteArray::fromStdString(refusal_));
    }
}

void ForwardProxy::open(Tunnel& tunnel) {
    // CONNECT host:port HTTP/1.1
    const QString target = QString::fromStdString(tunnel.head).section(' ', 1, 1);
    QTcpSocket* client = tunnel.client;
    auto* server = new QTcpSocket(this);
    tunnel.server = server;
    // It goes to the server straight, whatever proxy the environment names.
    server->setProxy(QNetworkProxy::NoProxy);
    connect(server, &QTcpSocket::connected, client,
            [client] { client->write("HTTP/1.1 200 Connected\r\n\r\n"); });
    connect(server, &QTcpSocket::readyRead, client,
            [client, server] { client->write(server->readAll()); });
    connect(server, &QTcpSocket::disconnected, client, &QTcpSocket::disconnectFromHost);
    connect(client, &QTcpSocket::disconnected, server, &QTcpSocket::disconnectFromHost);
    server->connectToHost(target.section(':', 0, 0),
                          port_ != 0 ? port_ : target.section(':', 1, 1).toUShort());
}

} // namespace sallowmere

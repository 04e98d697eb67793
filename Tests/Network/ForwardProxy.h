// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTcpServer>
#include <QTcpSocket>

#include <string>
#include <vector>

namespace sallowmere {

/// A web proxy on the test's own thread. It opens tunnels as it is asked to and records all that
/// goes out through them.
class ForwardProxy : public QTcpServer {
public:
    ForwardProxy();
    ~ForwardProxy() override;

    /// Answers so instead of opening tunnels.
    void refuseWith(std::string bytes) { refusal_ = std::move(bytes); }
    /// All tunnels lead to this port, wherever they are meant to lead.
    void leadTo(quint16 port) { port_ = port; }

    /// http://127.0.0.1:PORT
    std::string url() const;

    /// The heads of the requests for a tunnel.
    const std::vector<std::string>& heads() const { return heads_; }
    /// Everything that clients sent, heads too.
    const std::string& sent() const { return sent_; }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    struct Tunnel {
        QTcpSocket* client;
        QTcpSocket* server = nullptr;
        std::string head;
    };

    void read(Tunnel& tunnel);
    void open(Tunnel& tunnel);

    std::string refusal_;
    quint16 port_ = 0;
    std::vector<std::string> heads_;
    std::string sent_;
};

} // namespace sallowmere

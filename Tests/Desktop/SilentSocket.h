// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace sallowmere {

/// A server at which programs can connect and that never says a word.
class SilentSocket {
public:
    explicit SilentSocket(const std::string& path)
        : listening_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= sizeof address.sun_path) {
            throw std::runtime_error("too long: " + path);
        }
        std::memcpy(address.sun_path, path.data(), path.size());
        const void* untyped = &address;
        if (bind(listening_, static_cast<const sockaddr*>(untyped), sizeof address) != 0
            || listen(listening_, 8) != 0) {
            throw std::runtime_error("cannot listen at " + path);
        }
    }
    SilentSocket(const SilentSocket&) = delete;
    SilentSocket& operator=(const SilentSocket&) = delete;
    ~SilentSocket() {
        hangUp();
        close(listening_);
    }

    /// Waits for the next connection and takes it; false when none comes.
    bool accept() {
        pollfd event{listening_, POLLIN, 0};
        constexpr int longEnough = 60'000;
        if (poll(&event, 1, longEnough) != 1) {
            return false;
        }
        connected_ = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
        return connected_ >= 0;
    }

    /// Whether the other end keeps the connection.
    bool isConnected() const {
        std::array<char, 4'096> ignored{};
        ssize_t count = 1;
        while (count > 0) {
            count = recv(connected_, ignored.data(), ignored.size(), MSG_DONTWAIT);
        }
        return count < 0 && errno == EAGAIN;
    }

    void hangUp() {
        if (connected_ >= 0) {
            close(connected_);
            connected_ = -1;
        }
    }

private:
    int listening_;
    int connected_ = -1;
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

#include <optional>
#include <string>

namespace sallowmere {

/// A certificate that vouches for itself, and its key.
struct Certificate {
    QSslCertificate certificate;
    QSslKey key;

    /// For a server that shows it.
    QSslConfiguration shown() const;
    /// For a client that trusts it and no other.
    QSslConfiguration trusted() const;
};

enum class Validity { present, past };

/// Made anew by the `openssl` command for hosts such as "IP:127.0.0.1,DNS:localhost". Absent when
/// there is no such command.
std::optional<Certificate> makeCertificate(const std::string& hosts,
                                           Validity validity = Validity::present);

} // namespace sallowmere

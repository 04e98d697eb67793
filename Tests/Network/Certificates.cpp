// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Certificates.h"

#include "Shell.h"
#include "System/TemporaryHome.h"

#include <QFile>

namespace sallowmere {

namespace {

QByteArray contentOf(const std::string& path) {
    QFile file(QString::fromStdString(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

QSslConfiguration Certificate::shown() const {
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificate(certificate);
    tls.setPrivateKey(key);
    return tls;
}

QSslConfiguration Certificate::trusted() const {
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates({certificate});
    return tls;
}

std::optional<Certificate> makeCertificate(const std::string& hosts, Validity validity) {
    const TemporaryHome home;
    const std::string request = "openssl req -new -newkey ec -pkeyopt ec_paramgen_curve:prime256v1"
                                " -nodes -subj '/CN=sallowmere test' -addext subjectAltName="
                                + hosts + " -keyout key.pem -out request.pem";
    const std::string sign = "openssl x509 -req -in request.pem -copy_extensions copy"
                             " -signkey key.pem -out certificate.pem";
    // Before version 3.4 it knows no dates, and from then on no negative days.
    const std::string dated =
        validity == Validity::present
            ? sign + " -days 2"
            : '(' + sign + " -not_before 20200101000000Z -not_after 20200102000000Z || " + sign
                  + " -days -1)";
    if (!runInShell(request + " && " + dated, home.path())) {
        return std::nullopt;
    }
    Certificate made{QSslCertificate(contentOf(home / "certificate.pem")),
                     QSslKey(contentOf(home / "key.pem"), QSsl::Ec)};
    return made.certificate.isNull() || made.key.isNull() ? std::nullopt
                                                          : std::optional(std::move(made));
}

} // namespace sallowmere

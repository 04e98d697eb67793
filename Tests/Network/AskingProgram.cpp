// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// asking-program CERTIFICATE URL AUTHORIZATION
// Asks a server, whose certificate is in that file, and prints what comes of it. A program of its
// own because proxies are those that the environment named when the program began.
#include "Network/NetworkThreads.h"
#include "Platform/Qt/QtHttpClient.h"
#include "Support/Sanitizers.h"

#include <QCoreApplication>
#include <QSslCertificate>

#include <cstdio>
#include <future>
#include <optional>

int main(int argc, char** argv) {
    using namespace sallowmere;
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates(QSslCertificate::fromPath(arguments[1]));
    std::promise<std::optional<HttpResponse>> answered;
    std::optional<QtHttpClient> client(tls);
    client->get({arguments[2].toStdString(), {{"Authorization", arguments[3].toStdString()}}, 60},
                [&](auto response) { answered.set_value(std::move(response)); });
    const std::optional<HttpResponse> response = answered.get_future().get();
    client.reset();
    NetworkThreads::waitForTheirEnd();
    std::printf("%d %s", response ? response->status : 0, response ? response->body.c_str() : "");
}

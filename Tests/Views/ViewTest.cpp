// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <chrono>

namespace sallowmere {

namespace {

using namespace std::chrono_literals;

void failOnWarning(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        ADD_FAILURE() << message.toStdString();
    }
}

} // namespace

ViewTest::ViewTest(const NotchMetrics& metrics)
    : stage((qInstallMessageHandler(failOnWarning), metrics)) {}

ViewTest::~ViewTest() {
    qInstallMessageHandler(nullptr);
}

void ViewTest::showOpen(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> requests,
                        std::vector<ClaudeProcess> orphans) {
    stage.scan(std::move(sessions), std::move(requests), std::move(orphans));
    stage.open();
}

void ViewTest::showDetails(const SessionInfo& shown) {
    stage.scan({shown, Samples::titled("other", "Write the release notes", 1h)});
    stage.state().toggleSelection(shown.id);
    stage.open();
}

QColor ViewTest::pixel(QPoint place) {
    return stage.view().grabWindow().pixelColor(place);
}

} // namespace sallowmere

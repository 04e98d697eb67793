// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/Sanitizers.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QTemporaryDir>

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    // Nothing of the desktop that the tests run on is seen in them.
    const QTemporaryDir runtime;
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qunsetenv("QT_SCALE_FACTOR");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleMock(&argc, argv);
    return RUN_ALL_TESTS();
}

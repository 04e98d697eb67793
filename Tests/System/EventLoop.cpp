// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/EventLoop.h"

#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace sallowmere {

bool EventLoop::runUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(std::chrono::minutes(1));
    QEventLoop loop;
    QTimer askAgain;
    QObject::connect(&askAgain, &QTimer::timeout, &loop, [&] {
        if (condition() || deadline.hasExpired()) {
            loop.quit();
        }
    });
    askAgain.start(std::chrono::milliseconds(1));
    loop.exec();
    return condition();
}

void EventLoop::runReady() {
    // What becomes ready by running what was ready is ready as well.
    QEventLoop loop;
    while (loop.processEvents()) {
    }
}

} // namespace sallowmere

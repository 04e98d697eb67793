// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>

#include <functional>

namespace sallowmere {

/// An application object, and the event loop of the test's thread.
class EventLoop {
public:
    EventLoop() : application_(argumentCount_, arguments_) {}

    /// Runs the loop until the condition holds, which is asked again and again on this thread.
    /// False when it still does not hold after a minute, which nothing that works takes.
    static bool runUntil(const std::function<bool()>& condition);

    /// Runs everything that is ready to run now, to its end.
    static void runReady();

private:
    int argumentCount_ = 1;
    char name_[6] = "tests";
    char* arguments_[2] = {name_, nullptr};
    QCoreApplication application_;
};

} // namespace sallowmere

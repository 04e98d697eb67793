// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace sallowmere {

namespace {

constexpr std::array handled{SIGTERM, SIGINT, SIGHUP};

/// Readable once a signal has come.
int pending = -1;

void note(int /*signal*/) {
    const int before = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(pending, &one, sizeof one);
    errno = before;
}

void handle(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : handled) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> terminate) {
    pending = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (pending < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    arrived_ = std::make_unique<QSocketNotifier>(pending, QSocketNotifier::Read);
    QObject::connect(arrived_.get(), &QSocketNotifier::activated, arrived_.get(),
                     [this, terminate = std::move(terminate)] {
                         arrived_->setEnabled(false);
                         terminate();
                     });
    handle(note);
}

TerminationSignals::~TerminationSignals() {
    handle(SIG_DFL);
    arrived_.reset();
    close(std::exchange(pending, -1));
}

} // namespace sallowmere

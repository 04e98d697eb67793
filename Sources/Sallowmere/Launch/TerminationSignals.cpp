// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/TerminationSignals.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
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
    const int error = errno;
    const std::uint64_t one = 1;
    [[maybe_unused]] const ssize_t written = write(pending, &one, sizeof one);
    errno = error;
}

/// What was done about each before.
std::array<struct sigaction, handled.size()> before;

/// Whoever started the program may have told it to go on: those are left alone.
void takeOver() {
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled[i], nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN) {
            sigaction(handled[i], &action, nullptr);
        }
    }
}

void putBack() {
    for (std::size_t i = 0; i < handled.size(); ++i) {
        sigaction(handled[i], &before[i], nullptr);
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
    takeOver();
}

TerminationSignals::~TerminationSignals() {
    putBack();
    arrived_.reset();
    close(std::exchange(pending, -1));
}

} // namespace sallowmere

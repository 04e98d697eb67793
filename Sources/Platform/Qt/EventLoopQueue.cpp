// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Qt/EventLoopQueue.h"

#include <QPointer>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <system_error>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace sallowmere {

namespace {

class TimedWork : public ScheduledWork {
public:
    explicit TimedWork(QTimer* timer) : timer_(timer) {}

    void cancel() override {
        if (timer_) {
            timer_->stop();
            timer_->deleteLater();
        }
    }

private:
    QPointer<QTimer> timer_;
};

int makeCount() {
    const int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
    if (descriptor < 0) {
        throw std::system_error(errno, std::generic_category(), "eventfd");
    }
    return descriptor;
}

} // namespace

EventLoopQueue::EventLoopQueue() : count_(makeCount()), someWait_(count_, QSocketNotifier::Read) {
    QObject::connect(&someWait_, &QSocketNotifier::activated, &someWait_, [this] { runNext(); });
}

EventLoopQueue::~EventLoopQueue() {
    someWait_.setEnabled(false);
    timers_.reset();
    // What goes with the work may post more, such as the end of an object to its own thread.
    while (!takeAll().empty()) {
    }
    close(count_);
}

void EventLoopQueue::post(Work work) {
    // Under the lock to the end, because the work may be what ends the queue.
    const std::lock_guard locked(lock_);
    waiting_.push_back(std::move(work));
    eventfd_write(count_, 1);
}

std::shared_ptr<ScheduledWork> EventLoopQueue::after(double seconds, Work work) {
    return schedule(seconds, Turns::one, std::move(work));
}

std::shared_ptr<ScheduledWork> EventLoopQueue::every(double seconds, Work work) {
    return schedule(seconds, Turns::many, std::move(work));
}

std::shared_ptr<ScheduledWork> EventLoopQueue::schedule(double seconds, Turns turns, Work work) {
    auto* timer = new QTimer(timers_.get());
    // A coarse timer may be early by a twentieth, and delays are promised in full.
    timer->setTimerType(Qt::PreciseTimer);
    timer->setInterval(
        std::chrono::ceil<std::chrono::milliseconds>(std::chrono::duration<double>(seconds)));
    if (turns == Turns::one) {
        timer->setSingleShot(true);
        QObject::connect(timer, &QTimer::timeout, timer, [timer, once = std::move(work)]() mutable {
            timer->deleteLater();
            std::exchange(once, nullptr)();
        });
    } else {
        QObject::connect(timer, &QTimer::timeout, timer, std::move(work));
    }
    timer->start();
    return std::make_shared<TimedWork>(timer);
}

void EventLoopQueue::runNext() {
    eventfd_t one = 0;
    if (eventfd_read(count_, &one) != 0) {
        return;
    }
    Work next;
    {
        const std::lock_guard locked(lock_);
        next = std::move(waiting_.front());
        waiting_.pop_front();
    }
    next();
}

std::deque<Work> EventLoopQueue::takeAll() {
    const std::lock_guard locked(lock_);
    return std::exchange(waiting_, {});
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "LineWriter.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <new>
#include <system_error>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {

namespace {

constexpr std::int64_t second = 1'000'000'000;

[[noreturn]] void fail(const char* what) {
    throw std::system_error(errno, std::generic_category(), what);
}

std::int64_t now() {
    timespec time{};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * second + time.tv_nsec;
}

void sleepUntil(std::int64_t moment) {
    const timespec time{moment / second, moment % second};
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &time, nullptr) == EINTR) {
    }
}

std::span<std::atomic<std::int64_t>> sharedNumbers(std::size_t count) {
    void* memory = mmap(nullptr, count * sizeof(std::atomic<std::int64_t>), PROT_READ | PROT_WRITE,
                        MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        fail("mmap");
    }
    return {new (memory) std::atomic<std::int64_t>[count], count};
}

} // namespace

LineWriter::LineWriter(const std::string& path, const std::vector<std::string>& lines,
                       double perSecond)
    : begun_(sharedNumbers(lines.size())), pid_(fork()) {
    if (pid_ < 0) {
        fail("fork");
    }
    if (pid_ > 0) {
        return;
    }
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int file = open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT, 0600);
    const auto interval = static_cast<std::int64_t>(static_cast<double>(second) / perSecond);
    std::int64_t moment = now();
    for (std::size_t i = 0; i < lines.size(); ++i, moment += interval) {
        sleepUntil(moment);
        begun_[i] = now();
        if (write(file, lines[i].data(), lines[i].size())
            != static_cast<ssize_t>(lines[i].size())) {
            _exit(1);
        }
    }
    _exit(0);
}

LineWriter::~LineWriter() {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    munmap(begun_.data(), begun_.size_bytes());
}

double LineWriter::age(std::size_t index) const {
    return static_cast<double>(now() - begun_[index]) / 1e6;
}

} // namespace sallowmere

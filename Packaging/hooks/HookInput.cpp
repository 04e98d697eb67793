// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookInput.h"

#include "Sallowmere/Text/Json.h"

#include <cerrno>
#include <vector>

#include <poll.h>
#include <unistd.h>

namespace sallowmere {

namespace {

using SteadyClock = std::chrono::steady_clock;

/// Waits until something can be read, the end or an error included; false when the time is over.
bool waitForInput(int descriptor, SteadyClock::time_point deadline) {
    for (;;) {
        const auto left =
            std::chrono::ceil<std::chrono::milliseconds>(deadline - SteadyClock::now());
        pollfd waited{descriptor, POLLIN, 0};
        const int ready = left.count() <= 0 ? 0 : poll(&waited, 1, static_cast<int>(left.count()));
        if (ready >= 0 || errno != EINTR) {
            return ready > 0;
        }
    }
}

bool isPassing(int error) {
    return error == EINTR || error == EAGAIN;
}

} // namespace

std::string readInput(int descriptor, std::chrono::milliseconds time) {
    constexpr std::size_t step = 65'536;
    const SteadyClock::time_point deadline = SteadyClock::now() + time;
    std::string input;
    // No memory is touched before it is needed, and nothing is moved.
    input.reserve(largestInput + JsonReader::padding);
    std::vector<char> buffer(step);
    bool isTooLarge = false;
    while (waitForInput(descriptor, deadline)) {
        const ssize_t count = read(descriptor, buffer.data(), buffer.size());
        if (count == 0) {
            break;
        }
        if (count < 0 && !isPassing(errno)) {
            input.clear();
            break;
        }
        const std::size_t added = count < 0 ? 0 : static_cast<std::size_t>(count);
        isTooLarge = isTooLarge || input.size() + added > largestInput;
        if (!isTooLarge) {
            input.append(buffer.data(), added);
        }
    }
    if (isTooLarge) {
        input.clear();
    }
    return input;
}

} // namespace sallowmere

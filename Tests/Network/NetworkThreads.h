// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace sallowmere::NetworkThreads {

/// Whether this program has a thread of Qt's own that loads from the network.
inline bool areThere() {
    const std::filesystem::directory_iterator threads("/proc/self/task");
    return std::any_of(begin(threads), end(threads), [](const auto& thread) {
        std::string name;
        std::getline(std::ifstream(thread.path() / "comm"), name);
        return name == "QNetworkAccessM";
    });
}

/// To be called before a program that asked the network returns from `main`. OpenSSL frees what it
/// keeps for a thread at the very end of that, for which Qt does not wait, and at the end of the
/// program once more.
inline void waitForTheirEnd() {
    while (areThere()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

} // namespace sallowmere::NetworkThreads

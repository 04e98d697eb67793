// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/ProcessReadings.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <utility>

#include <unistd.h>

namespace sallowmere::ProcessReadings {

namespace {

std::filesystem::path directoryOf(pid_t process) {
    return std::filesystem::path("/proc") / std::to_string(process);
}

std::ifstream opened(const std::filesystem::path& path) {
    std::ifstream file(path);
    if (!file) {
        throw std::runtime_error("cannot read " + path.string());
    }
    return file;
}

double* member(Memory& memory, const std::string& label) {
    return label == "Rss:"             ? &memory.resident
           : label == "Pss:"           ? &memory.proportional
           : label == "Private_Dirty:" ? &memory.privateDirty
                                       : nullptr;
}

/// Adds a line such as "Rss:   12 kB".
void add(const std::string& line, Memory& memory) {
    std::istringstream words(line);
    std::string label;
    double kibibytes = 0;
    words >> label >> kibibytes;
    if (double* const sum = member(memory, label)) {
        *sum += kibibytes / 1'024;
    }
}

/// The last word of a line such as "7f0-7f1 r--p 0 08:01 12 /usr/lib/x.so".
std::string nameOf(const std::string& line) {
    std::istringstream words(line);
    std::string word;
    for (int i = 0; i < 5; ++i) {
        words >> word;
    }
    std::string name;
    std::getline(words >> std::ws, name);
    return name.empty() ? "[anonymous]" : std::filesystem::path(name).filename().string();
}

bool beginsMapping(const std::string& line) {
    return line.find('-') < line.find(' ');
}

} // namespace

ProcessorTime processorTime(pid_t process) {
    std::ifstream file = opened(directoryOf(process) / "stat");
    std::string text;
    std::getline(file, text);
    // The name may hold anything, spaces and brackets too.
    std::istringstream words(text.substr(text.rfind(')') + 1));
    std::string passedOver;
    for (int i = 0; i < 11; ++i) {
        words >> passedOver;
    }
    double user = 0;
    double kernel = 0;
    double childrenUser = 0;
    double childrenKernel = 0;
    words >> user >> kernel >> childrenUser >> childrenKernel;
    const double tick = 1e3 / static_cast<double>(sysconf(_SC_CLK_TCK));
    return {(user + kernel) * tick, (childrenUser + childrenKernel) * tick};
}

Memory memory(pid_t process) {
    std::ifstream file = opened(directoryOf(process) / "smaps_rollup");
    Memory result;
    for (std::string line; std::getline(file, line);) {
        add(line, result);
    }
    return result;
}

std::vector<Mapping> mappings(pid_t process) {
    std::ifstream file = opened(directoryOf(process) / "smaps");
    std::map<std::string, Memory> byName;
    std::string name;
    for (std::string line; std::getline(file, line);) {
        if (beginsMapping(line)) {
            name = nameOf(line);
        } else {
            add(line, byName[name]);
        }
    }
    std::vector<Mapping> result;
    for (auto& [key, sum] : byName) {
        result.push_back({key, sum});
    }
    std::sort(result.begin(), result.end(), [](const Mapping& a, const Mapping& b) {
        return a.memory.resident > b.memory.resident;
    });
    return result;
}

Waits waits(pid_t process) {
    Waits result;
    for (const auto& thread : std::filesystem::directory_iterator(directoryOf(process) / "task")) {
        std::ifstream file(thread.path() / "status");
        for (std::string label; file >> label;) {
            if (label == "voluntary_ctxt_switches:") {
                file >> result[thread.path().filename()];
            }
        }
    }
    return result;
}

long waitsBetween(const Waits& before, const Waits& after) {
    long sum = 0;
    for (const auto& [thread, count] : after) {
        const auto known = before.find(thread);
        sum += known == before.end() ? count : count - known->second;
    }
    return sum;
}

} // namespace sallowmere::ProcessReadings

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Runs a command several times and prints the median of what it cost, as
// "CPU-milliseconds wall-milliseconds peak-resident-KiB": measure RUNS COMMAND [ARGUMENTS...]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

struct Cost {
    double cpu = 0;
    double wall = 0;
    long peak = 0;
};

double milliseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
}

Cost run(char** command) {
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        const int null = open("/dev/null", O_RDWR);
        dup2(null, STDIN_FILENO);
        dup2(null, STDOUT_FILENO);
        execvp(command[0], command);
        std::perror(command[0]);
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || !WIFEXITED(status)
        || WEXITSTATUS(status) != 0) {
        std::fprintf(stderr, "measure: %s did not end well\n", command[0]);
        std::exit(EXIT_FAILURE);
    }
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    return {milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime), wall.count(),
            usage.ru_maxrss};
}

template <typename Value>
Value median(std::vector<Cost>& costs, Value Cost::*member) {
    const auto middle = costs.begin() + static_cast<std::ptrdiff_t>(costs.size() / 2);
    std::nth_element(costs.begin(), middle, costs.end(),
                     [member](const Cost& a, const Cost& b) { return a.*member < b.*member; });
    return *middle.*member;
}

} // namespace

int main(int argc, char** argv) {
    const int runs = argc < 3 ? 0 : std::atoi(argv[1]); // NOLINT(cert-err34-c): 0 is refused below
    if (runs < 1) {
        std::fputs("usage: measure RUNS COMMAND [ARGUMENTS...]\n", stderr);
        return 2;
    }
    std::vector<Cost> costs;
    costs.reserve(static_cast<std::size_t>(runs));
    for (int i = 0; i < runs; ++i) {
        costs.push_back(run(argv + 2));
    }
    std::printf("%.2f %.2f %ld\n", median(costs, &Cost::cpu), median(costs, &Cost::wall),
                median(costs, &Cost::peak));
    return EXIT_SUCCESS;
}

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <cstddef>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace sallowmere {

/// As long as this lives this process may open so many more files and no more.
class ScarceDescriptors {
public:
    explicit ScarceDescriptors(std::size_t left) {
        EXPECT_EQ(getrlimit(RLIMIT_NOFILE, &before_), 0);
        rlimit scarce = before_;
        // Numbers are given out from the lowest that is free.
        for (scarce.rlim_cur = 0; left > 0 || isTaken(scarce.rlim_cur); ++scarce.rlim_cur) {
            if (!isTaken(scarce.rlim_cur)) {
                --left;
            }
        }
        EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &scarce), 0);
    }
    ScarceDescriptors(const ScarceDescriptors&) = delete;
    ScarceDescriptors& operator=(const ScarceDescriptors&) = delete;
    ~ScarceDescriptors() { EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &before_), 0); }

private:
    static bool isTaken(rlim_t number) { return fcntl(static_cast<int>(number), F_GETFD) >= 0; }

    rlimit before_{};
};

} // namespace sallowmere

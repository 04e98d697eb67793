// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

namespace sallowmere {

/// Nothing is forbidden to the superuser, who is nobody as long as this lives.
class Unprivileged {
public:
    Unprivileged() { EXPECT_TRUE(before_ != 0 || seteuid(nobody) == 0); }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged() { EXPECT_TRUE(before_ != 0 || seteuid(before_) == 0); }

private:
    static constexpr uid_t nobody = 65'534;

    uid_t before_ = geteuid();
};

} // namespace sallowmere

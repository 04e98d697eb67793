// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <stdexcept>

#include <unistd.h>

namespace sallowmere {

/// As long as it lives the superuser, who may do everything, acts as a user who may not. Nothing
/// changes for anybody else.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (wasSuperuser_ && seteuid(nobody) != 0) {
            throw std::runtime_error("cannot act as an ordinary user");
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;
    ~OrdinaryUser() {
        if (wasSuperuser_ && seteuid(0) != 0) {
            _exit(EXIT_FAILURE);
        }
    }

private:
    static constexpr uid_t nobody = 65'534;
    bool wasSuperuser_ = geteuid() == 0;
};

} // namespace sallowmere

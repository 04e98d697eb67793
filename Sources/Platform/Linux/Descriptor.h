// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <utility>

#include <unistd.h>

namespace sallowmere {

/// An open file descriptor, or none. Closes itself.
class Descriptor {
public:
    Descriptor() = default;
    /// Takes over what a system call returned; none when it failed.
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }

    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }

private:
    int number_ = -1;
};

} // namespace sallowmere

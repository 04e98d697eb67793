// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Descriptor.h"

#include "System/TemporaryHome.h"

#include <gtest/gtest.h>

#include <string>

#include <fcntl.h>

namespace sallowmere {

/// A FIFO that other processes wait at: each reads a line from it. When it is destroyed nobody
/// waits any longer.
class Gate {
public:
    Gate(const TemporaryHome& home, std::string_view relative)
        : path_(home.makeFifo(relative)), end_(open(path_.c_str(), O_RDWR | O_CLOEXEC)) {
        EXPECT_TRUE(end_);
    }

    const std::string& path() const { return path_; }

    /// Lets one process pass.
    void letPass() const { EXPECT_EQ(write(end_.get(), "\n", 1), 1); }

private:
    std::string path_;
    Descriptor end_;
};

} // namespace sallowmere

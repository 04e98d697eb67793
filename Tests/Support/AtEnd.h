// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <utility>

namespace sallowmere {

/// Does something when it is destroyed.
class AtEnd {
public:
    explicit AtEnd(std::function<void()> end) : end_(std::move(end)) {}
    AtEnd(const AtEnd&) = delete;
    AtEnd& operator=(const AtEnd&) = delete;
    ~AtEnd() { end_(); }

private:
    std::function<void()> end_;
};

} // namespace sallowmere

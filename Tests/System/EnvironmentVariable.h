// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace sallowmere {

/// Gives an environment variable another value, or none, as long as this lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(std::string name, const std::optional<std::string>& value)
        : name_(std::move(name)) {
        if (const char* present = std::getenv(name_.c_str())) {
            before_ = present;
        }
        assign(value);
    }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;
    ~EnvironmentVariable() { assign(before_); }

private:
    void assign(const std::optional<std::string>& value) const {
        if (value) {
            setenv(name_.c_str(), value->c_str(), 1);
        } else {
            unsetenv(name_.c_str());
        }
    }

    std::string name_;
    std::optional<std::string> before_;
};

} // namespace sallowmere

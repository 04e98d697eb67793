// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/ProgramRunner.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace sallowmere {

/// Programs that end when and how the test says.
class FakeProgramRunner : public ProgramRunner {
public:
    std::vector<std::string> variables;
    /// What keeps programs from being started.
    std::optional<std::string> obstacle;
    /// In the order they were started.
    std::vector<Program> started;

    std::optional<std::string> start(const Program& program, Ended ended) override {
        if (obstacle) {
            return obstacle;
        }
        started.push_back(program);
        ended_.push_back(std::move(ended));
        return std::nullopt;
    }

    std::vector<std::string> environment() const override { return variables; }

    /// Ends the program that was started as the `index`th, counted from 0.
    void end(std::size_t index, ProgramEnd end) { ended_.at(index)(std::move(end)); }

private:
    std::vector<Ended> ended_;
};

} // namespace sallowmere

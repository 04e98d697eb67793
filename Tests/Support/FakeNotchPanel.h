// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Panel/NotchPanel.h"

#include <utility>
#include <vector>

namespace sallowmere {

/// A window that is as the test says, and notes what is done to it.
class FakeNotchPanel : public NotchPanel {
public:
    struct Move {
        Rect frame;
        double seconds = 0;
        bool operator==(const Move&) const = default;
    };

    bool key = false;
    bool responds = false;
    std::optional<FrontApplication> front;
    Events events;
    NotchMetrics metrics;
    std::vector<Move> moves;
    int shown = 0;
    int firstRespondersCleared = 0;
    std::vector<std::optional<FrontApplication>> activated;

    void observe(Events observer) override { events = std::move(observer); }
    void setMetrics(const NotchMetrics& measured) override { metrics = measured; }
    Rect frame() const override { return moves.empty() ? Rect() : moves.back().frame; }
    void setFrame(const Rect& frame, double seconds) override { moves.push_back({frame, seconds}); }
    void show() override { ++shown; }
    bool isKey() const override { return key; }
    bool hasFirstResponder() const override { return responds; }
    void clearFirstResponder() override { ++firstRespondersCleared; }
    std::optional<FrontApplication> frontmost() const override { return front; }
    void activate(std::optional<FrontApplication> application) override {
        activated.push_back(application);
        key = false;
    }
};

} // namespace sallowmere

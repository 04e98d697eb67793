// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/NotchWindowController.h"

#include <QPointer>

#include <utility>

namespace sallowmere {

NotchWindowController::NotchWindowController(AppState& state, NotchPanel& panel, Screens& screens,
                                             MainQueue& queue)
    : state_(state), panel_(panel), screens_(screens), queue_(queue),
      metrics_(NotchMetrics::detect(std::nullopt, screens)), expanded_(state.expanded()),
      contentHeight_(state.contentHeight()), editing_(state.editingPrompt()) {
    followPanel();
    panel_.setMetrics(metrics_);
    applyFrame(false, 0, 0);
    panel_.show();
    followModel();
    applyFrame(expanded_, contentHeight_, animationTime);
    screens_.observe([this] { soon(&NotchWindowController::screenChanged); });
}

NotchWindowController::~NotchWindowController() {
    screens_.observe({});
    panel_.observe({});
}

void NotchWindowController::followModel() {
    connect(&state_, &AppState::expandedWillChange, this, &NotchWindowController::expandedChanged);
    connect(&state_, &AppState::contentHeightWillChange, this,
            &NotchWindowController::contentHeightChanged);
    connect(&state_, &AppState::editingPromptWillChange, this,
            &NotchWindowController::editingChanged);
}

void NotchWindowController::followPanel() {
    panel_.observe({[this](bool inside) {
                        queue_.post([controller = QPointer(this), inside] {
                            if (controller) {
                                controller->state_.hoverChanged(inside);
                            }
                        });
                    },
                    [this] { soon(&NotchWindowController::rememberFrontApplication); },
                    [this] { soon(&NotchWindowController::stopEditing); }});
}

void NotchWindowController::soon(void (NotchWindowController::*task)()) {
    queue_.post([controller = QPointer(this), task] {
        if (controller) {
            (controller.data()->*task)();
        }
    });
}

void NotchWindowController::expandedChanged(bool expanded) {
    if (std::exchange(expanded_, expanded) == expanded) {
        return;
    }
    applyFrame(expanded_, contentHeight_, animationTime);
    if (!expanded_) {
        giveKeyboardBack();
    }
}

void NotchWindowController::contentHeightChanged(double height) {
    if (std::exchange(contentHeight_, height) != height) {
        applyFrame(expanded_, contentHeight_, animationTime);
    }
}

void NotchWindowController::editingChanged(bool editing) {
    if (std::exchange(editing_, editing) != editing && !editing_) {
        giveKeyboardBack();
    }
}

void NotchWindowController::applyFrame(bool expanded, double contentHeight, double seconds) {
    const Rect frame = metrics_.frame(expanded, contentHeight, state_.settings().wingWidth);
    if (panel_.frame() != frame) {
        panel_.setFrame(frame, seconds);
    }
}

void NotchWindowController::rememberFrontApplication() {
    previousApp_ = panel_.frontmost();
    // Nobody types any more: what follows from that has been before the keyboard came. That
    // somebody does the model may not have been told yet.
    if (!editing_ && !panel_.hasFirstResponder()) {
        giveKeyboardBack();
    }
}

void NotchWindowController::stopEditing() {
    state_.setEditingPrompt(false);
}

void NotchWindowController::giveKeyboardBack() {
    if (panel_.isKey()) {
        panel_.clearFirstResponder();
        panel_.activate(std::exchange(previousApp_, std::nullopt));
    }
}

void NotchWindowController::screenChanged() {
    metrics_ = NotchMetrics::detect(metrics_, screens_);
    panel_.setMetrics(metrics_);
    applyFrame(expanded_, contentHeight_, 0);
}

} // namespace sallowmere

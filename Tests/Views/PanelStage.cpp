// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/PanelStage.h"

#include "Views/Samples.h"

#include <QCoreApplication>

#include <utility>

namespace sallowmere {

PanelStage::PanelStage(const NotchMetrics& metrics)
    : metrics_(metrics), start_(Samples::now()), queue_(start_), player_(sounds_, queue_.clock()),
      state_(std::make_unique<AppState>(Settings::defaults("/home/u"), services())),
      model_(std::make_unique<PanelModel>(*state_, keystrokes, queue_)),
      view_(std::make_unique<PanelView>(*model_, metrics, state_->settings().wingWidth)) {
    applications.running[7] = {};
    view_->setMotionWanted(false);
    Keyboard& keyboard = view_->keyboard();
    QObject::connect(&keyboard, &Keyboard::wanted, &keyboard,
                     [&keyboard] { keyboard.setHeld(true); });
    view_->show();
    settle();
}

AppServices PanelStage::services() {
    return {queue_.clock(),
            queue_,
            files_,
            "/home/u",
            applications,
            keystrokes,
            [](const std::string& /*folder*/) {},
            player_,
            [this](const QString& prompt, const SessionInfo& session, const Settings& /*settings*/,
                   PromptRunner::Completion completion) {
                prompts.push_back({prompt, session.id, std::move(completion)});
            }};
}

void PanelStage::scan(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> requests,
                      std::vector<ClaudeProcess> orphans) {
    state_->setUsage(Samples::usage());
    state_->applyScan(std::move(sessions), std::move(orphans), std::move(requests));
    settle();
}

void PanelStage::open() {
    state_->hoverChanged(true);
    settle();
}

void PanelStage::settle() {
    // Views measure themselves, which changes the model once more.
    for (int turn = 0; turn < 4; ++turn) {
        queue_.runPosted();
        QCoreApplication::processEvents();
        const Rect frame = metrics_.frame(state_->expanded(), state_->contentHeight(),
                                          state_->settings().wingWidth);
        view_->resize(qRound(frame.width), qRound(frame.height));
        // Lays everything out, whenever the next frame is due.
        view_->grabWindow();
    }
}

} // namespace sallowmere

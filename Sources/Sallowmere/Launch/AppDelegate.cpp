// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/AppDelegate.h"

#include "Platform/Linux/NotchedLaptops.h"

#include <utility>

namespace sallowmere {

void AppDelegate::applicationDidFinishLaunching(std::function<void()> quit) {
    Settings::writeTemplateIfMissing(services_.home());
    state_ = std::make_unique<AppState>(Settings::load(services_.files(), services_.home()),
                                        services_.forModel());
    model_ = std::make_unique<PanelModel>(*state_, services_.keystrokes(), services_.mainQueue());
    QObject::connect(model_.get(), &PanelModel::quitRequested, model_.get(), std::move(quit));
    showPanel();
    engine_ = RefreshEngine::create(*state_, services_.forEngine());
    engine_->start();
}

void AppDelegate::showPanel() {
    X11Events& events = services_.events();
    X11Connection& connection = services_.connection();
    screens_ =
        std::make_unique<X11Screens>(events, connection, NotchedLaptops::modelOfThisMachine());
    motion_ = std::make_unique<MotionPreference>(events, connection);
    view_ = std::make_unique<PanelView>(*model_, NotchMetrics::detect(std::nullopt, *screens_),
                                        state_->settings().wingWidth);
    view_->setMotionWanted(motion_->isWanted());
    QObject::connect(motion_.get(), &MotionPreference::changed, view_.get(),
                     &PanelView::setMotionWanted);
    panel_ = std::make_unique<X11NotchPanel>(*view_, events, connection);
    windowController_ =
        std::make_unique<NotchWindowController>(*state_, *panel_, *screens_, services_.mainQueue());
}

} // namespace sallowmere

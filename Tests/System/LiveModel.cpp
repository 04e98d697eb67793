// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/LiveModel.h"

#include "Platform/Linux/LinuxClock.h"

#include <algorithm>

namespace sallowmere {

LiveModel::LiveModel(const std::string& home, const std::string& ps, double patience)
    : processes_(ps, patience), player_(sounds_, linuxClock()),
      state_(std::make_unique<AppState>(
          Settings::load(files_, home),
          AppServices{linuxClock(), mainQueue_, files_, home, applications_, keystrokes_,
                      [](const std::string&) {}, player_,
                      [](const QString&, const SessionInfo&, const Settings&,
                         const PromptRunner::Completion&) {}})),
      engine_(RefreshEngine::create(
          *state_, {linuxClock(), mainQueue_, workQueue_, files_, processes_, home,
                    [this](double, const UsageAPI::Completion& completion) {
                        service_.post([completion] {
                            OfficialUsage official;
                            official.session = OfficialUsage::Limit{0.5, std::nullopt};
                            official.fetchedAt = linuxClock()();
                            completion(official);
                        });
                    }})) {
    engine_->start();
}

LiveModel::~LiveModel() {
    engine_.reset();
    workQueue_.stop();
}

const SessionInfo* LiveModel::session(const QString& title) const {
    const std::vector<SessionInfo>& sessions = state_->sessions();
    const auto found = std::find_if(sessions.begin(), sessions.end(),
                                    [&](const SessionInfo& each) { return each.title == title; });
    return found == sessions.end() ? nullptr : &*found;
}

} // namespace sallowmere

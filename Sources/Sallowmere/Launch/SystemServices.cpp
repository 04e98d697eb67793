// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/SystemServices.h"

#include "Platform/Desktop/XdgFolderOpener.h"
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxUser.h"

#include <utility>

namespace sallowmere {

SystemServices::SystemServices()
    : home_(homeDirectory()), player_(sounds_, linuxSteadyClock()),
      usageAPI_(keychain_, files_, linuxClock(), home_) {}

AppServices SystemServices::forModel() {
    return {linuxClock(),
            mainQueue_,
            files_,
            home_,
            applications_,
            keystrokes_,
            xdgFolderOpener(),
            player_,
            [this](const QString& prompt, const SessionInfo& session, const Settings& settings,
                   const PromptRunner::Completion& completion) {
                PromptRunner::send(prompt, session, settings,
                                   {files_, programs_, home_, promptQueue_, mainQueue_},
                                   completion);
            }};
}

RefreshServices SystemServices::forEngine() {
    return {linuxClock(),
            mainQueue_,
            workQueue_,
            files_,
            processes_,
            home_,
            [this](double timeout, UsageAPI::Completion completion) {
                fetchOfficialUsage(timeout, std::move(completion));
            }};
}

void SystemServices::fetchOfficialUsage(double timeout, UsageAPI::Completion completion) {
    officialQueue_.post([this, timeout, completion = std::move(completion)] {
        usageAPI_.fetch(timeout, http_, completion);
    });
}

} // namespace sallowmere

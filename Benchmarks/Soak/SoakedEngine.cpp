// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Soak/SoakedEngine.h"

#include <utility>

namespace sallowmere {

namespace {

constexpr double promptSeconds = 7;

Settings settingsFor(const std::string& home) {
    Settings settings = Settings::defaults(home);
    settings.usageAPIEnabled = true;
    settings.maxSessions = 20;
    return settings;
}

} // namespace

SoakedEngine::SoakedEngine(SimulatedTime& time, const std::string& home)
    : time_(time), service_(time.main()), player_(sounds_, time.clock()),
      usageAPI_(keychain_, files_, time.clock(), home), state_(settingsFor(home), forModel(home)),
      panel_(state_, keystrokes_, time.main()),
      engine_(RefreshEngine::create(state_, forEngine(home))) {
    QObject::connect(&state_, &AppState::sessionsWillChange, &state_, [this] { ++scans_; });
    engine_->start();
}

AppServices SoakedEngine::forModel(const std::string& home) {
    return {time_.clock(),
            time_.main(),
            files_,
            home,
            applications_,
            keystrokes_,
            [](const std::string&) {},
            player_,
            [this](const auto&, const auto&, const auto&, const auto& completion) {
                runPrompt(completion);
            }};
}

RefreshServices SoakedEngine::forEngine(const std::string& home) {
    return {time_.clock(),
            time_.main(),
            time_.work(),
            files_,
            processes_,
            home,
            [this](double timeout, UsageAPI::Completion completion) {
                usageAPI_.fetch(timeout, service_, std::move(completion));
            }};
}

void SoakedEngine::runPrompt(const PromptRunner::Completion& completion) {
    const bool fails = ++prompts_ % 3 == 0;
    time_.main().after(promptSeconds, [completion, fails] {
        completion(fails ? std::optional(QStringLiteral("The lantern is out")) : std::nullopt);
    });
}

} // namespace sallowmere

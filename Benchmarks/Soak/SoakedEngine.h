// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Application/RefreshEngine.h"
#include "Sallowmere/Panel/PanelModel.h"
#include "Soak/Outside.h"
#include "Soak/SimulatedTime.h"

#include <memory>
#include <string>

namespace sallowmere {

/// The engine and the model, real but for time, processes, the desktop and the service, on a home
/// directory of the real file system.
class SoakedEngine {
public:
    SoakedEngine(SimulatedTime& time, const std::string& home);

    AppState& state() { return state_; }
    PanelModel& panel() { return panel_; }
    SoakProcesses& processes() { return processes_; }
    SoakService& service() { return service_; }

    /// Scans that the model took over.
    std::uint64_t scans() const { return scans_; }
    std::uint64_t prompts() const { return prompts_; }
    std::uint64_t typed() const { return keystrokes_.typed(); }
    std::uint64_t played() const { return sounds_.played(); }

private:
    AppServices forModel(const std::string& home);
    RefreshServices forEngine(const std::string& home);
    void runPrompt(const PromptRunner::Completion& completion);

    SimulatedTime& time_;
    LinuxFileSystem files_;
    SoakProcesses processes_;
    SoakService service_;
    SoakKeychain keychain_;
    SoakApplications applications_;
    SoakKeystrokes keystrokes_;
    SoakSounds sounds_;
    SoundPlayer player_;
    UsageAPI usageAPI_;
    std::uint64_t scans_ = 0;
    std::uint64_t prompts_ = 0;
    AppState state_;
    PanelModel panel_;
    std::shared_ptr<RefreshEngine> engine_;
};

} // namespace sallowmere

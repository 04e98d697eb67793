// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/HttpClient.h"
#include "Platform/Keychain.h"
#include "Platform/Keystrokes.h"
#include "Platform/ProcessTable.h"
#include "Platform/SystemSounds.h"
#include "Platform/WorkQueue.h"

#include <cstdint>
#include <map>
#include <string>
#include <utility>

namespace sallowmere {

/// Assistants that come and go, each in a directory and under a terminal.
class SoakProcesses : public ProcessTable {
public:
    void begin(std::int32_t pid, std::string directory) { running_[pid] = std::move(directory); }
    /// The oldest one.
    void endOne();
    std::size_t count() const { return running_.size(); }

    std::string listing() const override;
    std::optional<std::string> workingDirectory(std::int32_t pid) const override;
    std::uint32_t userId() const override { return 1'000; }
    std::span<const TerminalRule> terminals() const override { return {}; }

private:
    std::map<std::int32_t, std::string> running_;
};

/// The official service: it answers with a status, or falls silent until the time is over.
class SoakService : public HttpClient {
public:
    /// A status that stands for none.
    static constexpr int silence = 0;

    explicit SoakService(MainQueue& queue) : queue_(queue) {}

    void become(int status) { status_ = status; }
    std::uint64_t asked() const { return asked_; }

    void get(HttpRequest request, Completion completion) override;

private:
    MainQueue& queue_;
    int status_ = 200;
    std::uint64_t asked_ = 0;
};

class SoakKeychain : public Keychain {
public:
    Item genericPassword(std::string_view service) override;
};

/// A terminal that is always there and gets the keyboard when it is activated.
class SoakApplications : public Applications {
public:
    std::optional<RunningApplication> ofProcess(std::int32_t pid) override;
    std::optional<RunningApplication> withIdentifier(std::string_view identifier) override;
    void activate(RunningApplication) override {}
    std::vector<ApplicationWindow> windows(RunningApplication application) override;
    void raise(const ApplicationWindow&) override {}
    bool hasKeyboard(RunningApplication) override { return true; }
};

class SoakKeystrokes : public Keystrokes {
public:
    std::uint64_t typed() const { return typed_; }

    bool isTrusted() override { return true; }
    void requestTrust() override {}
    void typeDigit(int) override { ++typed_; }

private:
    std::uint64_t typed_ = 0;
};

class SoakSounds : public SystemSounds {
public:
    std::uint64_t played() const { return played_; }

    void play(std::string_view, float) override { ++played_; }

private:
    std::uint64_t played_ = 0;
};

} // namespace sallowmere

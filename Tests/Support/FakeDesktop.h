// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/Keystrokes.h"
#include "Platform/SystemSounds.h"

#include <map>
#include <string>
#include <vector>

namespace sallowmere {

/// Applications that the test makes up. What was done to them is noted in `done`, in order.
class FakeApplications : public Applications {
public:
    /// By process, each with its windows from front to back.
    std::map<std::int32_t, std::vector<ApplicationWindow>> running;
    /// The application whose helper a process is.
    std::map<std::int32_t, std::int32_t> helpers;
    /// By identifier.
    std::map<std::string, std::int32_t> identifiers;
    /// Which application gets the keyboard when it is activated; false for a desktop that refuses.
    bool givesKeyboard = true;
    std::int32_t keyboardOwner = 0;
    /// Such as "activate 7" and "raise 70".
    std::vector<std::string> done;

    std::optional<RunningApplication> ofProcess(std::int32_t pid) override {
        const auto helper = helpers.find(pid);
        const std::int32_t owner = helper == helpers.end() ? pid : helper->second;
        return running.contains(owner) ? std::optional(RunningApplication{owner}) : std::nullopt;
    }

    std::optional<RunningApplication> withIdentifier(std::string_view identifier) override {
        const auto found = identifiers.find(std::string(identifier));
        return found == identifiers.end() ? std::nullopt
                                          : std::optional(RunningApplication{found->second});
    }

    void activate(RunningApplication application) override {
        done.push_back("activate " + std::to_string(application.pid));
        if (givesKeyboard) {
            keyboardOwner = application.pid;
        }
    }

    std::vector<ApplicationWindow> windows(RunningApplication application) override {
        return running[application.pid];
    }

    void raise(const ApplicationWindow& window) override {
        done.push_back("raise " + std::to_string(window.id));
    }

    bool hasKeyboard(RunningApplication application) override {
        return keyboardOwner == application.pid;
    }
};

/// A keyboard that notes what is typed.
class FakeKeystrokes : public Keystrokes {
public:
    bool trusted = true;
    int trustRequests = 0;
    std::vector<int> typed;

    bool isTrusted() override { return trusted; }
    void requestTrust() override { ++trustRequests; }
    void typeDigit(int digit) override { typed.push_back(digit); }
};

/// Sounds that the test can read.
class FakeSounds : public SystemSounds {
public:
    struct Played {
        std::string name;
        float volume = 0;

        bool operator==(const Played&) const = default;
    };

    std::vector<Played> played;

    void play(std::string_view name, float volume) override {
        played.push_back({std::string(name), volume});
    }
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "System/TemporaryHome.h"

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// A session of the assistant whose transcript grows as the test says.
class LiveSession {
public:
    LiveSession(const TemporaryHome& home, const std::string& project, const std::string& title);

    const std::string& id() const { return id_; }
    const std::string& title() const { return title_; }
    /// Where its assistant runs.
    const std::string& directory() const { return directory_; }

    /// The user types a prompt: the session works.
    void work(std::string_view prompt = "go on");
    void say(std::string_view text);
    void ask(std::string_view question, const std::vector<std::string>& options);
    void plan(std::string_view text);
    /// What the tool returns after the user has answered, or allowed it.
    void takeAnswer();
    /// The turn ends.
    void finish();

private:
    void append(const std::string& line);
    /// The members that every line has.
    std::string members() const;

    std::string id_;
    std::string title_;
    std::string directory_;
    std::string transcript_;
    /// How long what is written next is past.
    std::chrono::seconds ago_;
};

/// A home directory in which the assistant works and the panel runs.
class LiveHome {
public:
    /// `settings` are further members of the settings file, each with a comma in front.
    explicit LiveHome(const std::string& settings = {});

    const TemporaryHome& directory() const { return home_; }
    /// What the recorder of keys is called when it stands in for the assistant.
    const std::string& assistant() const { return assistant_; }

    /// It is done already, so that nothing about it is news.
    LiveSession addSession(const std::string& project, const std::string& title) const;

    /// A session asks for a permission; returns the file that says so.
    std::string requestPermission(const LiveSession& session, const std::string& message) const;

private:
    TemporaryHome home_;
    std::string assistant_;
};

} // namespace sallowmere

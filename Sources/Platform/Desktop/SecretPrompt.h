// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <gio/gio.h>

namespace sallowmere {

/// A question that a Secret Service has for the user.
///
/// libsecret asks such questions too, but waits for ever when the service ends meanwhile or does
/// not tell that a question was taken back (0.20.5).
class SecretPrompt {
public:
    /// `owner` is the unique name of the service on the bus, `path` that of the question. To be
    /// used on one thread, in one thread-default event context.
    SecretPrompt(GDBusConnection* bus, std::string owner, std::string path);
    SecretPrompt(const SecretPrompt&) = delete;
    SecretPrompt& operator=(const SecretPrompt&) = delete;
    ~SecretPrompt();

    /// Has the user asked and waits for the answer, for as long as the service and the bus are
    /// there. False also when it could not be asked. Takes the question back when cancelled.
    bool isAccepted(GCancellable* cancelled);

private:
    enum class Answer { none, accepted, dismissed };

    void answer(Answer answer);
    void show(GCancellable* cancelled);
    void waitForAnswer(GCancellable* cancelled);
    void takeBack();

    GDBusConnection* bus_;
    std::string owner_;
    std::string path_;
    guint signal_ = 0;
    guint watch_ = 0;
    Answer answer_ = Answer::none;
};

} // namespace sallowmere

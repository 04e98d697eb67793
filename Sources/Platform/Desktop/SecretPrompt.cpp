// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/SecretPrompt.h"

#include "Platform/Desktop/GLibReference.h"

#include <limits>
#include <utility>

namespace sallowmere {

namespace {

constexpr const char* promptInterface = "org.freedesktop.Secret.Prompt";
constexpr int noTimeout = std::numeric_limits<int>::max();

} // namespace

SecretPrompt::SecretPrompt(GDBusConnection* bus, std::string owner, std::string path)
    : bus_(bus), owner_(std::move(owner)), path_(std::move(path)) {
    signal_ = g_dbus_connection_signal_subscribe(
        bus_, owner_.c_str(), promptInterface, "Completed", path_.c_str(), nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*,
           GVariant* parameters, gpointer self) {
            gboolean dismissed = TRUE;
            g_variant_get_child(parameters, 0, "b", &dismissed);
            static_cast<SecretPrompt*>(self)->answer(dismissed == FALSE ? Answer::accepted
                                                                        : Answer::dismissed);
        },
        this, nullptr);
    watch_ = g_bus_watch_name_on_connection(
        bus_, owner_.c_str(), G_BUS_NAME_WATCHER_FLAGS_NONE, nullptr,
        [](GDBusConnection*, const char*, gpointer self) {
            static_cast<SecretPrompt*>(self)->answer(Answer::dismissed);
        },
        this, nullptr);
}

SecretPrompt::~SecretPrompt() {
    g_bus_unwatch_name(watch_);
    g_dbus_connection_signal_unsubscribe(bus_, signal_);
}

bool SecretPrompt::isAccepted(GCancellable* cancelled) {
    show(cancelled);
    waitForAnswer(cancelled);
    if (answer_ == Answer::none) {
        takeBack();
    }
    return answer_ == Answer::accepted;
}

void SecretPrompt::answer(Answer answer) {
    if (answer_ == Answer::none) {
        answer_ = answer;
    }
}

void SecretPrompt::show(GCancellable* cancelled) {
    const Reference<GVariant> reply(g_dbus_connection_call_sync(
        bus_, owner_.c_str(), path_.c_str(), promptInterface, "Prompt", g_variant_new("(s)", ""),
        nullptr, G_DBUS_CALL_FLAGS_NONE, noTimeout, cancelled, nullptr));
    if (!reply && g_cancellable_is_cancelled(cancelled) == FALSE) {
        answer(Answer::dismissed);
    }
}

void SecretPrompt::waitForAnswer(GCancellable* cancelled) {
    GMainContext* context = g_main_context_get_thread_default();
    const auto wakeUp = [](GCancellable*, GMainContext* waiting) {
        g_main_context_wakeup(waiting);
    };
    // Not a source of GLib's own for this, which may be left behind when it is cancelled (2.74).
    const gulong connection = g_cancellable_connect(
        cancelled, G_CALLBACK(static_cast<void (*)(GCancellable*, GMainContext*)>(wakeUp)), context,
        nullptr);
    while (answer_ == Answer::none && g_cancellable_is_cancelled(cancelled) == FALSE) {
        g_main_context_iteration(context, TRUE);
    }
    g_cancellable_disconnect(cancelled, connection);
}

void SecretPrompt::takeBack() {
    g_dbus_connection_call(bus_, owner_.c_str(), path_.c_str(), promptInterface, "Dismiss", nullptr,
                           nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr, nullptr);
    g_dbus_connection_flush_sync(bus_, nullptr, nullptr);
}

} // namespace sallowmere

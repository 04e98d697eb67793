// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include <xcb/xcb.h>

namespace sallowmere {

/// What an X server tells of its desktop: which windows on it came, moved or went, which of its
/// properties changed, and which compositor runs. On a connection of its own that asks nothing, so
/// that nothing is overlooked; it wakes only when something happened. Main thread, with a Qt event
/// loop.
class X11Events : public QObject {
    Q_OBJECT

public:
    /// `display` is a name such as ":1"; the environment's when empty. Nothing ever happens on one
    /// that is not there or has gone.
    explicit X11Events(const std::string& display = {});
    ~X11Events() override;

    /// Tells from now on also of changes of that window's properties, or of who gets and loses the
    /// keyboard there. One of the two for each window; no effect on a window that has gone.
    void watchProperties(xcb_window_t window);
    void watchFocus(xcb_window_t window);

signals:
    void arrived(const xcb_generic_event_t* event);
    /// A compositor came or went.
    void compositorChanged();

private:
    void watchDesktop(int screen);
    void select(xcb_window_t window, std::uint32_t events);
    void dispatch();
    void announce(const xcb_generic_event_t* event);

    xcb_connection_t* connection_;
    /// Of the event about the compositor; none where the server cannot tell.
    std::optional<int> compositorEvent_;
    std::unique_ptr<QSocketNotifier> readable_;
    /// Fires when something may have been read that nobody was woken for.
    QTimer unread_;
};

/// The event as what it is; null when it is of another kind.
template <typename Event>
const Event* eventOf(const xcb_generic_event_t* event, int kind) {
    constexpr int kindBits = 0x7F;
    return (event->response_type & kindBits) == kind ? reinterpret_cast<const Event*>(event)
                                                     : nullptr;
}

} // namespace sallowmere

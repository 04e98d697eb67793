// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"
#include "Sallowmere/Panel/NotchMetrics.h"

#include <cstdint>
#include <functional>
#include <optional>

namespace sallowmere {

/// The window that hangs over all others and shows the panel's views. It never takes the keyboard
/// but for a view that needs it. Main thread only.
class NotchPanel {
public:
    /// Somebody who can have the keyboard, by the window system's own number.
    struct FrontApplication {
        std::uint64_t id = 0;
        bool operator==(const FrontApplication&) const = default;
    };

    /// What the panel tells, also from within the operations below.
    struct Events {
        /// The pointer entered or left it, whichever application is active.
        std::function<void(bool)> hoverChanged;
        /// It got the keyboard, or lost it.
        std::function<void()> becameKey;
        std::function<void()> resignedKey;
    };

    NotchPanel() = default;
    NotchPanel(const NotchPanel&) = delete;
    NotchPanel& operator=(const NotchPanel&) = delete;
    virtual ~NotchPanel() = default;

    virtual void observe(Events events) = 0;

    /// For the views.
    virtual void setMetrics(const NotchMetrics& metrics) = 0;

    /// Where it is, or is on its way to.
    virtual Rect frame() const = 0;
    /// Goes there at once, or within so many seconds, fast first.
    virtual void setFrame(const Rect& frame, double seconds) = 0;
    /// Shows it above everything, without taking the keyboard.
    virtual void show() = 0;

    /// Whether it has the keyboard.
    virtual bool isKey() const = 0;
    /// Whether a view in it has the focus, be it that the keyboard is still on its way.
    virtual bool hasFirstResponder() const = 0;
    /// No view in it has the focus any more.
    virtual void clearFirstResponder() = 0;

    /// Whoever has the keyboard, or had it when the panel took it; absent when nobody did.
    virtual std::optional<FrontApplication> frontmost() const = 0;
    /// Hands the keyboard over, to whoever the window system finds fit when that one has gone.
    virtual void activate(std::optional<FrontApplication> application) = 0;
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace sallowmere {

/// A rectangle in points. The origin of all screens together is at the bottom left of the main one,
/// and y grows upwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double midX() const { return x + width / 2; }
    double maxY() const { return y + height; }

    bool operator==(const Rect&) const = default;
};

/// One display as the desktop uses it.
struct Screen {
    Rect frame;
    /// What bars and docks leave of it.
    Rect visibleFrame;
    /// How far a camera notch reaches down; 0 without one.
    double topInset = 0;
    /// Widths of the strips beside the notch; absent when unknown.
    std::optional<double> leftOfNotch;
    std::optional<double> rightOfNotch;

    bool operator==(const Screen&) const = default;
};

/// The displays of the desktop. Main thread only.
class Screens {
public:
    Screens() = default;
    Screens(const Screens&) = delete;
    Screens& operator=(const Screens&) = delete;
    virtual ~Screens() = default;

    /// All of them in the desktop's order; may be none for a moment.
    virtual std::vector<Screen> all() const = 0;
    /// The one that the desktop calls its main one, if it has such.
    virtual std::optional<Screen> main() const = 0;

    /// `changed` is called after any of that has changed, in place of who was called before; with
    /// nothing, nobody is.
    void observe(std::function<void()> changed) { changed_ = std::move(changed); }

protected:
    void announceChange() const {
        if (changed_) {
            changed_();
        }
    }

private:
    std::function<void()> changed_;
};

} // namespace sallowmere

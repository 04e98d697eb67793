// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "EndToEnd/Windows.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>

// As the library that reads accessible trees calls them, whose headers do not go well with others.
// NOLINTNEXTLINE(readability-identifier-naming,bugprone-reserved-identifier)
struct _AtspiAccessible;

namespace sallowmere {

/// Something on the screen as an assistive program sees it.
struct Control {
    /// Such as "push button".
    std::string role;
    std::string name;
    std::string description;
    Box box;
    bool isShown = false;
    bool isFocused = false;
    bool isFocusable = false;
    std::vector<std::string> actions;
    std::shared_ptr<_AtspiAccessible> object;
};

/// What a program shows to assistive programs. The buses must be there.
class AccessibleTree {
public:
    explicit AccessibleTree(pid_t program);

    /// All that is on the screen at present, in order.
    std::vector<Control> shown() const;

    /// The first that is shown with that name, and role unless that is empty; waits for it.
    Control find(const std::string& name, const std::string& role = {}) const;
    bool isShown(const std::string& name, const std::string& role = {}) const;
    /// Whether something with that description is shown.
    bool isDescribed(const std::string& description) const;
    /// Waits until there is none.
    void waitUntilGone(const std::string& name, const std::string& role = {}) const;

    /// All that is shown, a line each.
    std::string text() const;

    /// The text in a field.
    static std::string text(const Control& field);
    /// Whether it has the keyboard by now.
    static bool isFocused(const Control& control);
    /// Does the first of its actions, as a screen reader would.
    static void act(const Control& control);

private:
    using Object = std::shared_ptr<_AtspiAccessible>;
    /// Returns whether to go on.
    using Visitor = std::function<bool(const Object&)>;

    Object application() const;
    static bool visit(const Object& object, const Visitor& visitor);
    bool findShown(const std::string& name, const std::string& role, Control* found) const;

    pid_t program_;
};

} // namespace sallowmere

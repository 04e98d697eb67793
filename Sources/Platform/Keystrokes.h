// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

namespace sallowmere {

/// Types for the user. Main thread; nothing throws.
class Keystrokes {
public:
    Keystrokes() = default;
    Keystrokes(const Keystrokes&) = delete;
    Keystrokes& operator=(const Keystrokes&) = delete;
    virtual ~Keystrokes() = default;

    /// Whether this program may type into other applications and arrange their windows.
    virtual bool isTrusted() = 0;

    /// Asks the user for that, where the desktop has a way to ask. Returns at once.
    virtual void requestTrust() = 0;

    /// Types the digit `digit`, 1 to 9, into the window that has the keyboard, whatever the
    /// keyboard's layout. Nothing is typed while keys are held down that would turn the digit into
    /// something else, nor with a layout that has no way to type it.
    virtual void typeDigit(int digit) = 0;
};

} // namespace sallowmere

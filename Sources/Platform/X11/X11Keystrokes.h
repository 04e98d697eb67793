// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Keystrokes.h"
#include "Platform/X11/X11Connection.h"

#include <memory>
#include <vector>

#include <xkbcommon/xkbcommon.h>

namespace sallowmere {

/// Types as if on the keyboard. An X server lets every program do that: there is nobody to ask.
class X11Keystrokes : public Keystrokes {
public:
    /// `connection` must outlive this.
    explicit X11Keystrokes(X11Connection& connection);

    /// Whether the server has a way to type at all.
    bool isTrusted() override;
    /// Does nothing.
    void requestTrust() override {}
    void typeDigit(int digit) override;

private:
    struct Unref {
        void operator()(xkb_context* context) const { xkb_context_unref(context); }
        void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
        void operator()(xkb_state* state) const { xkb_state_unref(state); }
    };

    std::vector<xkb_keycode_t> keysFor(int digit);

    X11Connection& connection_;
    std::unique_ptr<xkb_context, Unref> context_;
    bool tellsKeymap_ = false;
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XClient.h"

#include <cstdlib>
#include <memory>

namespace sallowmere {

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

/// What an X server answered; null when it refused.
template <typename Answer>
using XReply = std::unique_ptr<Answer, FreeMemory>;

/// The answer to a request, by the function of xcb's that fetches it.
template <typename Answer, typename Cookie>
XReply<Answer> reply(Answer* (*fetch)(xcb_connection_t*, Cookie, xcb_generic_error_t**),
                     XClient& client, Cookie cookie) {
    xcb_generic_error_t* error = nullptr;
    XReply<Answer> answer(fetch(client.xcb(), cookie, &error));
    std::free(error);
    return answer;
}

} // namespace sallowmere

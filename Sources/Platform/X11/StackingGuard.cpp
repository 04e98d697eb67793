// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/StackingGuard.h"

#include "Platform/X11/XcbMemory.h"

#include <algorithm>
#include <chrono>
#include <span>
#include <vector>

namespace sallowmere {

namespace {

using namespace std::chrono_literals;

constexpr auto settlingTime = 60ms;
/// How often it raises the window within how long.
constexpr int mostRaises = 5;
constexpr auto raisePeriod = 2s;

struct Box {
    int left;
    int top;
    int right;
    int bottom;

    bool intersects(const Box& other) const {
        return left < other.right && other.left < right && top < other.bottom && other.top < bottom;
    }
};

/// All that is to be known of a window, asked for at once and awaited later.
struct Question {
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;

    static Question about(xcb_connection_t* connection, xcb_window_t window) {
        return {xcb_get_window_attributes_unchecked(connection, window),
                xcb_get_geometry_unchecked(connection, window)};
    }

    /// Where a window lies that a window manager looks after and that is seen.
    std::optional<Box> managedBox(xcb_connection_t* connection) const {
        const XcbMemory<xcb_get_window_attributes_reply_t> state(
            xcb_get_window_attributes_reply(connection, attributes, nullptr));
        const std::optional<Box> box = boxOf(connection);
        const bool counts =
            state && state->override_redirect == 0 && state->map_state == XCB_MAP_STATE_VIEWABLE;
        return counts ? box : std::nullopt;
    }

    std::optional<Box> boxOf(xcb_connection_t* connection) const {
        const XcbMemory<xcb_get_geometry_reply_t> reply(
            xcb_get_geometry_reply(connection, geometry, nullptr));
        return reply ? std::optional(
                   Box{reply->x, reply->y, reply->x + reply->width, reply->y + reply->height})
                     : std::nullopt;
    }
};

} // namespace

StackingGuard::StackingGuard(X11Events& events, X11Connection& connection, xcb_window_t window)
    : connection_(connection), window_(window) {
    settling_.setSingleShot(true);
    settling_.setInterval(settlingTime);
    connect(&settling_, &QTimer::timeout, this, &StackingGuard::check);
    connect(&events, &X11Events::arrived, this, &StackingGuard::notice);
}

void StackingGuard::notice(const xcb_generic_event_t* event) {
    const auto* mapped = eventOf<xcb_map_notify_event_t>(event, XCB_MAP_NOTIFY);
    const auto* moved = eventOf<xcb_configure_notify_event_t>(event, XCB_CONFIGURE_NOTIFY);
    const bool concerns = (mapped != nullptr && mapped->window != window_)
                          || (moved != nullptr && moved->window != window_);
    if (concerns && !settling_.isActive()) {
        settling_.start();
    }
}

void StackingGuard::check() {
    if (!connection_.isAlive() || !isCovered()) {
        return;
    }
    if (raises_ == 0
        || sinceFirstRaise_.hasExpired(std::chrono::milliseconds(raisePeriod).count())) {
        raises_ = 0;
        sinceFirstRaise_.start();
    }
    if (++raises_ <= mostRaises) {
        raise();
    }
}

bool StackingGuard::isCovered() {
    xcb_connection_t* xcb = connection_.xcb();
    const XcbMemory<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, connection_.root()), nullptr));
    if (!tree) {
        return false;
    }
    const std::span stack(xcb_query_tree_children(tree.get()),
                          static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
    const auto own = std::find(stack.begin(), stack.end(), window_);
    if (own == stack.end()) {
        return false;
    }
    std::vector<Question> questions;
    std::transform(own, stack.end(), std::back_inserter(questions),
                   [&](xcb_window_t window) { return Question::about(xcb, window); });
    const std::optional<Box> ownBox = questions.front().boxOf(xcb);
    xcb_discard_reply(xcb, questions.front().attributes.sequence);
    bool covered = false;
    for (const Question& question : std::span(questions).subspan(1)) {
        const std::optional<Box> box = question.managedBox(xcb);
        covered = covered || (ownBox && box && box->intersects(*ownBox));
    }
    return covered;
}

void StackingGuard::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.xcb(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(connection_.xcb());
}

} // namespace sallowmere

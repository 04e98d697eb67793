// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/StackingGuard.h"

#include "Platform/X11/ClientWindows.h"
#include "Platform/X11/XcbMemory.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iterator>
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

template <typename Reply>
std::span<const xcb_window_t> childrenOf(const Reply& tree) {
    return tree ? std::span<const xcb_window_t>(
               xcb_query_tree_children(tree.get()),
               static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())))
                : std::span<const xcb_window_t>();
}

/// All that is to be known of a window on the desktop, asked for at once and awaited later.
struct Question {
    xcb_window_t window;
    xcb_get_window_attributes_cookie_t attributes;
    xcb_get_geometry_cookie_t geometry;
    xcb_query_tree_cookie_t tree;

    static Question about(xcb_connection_t* connection, xcb_window_t window) {
        return {window, xcb_get_window_attributes_unchecked(connection, window),
                xcb_get_geometry_unchecked(connection, window),
                xcb_query_tree_unchecked(connection, window)};
    }
};

/// What came back.
class Answer {
public:
    Answer(xcb_connection_t* connection, const Question& question)
        : window_(question.window),
          attributes_(xcb_get_window_attributes_reply(connection, question.attributes, nullptr)),
          geometry_(xcb_get_geometry_reply(connection, question.geometry, nullptr)),
          tree_(xcb_query_tree_reply(connection, question.tree, nullptr)) {}

    bool isSeen() const {
        return attributes_ && geometry_ && attributes_->map_state == XCB_MAP_STATE_VIEWABLE;
    }

    /// Whether it is one of these windows or the frame around one. Some window managers say of
    /// their frames that nobody looks after them.
    bool holdsOneOf(const std::vector<xcb_window_t>& managed) const {
        const auto isManaged = [&](xcb_window_t window) {
            return std::find(managed.begin(), managed.end(), window) != managed.end();
        };
        const auto children = childrenOf(tree_);
        return isManaged(window_) || std::any_of(children.begin(), children.end(), isManaged);
    }

    Box box() const {
        return {geometry_->x, geometry_->y, geometry_->x + geometry_->width,
                geometry_->y + geometry_->height};
    }

private:
    xcb_window_t window_;
    XcbMemory<xcb_get_window_attributes_reply_t> attributes_;
    XcbMemory<xcb_get_geometry_reply_t> geometry_;
    XcbMemory<xcb_query_tree_reply_t> tree_;
};

} // namespace

StackingGuard::StackingGuard(X11Events& events, X11Connection& connection, xcb_window_t window)
    : connection_(connection), window_(window) {
    settling_.setSingleShot(true);
    connect(&settling_, &QTimer::timeout, this, &StackingGuard::check);
    connect(&events, &X11Events::arrived, this, &StackingGuard::notice);
}

void StackingGuard::notice(const xcb_generic_event_t* event) {
    const auto* mapped = eventOf<xcb_map_notify_event_t>(event, XCB_MAP_NOTIFY);
    const auto* moved = eventOf<xcb_configure_notify_event_t>(event, XCB_CONFIGURE_NOTIFY);
    const bool concerns = (mapped != nullptr && mapped->window != window_)
                          || (moved != nullptr && moved->window != window_);
    if (concerns && !settling_.isActive()) {
        settling_.start(settlingTime);
    }
}

void StackingGuard::check() {
    if (!connection_.isAlive() || !isCovered()) {
        return;
    }
    if (raises_ == 0 || std::chrono::milliseconds(sinceFirstRaise_.elapsed()) >= raisePeriod) {
        raises_ = 0;
        sinceFirstRaise_.start();
    }
    if (++raises_ <= mostRaises) {
        raise();
    } else {
        // Later, for longer than usual.
        settling_.start(raisePeriod);
    }
}

bool StackingGuard::isCovered() {
    xcb_connection_t* xcb = connection_.xcb();
    const XcbMemory<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(xcb, xcb_query_tree(xcb, connection_.root()), nullptr));
    const auto stack = childrenOf(tree);
    const auto own = std::find(stack.begin(), stack.end(), window_);
    std::vector<Question> questions;
    std::transform(own, stack.end(), std::back_inserter(questions),
                   [&](xcb_window_t window) { return Question::about(xcb, window); });
    std::vector<Answer> answers;
    std::transform(questions.begin(), questions.end(), std::back_inserter(answers),
                   [&](const Question& question) { return Answer(xcb, question); });
    if (answers.size() < 2 || !answers.front().isSeen()) {
        return false;
    }
    const std::vector<xcb_window_t> managed = ClientWindows(connection_).managed();
    return std::any_of(answers.begin() + 1, answers.end(), [&](const Answer& other) {
        return other.isSeen() && other.box().intersects(answers.front().box())
               && other.holdsOneOf(managed);
    });
}

void StackingGuard::raise() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(connection_.xcb(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(connection_.xcb());
}

} // namespace sallowmere

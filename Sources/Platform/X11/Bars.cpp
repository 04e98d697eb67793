// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/Bars.h"

#include "Platform/X11/ClientWindows.h"
#include "Platform/X11/XcbMemory.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>

namespace sallowmere {

namespace {

/// What a bar keeps is told as numbers without a sign, and by anybody.
int toPixels(std::uint32_t value) {
    constexpr std::uint32_t most = std::numeric_limits<std::int16_t>::max();
    return static_cast<int>(std::min(value, most));
}

void add(std::vector<Bar>& found, xcb_window_t window, Bar::Edge edge, std::uint32_t reach,
         std::uint32_t begin, std::uint32_t end) {
    if (reach > 0) {
        found.push_back({window, edge, toPixels(reach), toPixels(begin), toPixels(end)});
    }
}

using Windows = std::vector<xcb_window_t>;

void addChildren(xcb_connection_t* connection, const Windows& parents, Windows& children) {
    std::vector<xcb_query_tree_cookie_t> questions;
    std::transform(
        parents.begin(), parents.end(), std::back_inserter(questions),
        [&](xcb_window_t parent) { return xcb_query_tree_unchecked(connection, parent); });
    for (const xcb_query_tree_cookie_t question : questions) {
        const XcbMemory<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(connection, question, nullptr));
        if (tree) {
            const xcb_window_t* first = xcb_query_tree_children(tree.get());
            children.insert(children.end(), first,
                            first + xcb_query_tree_children_length(tree.get()));
        }
    }
}

/// All that may be bars. Not every window manager lists those among its windows, so the windows on
/// the desktop and in frames on it count too.
Windows candidates(X11Connection& connection) {
    Windows onDesktop;
    addChildren(connection.xcb(), {connection.root()}, onDesktop);
    Windows all = onDesktop;
    addChildren(connection.xcb(), onDesktop, all);
    const Windows managed = ClientWindows(connection).managed();
    all.insert(all.end(), managed.begin(), managed.end());
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

void addBars(xcb_window_t window, const xcb_ewmh_wm_strut_partial_t& strut,
             std::vector<Bar>& found) {
    add(found, window, Bar::Edge::left, strut.left, strut.left_start_y, strut.left_end_y);
    add(found, window, Bar::Edge::right, strut.right, strut.right_start_y, strut.right_end_y);
    add(found, window, Bar::Edge::top, strut.top, strut.top_start_x, strut.top_end_x);
    add(found, window, Bar::Edge::bottom, strut.bottom, strut.bottom_start_x, strut.bottom_end_x);
}

/// A bar that would leave nothing of a screen is one of another screen beyond it, or a joke.
void moveIn(int& edge, int place, int begin, int end) {
    if (begin < place && place < end) {
        edge = place;
    }
}

} // namespace

std::vector<Bar> bars(X11Connection& connection) {
    const Windows windows = candidates(connection);
    std::vector<xcb_get_property_cookie_t> questions;
    std::transform(windows.begin(), windows.end(), std::back_inserter(questions),
                   [&](xcb_window_t window) {
                       return xcb_ewmh_get_wm_strut_partial_unchecked(connection.ewmh(), window);
                   });
    std::vector<Bar> found;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        xcb_ewmh_wm_strut_partial_t strut{};
        if (xcb_ewmh_get_wm_strut_partial_reply(connection.ewmh(), questions[i], &strut, nullptr)
            != 0) {
            addBars(windows[i], strut, found);
        }
    }
    return found;
}

PixelArea without(const std::vector<Bar>& bars, const PixelArea& screen, const PixelArea& desktop) {
    PixelArea rest = screen;
    for (const Bar& bar : bars) {
        const bool isAtSide = bar.edge == Bar::Edge::left || bar.edge == Bar::Edge::right;
        const int begin = isAtSide ? screen.top : screen.left;
        const int end = isAtSide ? screen.bottom : screen.right;
        if (bar.begin >= end || bar.end < begin) {
            continue;
        }
        switch (bar.edge) {
        case Bar::Edge::left:
            moveIn(rest.left, std::max(rest.left, desktop.left + bar.reach), screen.left,
                   screen.right);
            break;
        case Bar::Edge::right:
            moveIn(rest.right, std::min(rest.right, desktop.right - bar.reach), screen.left,
                   screen.right);
            break;
        case Bar::Edge::top:
            moveIn(rest.top, std::max(rest.top, desktop.top + bar.reach), screen.top,
                   screen.bottom);
            break;
        case Bar::Edge::bottom:
            moveIn(rest.bottom, std::min(rest.bottom, desktop.bottom - bar.reach), screen.top,
                   screen.bottom);
            break;
        }
    }
    return rest;
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/ClientWindows.h"

#include "Platform/X11/WindowText.h"
#include "Platform/X11/XcbMemory.h"

#include <algorithm>

#include <unistd.h>
#include <xcb/res.h>

namespace sallowmere {

namespace {

constexpr std::uint32_t onAllDesktops = 0xFFFF'FFFF;

std::string hostName() {
    char name[256] = {};
    return gethostname(name, sizeof name - 1) == 0 ? name : std::string();
}

/// The windows in a property of the root's.
std::vector<xcb_window_t> taken(xcb_ewmh_connection_t* ewmh, xcb_get_property_cookie_t cookie,
                                decltype(&xcb_ewmh_get_client_list_reply) reply) {
    xcb_ewmh_get_windows_reply_t list;
    if (reply(ewmh, cookie, &list, nullptr) == 0) {
        return {};
    }
    std::vector<xcb_window_t> windows(list.windows, list.windows + list.windows_len);
    xcb_ewmh_get_windows_reply_wipe(&list);
    return windows;
}

} // namespace

std::vector<xcb_window_t> ClientWindows::frontToBack() {
    if (!connection_.hasWindowManager()) {
        return {};
    }
    std::vector<xcb_window_t> windows = managed();
    std::reverse(windows.begin(), windows.end());
    std::erase_if(windows, [this](xcb_window_t window) { return isFurniture(window); });
    std::stable_partition(windows.begin(), windows.end(),
                          [this](xcb_window_t window) { return isShown(window); });
    return windows;
}

std::vector<xcb_window_t> ClientWindows::managed() {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    const int screen = connection_.screen();
    std::vector<xcb_window_t> windows = taken(ewmh, xcb_ewmh_get_client_list_stacking(ewmh, screen),
                                              xcb_ewmh_get_client_list_stacking_reply);
    // Not every window manager tells the order, and those that do may be late with new windows.
    for (const xcb_window_t window :
         taken(ewmh, xcb_ewmh_get_client_list(ewmh, screen), xcb_ewmh_get_client_list_reply)) {
        if (std::find(windows.begin(), windows.end(), window) == windows.end()) {
            windows.push_back(window);
        }
    }
    return windows;
}

bool ClientWindows::isFurniture(xcb_window_t window) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    xcb_ewmh_get_atoms_reply_t types;
    if (xcb_ewmh_get_wm_window_type_reply(ewmh, xcb_ewmh_get_wm_window_type(ewmh, window), &types,
                                          nullptr)
        == 0) {
        return false;
    }
    const bool found =
        std::any_of(types.atoms, types.atoms + types.atoms_len, [&](xcb_atom_t type) {
            return type == ewmh->_NET_WM_WINDOW_TYPE_DESKTOP
                   || type == ewmh->_NET_WM_WINDOW_TYPE_DOCK;
        });
    xcb_ewmh_get_atoms_reply_wipe(&types);
    return found;
}

bool ClientWindows::isShown(xcb_window_t window) {
    return !otherDesktop(window) && !hasState(window, connection_.ewmh()->_NET_WM_STATE_HIDDEN);
}

std::optional<std::uint32_t> ClientWindows::otherDesktop(xcb_window_t window) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    std::uint32_t desktop = onAllDesktops;
    std::uint32_t current = onAllDesktops;
    const bool told =
        xcb_ewmh_get_wm_desktop_reply(ewmh, xcb_ewmh_get_wm_desktop(ewmh, window), &desktop,
                                      nullptr)
            != 0
        && xcb_ewmh_get_current_desktop_reply(
               ewmh, xcb_ewmh_get_current_desktop(ewmh, connection_.screen()), &current, nullptr)
               != 0;
    return told && desktop != onAllDesktops && desktop != current ? std::optional(desktop)
                                                                  : std::nullopt;
}

bool ClientWindows::hasState(xcb_window_t window, xcb_atom_t state) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    xcb_ewmh_get_atoms_reply_t states;
    if (xcb_ewmh_get_wm_state_reply(ewmh, xcb_ewmh_get_wm_state(ewmh, window), &states, nullptr)
        == 0) {
        return false;
    }
    const xcb_atom_t* const end = states.atoms + states.atoms_len;
    const bool found = std::find(const_cast<const xcb_atom_t*>(states.atoms), end, state) != end;
    xcb_ewmh_get_atoms_reply_wipe(&states);
    return found;
}

std::vector<xcb_window_t> ClientWindows::ofProcess(std::int32_t pid) {
    std::vector<xcb_window_t> windows = frontToBack();
    std::erase_if(windows, [&](xcb_window_t window) { return process(window) != pid; });
    return windows;
}

std::optional<std::int32_t> ClientWindows::process(xcb_window_t window) {
    const std::optional<std::int32_t> connected = connectedProcess(window);
    return connected ? connected : namedProcess(window);
}

std::optional<std::int32_t> ClientWindows::connectedProcess(xcb_window_t window) {
    if (!connection_.has(xcb_res_id)) {
        return std::nullopt;
    }
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const XcbMemory<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(
        connection_.xcb(), xcb_res_query_client_ids(connection_.xcb(), 1, &wanted), nullptr));
    if (!reply) {
        return std::nullopt;
    }
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        if (ids.data->spec.mask == XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID
            && xcb_res_client_id_value_value_length(ids.data) == 1) {
            return static_cast<std::int32_t>(*xcb_res_client_id_value_value(ids.data));
        }
    }
    return std::nullopt;
}

std::optional<std::int32_t> ClientWindows::namedProcess(xcb_window_t window) {
    xcb_ewmh_connection_t* const ewmh = connection_.ewmh();
    std::uint32_t pid = 0;
    const auto machine = decodedText(window, XCB_ATOM_WM_CLIENT_MACHINE);
    if (!machine || machine != hostName()
        || xcb_ewmh_get_wm_pid_reply(ewmh, xcb_ewmh_get_wm_pid(ewmh, window), &pid, nullptr) == 0) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(pid);
}

std::optional<std::string> ClientWindows::title(xcb_window_t window) {
    const auto modern = decodedText(window, connection_.ewmh()->_NET_WM_NAME);
    return modern ? modern : decodedText(window, XCB_ATOM_WM_NAME);
}

std::vector<std::string> ClientWindows::applicationNames(xcb_window_t window) {
    std::vector<std::string> names;
    if (const auto classes = text(window, XCB_ATOM_WM_CLASS)) {
        names = WindowText::pieces(classes->bytes);
    }
    for (const char* id : {"_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE"}) {
        if (auto name = decodedText(window, connection_.atom(id))) {
            names.push_back(std::move(*name));
        }
    }
    return names;
}

std::optional<std::string> ClientWindows::decodedText(xcb_window_t window, xcb_atom_t name) {
    using WindowText::Encoding;
    const auto property = text(window, name);
    if (!property) {
        return std::nullopt;
    }
    if (property->type == connection_.ewmh()->UTF8_STRING) {
        return WindowText::decoded(property->bytes, Encoding::utf8);
    }
    if (property->type == XCB_ATOM_STRING) {
        return WindowText::decoded(property->bytes, Encoding::latin1);
    }
    return property->type == connection_.atom("COMPOUND_TEXT")
               ? WindowText::decoded(property->bytes, Encoding::compound)
               : std::nullopt;
}

std::optional<ClientWindows::Property> ClientWindows::text(xcb_window_t window, xcb_atom_t name) {
    constexpr std::uint32_t limit = 4'096;
    xcb_connection_t* const xcb = connection_.xcb();
    const XcbMemory<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        xcb, xcb_get_property(xcb, 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, limit), nullptr));
    if (!reply || reply->type == XCB_NONE || reply->format != 8) {
        return std::nullopt;
    }
    const auto* const bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    const int length = xcb_get_property_value_length(reply.get());
    return Property{reply->type, std::string(bytes, static_cast<std::size_t>(length))};
}

bool ClientWindows::contains(xcb_window_t outer, xcb_window_t inner) {
    xcb_connection_t* const xcb = connection_.xcb();
    while (inner != outer) {
        const XcbMemory<xcb_query_tree_reply_t> reply(
            xcb_query_tree_reply(xcb, xcb_query_tree(xcb, inner), nullptr));
        if (!reply || reply->parent == XCB_NONE) {
            return false;
        }
        inner = reply->parent;
    }
    return true;
}

} // namespace sallowmere

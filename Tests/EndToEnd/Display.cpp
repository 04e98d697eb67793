// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Display.h"

#include "EndToEnd/Windows.h"
#include "EndToEnd/XReply.h"
#include "X11/WaitFor.h"

#include <stdexcept>

#include <xcb/randr.h>

namespace sallowmere {

namespace {

XReply<xcb_randr_get_screen_resources_reply_t> resources(XClient& client) {
    auto found = reply(xcb_randr_get_screen_resources_reply, client,
                       xcb_randr_get_screen_resources(client.xcb(), client.root()));
    if (!found || found->num_outputs == 0 || found->num_crtcs == 0) {
        throw std::runtime_error("the X server has no output");
    }
    return found;
}

} // namespace

std::uint32_t Display::addMode(std::uint16_t width, std::uint16_t height) {
    const std::string name = std::to_string(width) + 'x' + std::to_string(height) + "-test";
    xcb_randr_mode_info_t mode{};
    mode.width = width;
    mode.height = height;
    mode.htotal = width;
    mode.vtotal = height;
    mode.dot_clock = 60U * width * height;
    mode.name_len = static_cast<std::uint16_t>(name.size());
    const auto made =
        reply(xcb_randr_create_mode_reply, client_,
              xcb_randr_create_mode(client_.xcb(), client_.root(), mode,
                                    static_cast<std::uint32_t>(name.size()), name.c_str()));
    if (!made) {
        throw std::runtime_error("the X server takes no new mode");
    }
    return made->mode;
}

void Display::resize(std::uint16_t width, std::uint16_t height) {
    const auto all = resources(client_);
    const xcb_randr_output_t output = *xcb_randr_get_screen_resources_outputs(all.get());
    const xcb_randr_crtc_t crtc = *xcb_randr_get_screen_resources_crtcs(all.get());
    const std::uint32_t mode = addMode(width, height);
    xcb_randr_add_output_mode(client_.xcb(), output, mode);
    const auto set = reply(xcb_randr_set_crtc_config_reply, client_,
                           xcb_randr_set_crtc_config(client_.xcb(), crtc, XCB_CURRENT_TIME,
                                                     all->config_timestamp, 0, 0, mode,
                                                     XCB_RANDR_ROTATION_ROTATE_0, 1, &output));
    if (!set || set->status != XCB_RANDR_SET_CONFIG_SUCCESS) {
        throw std::runtime_error("the X server refuses another mode");
    }
    xcb_randr_set_screen_size(client_.xcb(), client_.root(), width, height, width / 4U,
                              height / 4U);
    waitFor("another size of the screen", [&] {
        const Box screen = Windows::screen(client_);
        return screen.width == width && screen.height == height;
    });
}

xcb_window_t Display::showBar(std::uint32_t height) {
    xcb_connection_t* const xcb = client_.xcb();
    const auto width = static_cast<std::uint32_t>(Windows::screen(client_).width);
    const xcb_window_t bar = client_.createWindow();
    const std::uint32_t place[] = {0, 0, width, height};
    xcb_configure_window(xcb, bar,
                         XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                             | XCB_CONFIG_WINDOW_HEIGHT,
                         place);
    xcb_atom_t dock = client_.ewmh()->_NET_WM_WINDOW_TYPE_DOCK;
    xcb_ewmh_set_wm_window_type(client_.ewmh(), bar, 1, &dock);
    xcb_ewmh_wm_strut_partial_t strut{};
    strut.top = height;
    strut.top_end_x = width - 1;
    xcb_ewmh_set_wm_strut_partial(client_.ewmh(), bar, strut);
    xcb_ewmh_set_wm_strut(client_.ewmh(), bar, 0, 0, height, 0);
    xcb_map_window(xcb, bar);
    waitFor("the bar to be shown", [&] { return Windows::isViewable(client_, bar); });
    return bar;
}

void Display::removeBar(xcb_window_t bar) {
    xcb_destroy_window(client_.xcb(), bar);
    client_.sync();
}

void Display::setResources(const std::string& lines) {
    client_.setText(client_.root(), XCB_ATOM_RESOURCE_MANAGER, XCB_ATOM_STRING, lines);
}

void Display::paintGround(std::uint32_t color) {
    xcb_change_window_attributes(client_.xcb(), client_.root(), XCB_CW_BACK_PIXEL, &color);
    xcb_clear_area(client_.xcb(), 0, client_.root(), 0, 0, 0, 0);
    client_.sync();
}

} // namespace sallowmere

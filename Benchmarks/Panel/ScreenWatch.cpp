// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Panel/ScreenWatch.h"

#include <algorithm>
#include <cstdlib>
#include <span>
#include <stdexcept>
#include <thread>

#include <poll.h>
#include <xcb/xtest.h>

namespace sallowmere {

namespace {

constexpr std::uint32_t background = 0xC000C0;
constexpr std::uint32_t black = 0;
constexpr std::uint32_t colours = 0xFFFFFF;

struct Free {
    void operator()(void* memory) const { std::free(memory); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

template <typename T>
Reply<T> required(T* reply) {
    if (reply == nullptr) {
        throw std::runtime_error("the X server did not answer");
    }
    return Reply<T>(reply);
}

std::span<const std::uint32_t> pixels(const xcb_get_image_reply_t& image) {
    return {reinterpret_cast<const std::uint32_t*>(xcb_get_image_data(&image)),
            static_cast<std::size_t>(xcb_get_image_data_length(&image)) / sizeof(std::uint32_t)};
}

} // namespace

ScreenWatch::ScreenWatch(const std::string& display)
    : connection_(xcb_connect(display.c_str(), nullptr)) {
    const xcb_query_extension_reply_t* const extension =
        xcb_get_extension_data(connection_, &xcb_damage_id);
    if (xcb_connection_has_error(connection_) != 0 || extension == nullptr
        || extension->present == 0) {
        xcb_disconnect(connection_);
        throw std::runtime_error("cannot watch the display " + display);
    }
    damageEvent_ = extension->first_event;
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
    required(xcb_damage_query_version_reply(connection_,
                                            xcb_damage_query_version(connection_, 1, 1), nullptr));
    const std::uint32_t wanted = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection_, root_, XCB_CW_EVENT_MASK, &wanted);
    xcb_flush(connection_);
}

ScreenWatch::~ScreenWatch() {
    xcb_disconnect(connection_);
}

void ScreenWatch::waitForWindowManager() {
    using namespace std::chrono_literals;
    const Moment deadline = std::chrono::steady_clock::now() + 30s;
    while (number(root_, "_NET_SUPPORTING_WM_CHECK") == XCB_NONE) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("no window manager came");
        }
        std::this_thread::sleep_for(10ms);
    }
}

void ScreenWatch::paintBackground() {
    xcb_change_window_attributes(connection_, root_, XCB_CW_BACK_PIXEL, &background);
    xcb_clear_area(connection_, 0, root_, 0, 0, 0, 0);
    xcb_flush(connection_);
}

void ScreenWatch::followScreen() {
    follow(root_);
}

void ScreenWatch::followWindow(xcb_window_t window) {
    follow(window);
}

void ScreenWatch::follow(xcb_window_t window) {
    if (damage_ != XCB_NONE) {
        xcb_damage_destroy(connection_, damage_);
    }
    followed_ = window;
    damage_ = xcb_generate_id(connection_);
    xcb_damage_create(connection_, damage_, window, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
    xcb_flush(connection_);
}

std::optional<ScreenWatch::Event> ScreenWatch::next(Moment deadline) {
    for (;;) {
        if (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(connection_)}) {
            if (const std::optional<Event> known = translated(*event)) {
                return known;
            }
            continue;
        }
        if (xcb_connection_has_error(connection_) != 0) {
            throw std::runtime_error("the X server has gone");
        }
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        if (left.count() <= 0) {
            return std::nullopt;
        }
        pollfd readable{xcb_get_file_descriptor(connection_), POLLIN, 0};
        poll(&readable, 1, static_cast<int>(left.count()));
    }
}

int ScreenWatch::framesUntil(Moment end) {
    int frames = 0;
    while (const auto event = next(end)) {
        frames += event->kind == Event::Kind::drawn ? 1 : 0;
    }
    return frames;
}

std::optional<ScreenWatch::Event> ScreenWatch::translated(const xcb_generic_event_t& event) {
    const Moment now = std::chrono::steady_clock::now();
    const int type = event.response_type & 0x7F;
    if (type == XCB_MAP_NOTIFY) {
        const auto& map = reinterpret_cast<const xcb_map_notify_event_t&>(event);
        return Event{Event::Kind::mapped, map.window, 0, now};
    }
    if (type == XCB_CONFIGURE_NOTIFY) {
        const auto& configure = reinterpret_cast<const xcb_configure_notify_event_t&>(event);
        return Event{Event::Kind::configured, configure.window, configure.height, now};
    }
    if (type == damageEvent_ + XCB_DAMAGE_NOTIFY) {
        xcb_damage_subtract(connection_, damage_, XCB_NONE, XCB_NONE);
        xcb_flush(connection_);
        return Event{Event::Kind::drawn, followed_, 0, now};
    }
    return std::nullopt;
}

pid_t ScreenWatch::ownerOf(xcb_window_t window) {
    return static_cast<pid_t>(number(window, "_NET_WM_PID"));
}

ScreenWatch::Area ScreenWatch::areaOf(xcb_window_t window) {
    const auto geometry = required(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    return {geometry->x, geometry->y, geometry->width, geometry->height};
}

bool ScreenWatch::showsBar(const Area& area) {
    const auto image = required(xcb_get_image_reply(
        connection_,
        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, root_,
                      static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                      static_cast<std::uint16_t>(area.width),
                      static_cast<std::uint16_t>(area.height), colours),
        nullptr));
    const auto shown = pixels(*image);
    const auto count = [&](auto condition) {
        return static_cast<std::size_t>(std::count_if(shown.begin(), shown.end(), condition));
    };
    const std::size_t empty = count([](std::uint32_t pixel) { return (pixel & colours) == black; });
    const std::size_t around =
        count([](std::uint32_t pixel) { return (pixel & colours) == background; });
    return empty > shown.size() / 2 && empty + around < shown.size();
}

void ScreenWatch::movePointer(int x, int y) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root_,
                        static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 0);
    xcb_flush(connection_);
}

xcb_atom_t ScreenWatch::atom(const std::string& name) {
    return required(xcb_intern_atom_reply(connection_,
                                          xcb_intern_atom(connection_, 0,
                                                          static_cast<std::uint16_t>(name.size()),
                                                          name.c_str()),
                                          nullptr))
        ->atom;
}

std::uint32_t ScreenWatch::number(xcb_window_t window, const std::string& property) {
    const Reply<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection_,
        xcb_get_property(connection_, 0, window, atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1),
        nullptr));
    return reply && xcb_get_property_value_length(reply.get()) == sizeof(std::uint32_t)
               ? *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()))
               : 0;
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Windows.h"

#include "EndToEnd/XReply.h"

#include <algorithm>
#include <ostream>
#include <stdexcept>

#include <xcb/shape.h>

namespace sallowmere {

bool Box::contains(const Box& inner) const {
    return inner.x >= x && inner.y >= y && inner.right() <= right() && inner.bottom() <= bottom();
}

std::ostream& operator<<(std::ostream& stream, const Box& box) {
    return stream << box.width << 'x' << box.height << '+' << box.x << '+' << box.y;
}

namespace Windows {

namespace {

constexpr std::uint32_t longestText = 1'024;

XReply<xcb_get_property_reply_t> property(XClient& client, xcb_window_t window,
                                          const std::string& name) {
    return reply(xcb_get_property_reply, client,
                 xcb_get_property(client.xcb(), 0, window, client.atom(name),
                                  XCB_GET_PROPERTY_TYPE_ANY, 0, longestText));
}

XReply<xcb_shape_query_extents_reply_t> shape(XClient& client, xcb_window_t window) {
    return reply(xcb_shape_query_extents_reply, client,
                 xcb_shape_query_extents(client.xcb(), window));
}

xcb_window_t frame(XClient& client, xcb_window_t window) {
    xcb_window_t outer = window;
    for (xcb_window_t next = client.parentOf(outer); next != XCB_NONE && next != client.root();
         next = client.parentOf(outer)) {
        outer = next;
    }
    return outer;
}

} // namespace

std::vector<xcb_window_t> stack(XClient& client) {
    const auto tree =
        reply(xcb_query_tree_reply, client, xcb_query_tree(client.xcb(), client.root()));
    if (!tree) {
        return {};
    }
    const xcb_window_t* const first = xcb_query_tree_children(tree.get());
    return {first, first + xcb_query_tree_children_length(tree.get())};
}

Box geometry(XClient& client, xcb_window_t window) {
    const auto size = reply(xcb_get_geometry_reply, client, xcb_get_geometry(client.xcb(), window));
    const auto place = reply(xcb_translate_coordinates_reply, client,
                             xcb_translate_coordinates(client.xcb(), window, client.root(), 0, 0));
    if (!size || !place) {
        return {};
    }
    return {place->dst_x, place->dst_y, size->width, size->height};
}

Box box(XClient& client, xcb_window_t window) {
    const Box whole = geometry(client, window);
    const auto cut = shape(client, window);
    if (!cut || cut->bounding_shaped == 0) {
        return whole;
    }
    return {whole.x + cut->bounding_shape_extents_x, whole.y + cut->bounding_shape_extents_y,
            cut->bounding_shape_extents_width, cut->bounding_shape_extents_height};
}

std::uint8_t depth(XClient& client, xcb_window_t window) {
    const auto size = reply(xcb_get_geometry_reply, client, xcb_get_geometry(client.xcb(), window));
    return size ? size->depth : std::uint8_t(0);
}

bool isShaped(XClient& client, xcb_window_t window) {
    const auto cut = shape(client, window);
    return cut && cut->bounding_shaped != 0;
}

bool isViewable(XClient& client, xcb_window_t window) {
    const auto attributes = reply(xcb_get_window_attributes_reply, client,
                                  xcb_get_window_attributes(client.xcb(), window));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool isUnmanaged(XClient& client, xcb_window_t window) {
    const auto attributes = reply(xcb_get_window_attributes_reply, client,
                                  xcb_get_window_attributes(client.xcb(), window));
    return attributes && attributes->override_redirect != 0;
}

std::string text(XClient& client, xcb_window_t window, const std::string& name) {
    const auto value = property(client, window, name);
    if (!value || value->format != 8) {
        return {};
    }
    return {static_cast<const char*>(xcb_get_property_value(value.get())),
            static_cast<std::size_t>(xcb_get_property_value_length(value.get()))};
}

std::uint32_t number(XClient& client, xcb_window_t window, const std::string& name) {
    const auto value = property(client, window, name);
    if (!value || value->format != 32 || xcb_get_property_value_length(value.get()) < 4) {
        return 0;
    }
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(value.get()));
}

bool isAbove(XClient& client, xcb_window_t window, xcb_window_t other) {
    const std::vector<xcb_window_t> all = stack(client);
    const auto place = std::find(all.begin(), all.end(), frame(client, window));
    return place != all.end() && std::find(all.begin(), place, frame(client, other)) != place;
}

std::uint32_t pixel(XClient& client, int x, int y) {
    const auto image =
        reply(xcb_get_image_reply, client,
              xcb_get_image(client.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, client.root(),
                            static_cast<std::int16_t>(x), static_cast<std::int16_t>(y), 1, 1, ~0U));
    if (!image || xcb_get_image_data_length(image.get()) < 3) {
        throw std::runtime_error("the screen cannot be read");
    }
    const std::uint8_t* const bytes = xcb_get_image_data(image.get());
    return static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[1]) << 8
           | bytes[0];
}

Box screen(XClient& client) {
    return geometry(client, client.root());
}

} // namespace Windows

} // namespace sallowmere

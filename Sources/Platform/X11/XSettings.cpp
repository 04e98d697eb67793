// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/XSettings.h"

#include "Platform/X11/XcbMemory.h"

#include <string>

namespace sallowmere::XSettings {

namespace {

enum class Kind : std::uint8_t { integer = 0, text = 1, color = 2 };

/// Takes one thing after the other off what is published. Past its end everything is zero, and
/// nothing counts any more.
class Reader {
public:
    explicit Reader(std::span<const std::uint8_t> data) : data_(data) {}

    bool isIntact() const { return isIntact_; }

    void setByteOrder(std::uint8_t order) { isBigEndian_ = order == 1; }

    std::uint32_t number(std::size_t bytes) {
        const auto piece = take(bytes);
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < piece.size(); ++i) {
            const std::size_t place = isBigEndian_ ? piece.size() - 1 - i : i;
            value |= std::uint32_t{piece[i]} << (8 * place);
        }
        return value;
    }

    std::string_view text(std::size_t length) {
        const auto piece = take(length);
        skip((4 - length % 4) % 4);
        return {reinterpret_cast<const char*>(piece.data()), piece.size()};
    }

    void skip(std::size_t bytes) { take(bytes); }

private:
    std::span<const std::uint8_t> take(std::size_t bytes) {
        if (bytes > data_.size()) {
            isIntact_ = false;
            data_ = {};
            return {};
        }
        const auto piece = data_.first(bytes);
        data_ = data_.subspan(bytes);
        return piece;
    }

    std::span<const std::uint8_t> data_;
    bool isBigEndian_ = false;
    bool isIntact_ = true;
};

/// False for one of a kind that nobody knows the length of.
bool skipValue(Reader& reader, Kind kind) {
    switch (kind) {
    case Kind::integer:
        reader.skip(4);
        return true;
    case Kind::text:
        reader.text(reader.number(4));
        return true;
    case Kind::color:
        reader.skip(8);
        return true;
    }
    return false;
}

xcb_atom_t selection(X11Connection& connection) {
    return connection.atom("_XSETTINGS_S" + std::to_string(connection.screen()));
}

} // namespace

std::optional<std::int32_t> integer(std::span<const std::uint8_t> data, std::string_view name) {
    Reader reader(data);
    reader.setByteOrder(static_cast<std::uint8_t>(reader.number(1)));
    reader.skip(7);
    for (std::uint32_t left = reader.number(4); left > 0 && reader.isIntact(); --left) {
        const auto kind = Kind(reader.number(1));
        reader.skip(1);
        const std::string_view found = reader.text(reader.number(2));
        reader.skip(4);
        if (kind == Kind::integer && found == name) {
            const std::uint32_t value = reader.number(4);
            return reader.isIntact() ? std::optional(static_cast<std::int32_t>(value))
                                     : std::nullopt;
        }
        if (!skipValue(reader, kind)) {
            break;
        }
    }
    return std::nullopt;
}

std::optional<xcb_window_t> keeper(X11Connection& connection) {
    const xcb_atom_t name = selection(connection);
    if (name == XCB_NONE) {
        return std::nullopt;
    }
    const XcbMemory<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection.xcb(), xcb_get_selection_owner(connection.xcb(), name), nullptr));
    return reply && reply->owner != XCB_NONE ? std::optional(reply->owner) : std::nullopt;
}

bool wantsAnimations(X11Connection& connection) {
    constexpr std::uint32_t most = 65'536;
    const auto window = connection.isAlive() ? keeper(connection) : std::nullopt;
    const xcb_atom_t name = window ? connection.atom("_XSETTINGS_SETTINGS") : xcb_atom_t(XCB_NONE);
    if (name == XCB_NONE) {
        return true;
    }
    const XcbMemory<xcb_get_property_reply_t> reply(xcb_get_property_reply(
        connection.xcb(), xcb_get_property(connection.xcb(), 0, *window, name, name, 0, most / 4),
        nullptr));
    if (!reply) {
        return true;
    }
    const std::span data(static_cast<const std::uint8_t*>(xcb_get_property_value(reply.get())),
                         static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    return integer(data, "Gtk/EnableAnimations").value_or(1) != 0;
}

} // namespace sallowmere::XSettings

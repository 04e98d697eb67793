// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "X11/XClient.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// What a desktop publishes for all programs on an X server.
class PublishedSettings {
public:
    enum class Order { little, big };

    explicit PublishedSettings(Order order = Order::little) : order_(order) {}

    PublishedSettings& integer(std::string_view name, std::int32_t value);
    PublishedSettings& text(std::string_view name, std::string_view value);
    PublishedSettings& color(std::string_view name);

    std::vector<std::uint8_t> bytes() const;

private:
    static void append(std::vector<std::uint8_t>& bytes, Order order, std::uint32_t value,
                       std::size_t length);
    void begin(std::uint8_t kind, std::string_view name);
    void appendText(std::string_view text);

    Order order_;
    std::uint32_t count_ = 0;
    std::vector<std::uint8_t> entries_;
};

/// A program that publishes them.
class SettingsKeeper {
public:
    explicit SettingsKeeper(const std::string& display);

    /// The first time it also tells everybody that it is there.
    void publish(const std::vector<std::uint8_t>& settings);

private:
    void announce();

    XClient client_;
    xcb_window_t window_;
    bool isAnnounced_ = false;
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/SettingsKeeper.h"

#include <utility>

namespace sallowmere {

namespace {

constexpr std::uint8_t integerKind = 0;
constexpr std::uint8_t textKind = 1;
constexpr std::uint8_t colorKind = 2;

} // namespace

void PublishedSettings::append(std::vector<std::uint8_t>& bytes, Order order, std::uint32_t value,
                               std::size_t length) {
    for (std::size_t i = 0; i < length; ++i) {
        const std::size_t place = order == Order::little ? i : length - 1 - i;
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
    }
}

void PublishedSettings::begin(std::uint8_t kind, std::string_view name) {
    entries_.push_back(kind);
    entries_.push_back(0);
    append(entries_, order_, static_cast<std::uint32_t>(name.size()), 2);
    appendText(name);
    append(entries_, order_, 0, 4);
    ++count_;
}

void PublishedSettings::appendText(std::string_view text) {
    entries_.insert(entries_.end(), text.begin(), text.end());
    entries_.resize((entries_.size() + 3) / 4 * 4);
}

PublishedSettings& PublishedSettings::integer(std::string_view name, std::int32_t value) {
    begin(integerKind, name);
    append(entries_, order_, static_cast<std::uint32_t>(value), 4);
    return *this;
}

PublishedSettings& PublishedSettings::text(std::string_view name, std::string_view value) {
    begin(textKind, name);
    append(entries_, order_, static_cast<std::uint32_t>(value.size()), 4);
    appendText(value);
    return *this;
}

PublishedSettings& PublishedSettings::color(std::string_view name) {
    begin(colorKind, name);
    append(entries_, order_, 0, 4);
    append(entries_, order_, 0, 4);
    return *this;
}

std::vector<std::uint8_t> PublishedSettings::bytes() const {
    std::vector<std::uint8_t> all{static_cast<std::uint8_t>(order_ == Order::big), 0, 0, 0};
    append(all, order_, 1, 4);
    append(all, order_, count_, 4);
    all.insert(all.end(), entries_.begin(), entries_.end());
    return all;
}

SettingsKeeper::SettingsKeeper(const std::string& display)
    : client_(display), window_(client_.createWindow()) {}

void SettingsKeeper::publish(const std::vector<std::uint8_t>& settings) {
    const xcb_atom_t name = client_.atom("_XSETTINGS_SETTINGS");
    xcb_change_property(client_.xcb(), XCB_PROP_MODE_REPLACE, window_, name, name, 8,
                        static_cast<std::uint32_t>(settings.size()), settings.data());
    if (!std::exchange(isAnnounced_, true)) {
        announce();
    }
    client_.sync();
}

void SettingsKeeper::announce() {
    const xcb_atom_t selection = client_.atom("_XSETTINGS_S0");
    xcb_set_selection_owner(client_.xcb(), window_, selection, XCB_CURRENT_TIME);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = client_.root();
    message.type = client_.atom("MANAGER");
    message.data.data32[1] = selection;
    message.data.data32[2] = window_;
    xcb_send_event(client_.xcb(), 0, client_.root(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                   reinterpret_cast<const char*>(&message));
}

} // namespace sallowmere

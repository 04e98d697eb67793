// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sallowmere {

/// Laptops whose display has a camera notch.
namespace NotchedLaptops {

/// In pixels of the display.
struct Notch {
    int width = 0;
    int height = 0;
    bool operator==(const Notch&) const = default;
};

/// What the firmware calls this machine, such as "Apple MacBook Pro (14-inch, M1 Pro, 2021)"; empty
/// where it keeps no device tree. `path` is the file with that name.
std::string modelOfThisMachine(const std::string& path = "/proc/device-tree/model");

/// The notch that reaches into a display of so many pixels: of a known laptop, on its built-in
/// display, in a mode that uses the strip beside the notch.
std::optional<Notch> notchOf(std::string_view model, std::string_view output, int width,
                             int height);

} // namespace NotchedLaptops

} // namespace sallowmere

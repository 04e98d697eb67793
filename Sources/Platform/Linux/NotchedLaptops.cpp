// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/NotchedLaptops.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>

namespace sallowmere::NotchedLaptops {

namespace {

/// A built-in display. Its mode without the strip beside the notch is that much lower.
struct Display {
    std::string_view family;
    std::string_view size;
    int width;
    int height;
    int strip;
};

constexpr std::array displays{
    Display{"MacBook Pro", "14-inch", 3'024, 1'964, 74},
    Display{"MacBook Pro", "16-inch", 3'456, 2'234, 74},
    Display{"MacBook Air", "13-inch", 2'560, 1'664, 64},
    Display{"MacBook Air", "15-inch", 2'880, 1'864, 64},
};

/// Between the two strips beside it.
constexpr int notchWidth = 370;

bool isBuiltIn(std::string_view output) {
    return output.starts_with("eDP");
}

} // namespace

std::string modelOfThisMachine(const std::string& path) {
    std::ifstream file(path);
    std::string model{std::istreambuf_iterator<char>(file), {}};
    // The firmware ends it with a zero.
    model.erase(std::find(model.begin(), model.end(), '\0'), model.end());
    return model;
}

std::optional<Notch> notchOf(std::string_view model, std::string_view output, int width,
                             int height) {
    const auto found = std::find_if(displays.begin(), displays.end(), [&](const Display& display) {
        return model.find(display.family) != std::string_view::npos
               && model.find(display.size) != std::string_view::npos && display.width == width
               && display.height == height;
    });
    return found != displays.end() && isBuiltIn(output)
               ? std::optional(Notch{notchWidth, found->strip})
               : std::nullopt;
}

} // namespace sallowmere::NotchedLaptops

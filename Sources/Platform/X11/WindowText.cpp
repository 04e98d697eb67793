// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/WindowText.h"

#include <QString>

#include <algorithm>

namespace sallowmere::WindowText {

namespace {

QLatin1String latin1(std::string_view bytes) {
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

} // namespace

std::optional<std::string> decoded(std::string_view bytes, Encoding encoding) {
    constexpr std::string_view switches = "\x1B\x9B";
    if (encoding == Encoding::utf8) {
        return std::string(bytes);
    }
    if (encoding == Encoding::compound && bytes.find_first_of(switches) != std::string_view::npos) {
        return std::nullopt;
    }
    return QString(latin1(bytes)).toStdString();
}

std::vector<std::string> pieces(std::string_view bytes) {
    std::vector<std::string> result;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\0'), bytes.size());
        result.emplace_back(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
    }
    return result;
}

bool isSameName(std::string_view one, std::string_view other) {
    return QString::fromUtf8(one.data(), static_cast<qsizetype>(one.size()))
               .compare(QString::fromUtf8(other.data(), static_cast<qsizetype>(other.size())),
                        Qt::CaseInsensitive)
           == 0;
}

} // namespace sallowmere::WindowText

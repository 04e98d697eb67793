// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <optional>
#include <string>
#include <vector>

namespace sallowmere {

/// Texts as test failures can print them.
inline std::string utf8(const QString& text) {
    return text.toStdString();
}

inline std::string utf8(QStringView text) {
    return text.toString().toStdString();
}

inline std::optional<std::string> utf8(const std::optional<QString>& text) {
    return text ? std::optional(text->toStdString()) : std::nullopt;
}

inline std::vector<std::string> utf8(const QStringList& texts) {
    std::vector<std::string> result;
    for (const QString& text : texts) {
        result.push_back(text.toStdString());
    }
    return result;
}

} // namespace sallowmere

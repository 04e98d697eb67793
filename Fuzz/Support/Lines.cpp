// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/Lines.h"

#include "Sallowmere/Text/Characters.h"

namespace sallowmere::fuzz {

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    for (std::size_t at = 0; at <= text.size(); ++at) {
        if (at == text.size() || text[at] == '\n') {
            if (at > start) {
                lines.push_back(text.substr(start, at - start));
            }
            start = at + 1;
        }
    }
    return lines;
}

std::string withBytesReplaced(std::string_view text) {
    return decodeUtf8(text).toStdString();
}

} // namespace sallowmere::fuzz

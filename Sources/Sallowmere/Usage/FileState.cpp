// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Usage/FileState.h"

#include "Sallowmere/Text/Characters.h"

#include <algorithm>

namespace sallowmere {

std::optional<std::string_view> MessageIds::insert(std::string_view id) {
    if (contains(id)) {
        return std::nullopt;
    }
    char* copy = static_cast<char*>(arena_.allocate(id.size(), 1));
    std::copy(id.begin(), id.end(), copy);
    const std::string_view own(copy, id.size());
    ids_.insert(own);
    return own;
}

std::string_view FileState::intern(std::string_view model) {
    const auto known = models_.find(model);
    if (known != models_.end()) {
        return known->second;
    }
    return models_.emplace(model, decodeUtf8(model).toLower().toStdString()).first->second;
}

} // namespace sallowmere

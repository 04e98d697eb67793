// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sallowmere {

/// Texts as programs attach them to their windows.
namespace WindowText {

enum class Encoding { latin1, compound, utf8 };

/// The text in UTF-8. What is UTF-8 already is passed on as it is, valid or not. Absent for
/// compound text that switches to characters outside Latin-1: such programs name their windows in
/// UTF-8 as well.
std::optional<std::string> decoded(std::string_view bytes, Encoding encoding);

/// The pieces of a text whose pieces each end in a zero byte; the last one need not.
std::vector<std::string> pieces(std::string_view bytes);

/// Whether two names of an application are the same in any case of letters.
bool isSameName(std::string_view one, std::string_view other);

} // namespace WindowText

} // namespace sallowmere

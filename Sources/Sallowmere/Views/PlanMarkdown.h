// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace sallowmere {

/// Plans for people. A plan may hold text that strangers wrote.
namespace PlanMarkdown {

/// The Markdown as styled text for a view: headings, lists, emphasis, code and tables. Links are
/// plain text, pictures are their descriptions, and markup of other kinds stands there as written,
/// so that showing it loads and opens nothing.
QString styled(const QString& markdown);

} // namespace PlanMarkdown

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QTextDocument>

namespace sallowmere {

/// How plans look: quiet and dense, in the sizes and greys of the panel.
namespace PlanStyle {

/// Before the text is set: its font.
void prepare(QTextDocument& document);

/// Once the text is there: headings, lists, quotes, code and tables. The text stays the same.
void apply(QTextDocument& document);

} // namespace PlanStyle

} // namespace sallowmere

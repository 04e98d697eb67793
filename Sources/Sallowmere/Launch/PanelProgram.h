// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

namespace sallowmere {

/// Shows the panel until the user, the system or the display ends it.
namespace PanelProgram {

/// `program` is the name that the program was started by. Does not return when the panel was shown.
/// Else the exit status of the program, which has said on standard error why it shows none.
int run(char* program);

} // namespace PanelProgram

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Applications.h"
#include "Platform/Keystrokes.h"
#include "Platform/WorkQueue.h"

#include <cstdint>

namespace sallowmere {

/// Answers a numbered menu of the assistant by typing into its terminal. Main thread.
namespace AnswerInjector {

/// Seconds that a terminal is given to take the keyboard before the digit comes.
inline constexpr double typingDelay = 0.4;

/// Activates the terminal of process `terminalPid` and types the digit 0.4 s later, unless
/// something else has the keyboard then. The digit alone answers: no Return follows.
/// True once it is scheduled. False, and nothing has happened, when `optionNumber` is not 1 to 9,
/// this program may not type, or the process has no windows (any more).
/// `applications` and `keystrokes` must outlive what the queue still holds.
bool answer(int optionNumber, std::int32_t terminalPid, Applications& applications,
            Keystrokes& keystrokes, MainQueue& queue);

} // namespace AnswerInjector

} // namespace sallowmere

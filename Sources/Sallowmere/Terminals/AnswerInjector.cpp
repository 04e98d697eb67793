// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Terminals/AnswerInjector.h"

namespace sallowmere::AnswerInjector {

bool answer(int optionNumber, std::int32_t terminalPid, Applications& applications,
            Keystrokes& keystrokes, MainQueue& queue) {
    if (!keystrokes.isTrusted() || optionNumber < 1 || optionNumber > 9) {
        return false;
    }
    const auto application = applications.ofProcess(terminalPid);
    if (!application) {
        return false;
    }
    applications.activate(*application);
    queue.after(typingDelay, [&applications, &keystrokes, application, optionNumber] {
        if (applications.hasKeyboard(*application)) {
            keystrokes.typeDigit(optionNumber);
        }
    });
    return true;
}

} // namespace sallowmere::AnswerInjector

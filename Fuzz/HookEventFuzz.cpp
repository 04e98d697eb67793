// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
//
// The input is what the assistant gives its hooks. Whatever stands in it, what is shown of it is
// one short line, and the notification made of it is read as it was meant.
#include "HookEvent.h"
#include "RequestFiles.h"
#include "Sallowmere/Permissions/NotificationWatcher.h"
#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/Json.h"
#include "Support/FakeFileSystem.h"
#include "Support/Input.h"
#include "Support/Require.h"

#include <algorithm>

namespace sallowmere::fuzz {
namespace {

const std::string home = "/home/user";
constexpr Timestamp now = std::chrono::sys_days{std::chrono::November / 21 / 2026};

std::optional<HookEvent> eventIn(std::string text) {
    text.reserve(text.size() + JsonReader::padding);
    return readHookEvent(text);
}

void requireShortLine(const QString& message) {
    for (const QChar c : message) {
        require(c.category() != QChar::Other_Control && c.category() != QChar::Separator_Line
                    && c.category() != QChar::Separator_Paragraph,
                "a message has no control characters");
    }
    require(message == message.trimmed(), "a message has no blanks around it");
    require(message.isValidUtf16(), "no character of a message is cut");
    require(message.size() <= 2'001 && firstCharacters(message, longestMessage + 1) == message,
            "a message is short");
    require(shownMessage(message) == message || message.endsWith(u'…'),
            "what can be shown stays as it is");
}

void requireName(const QString& sessionId) {
    const std::string name = RequestFiles::nameOf(sessionId);
    require(!name.empty() && name.size() <= 64, "a name is neither empty nor long");
    require(std::all_of(name.begin(), name.end(),
                        [](char c) {
                            return c == '-' || c == '_' || (c >= '0' && c <= '9')
                                   || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
                        }),
            "a name is plain");
}

void requireReadable(const HookEvent& event) {
    FakeFileSystem files;
    files.addFile(NotificationWatcher::directory(home) + "/a.json", RequestFiles::content(event),
                  now);
    const QString message =
        event.message.isEmpty() ? QStringLiteral("Permission requested") : event.message;
    require(NotificationWatcher::pending(files, home, now)
                == std::vector{PermissionRequest{"a.json", event.sessionId, message, now}},
            "what is written is read");
}

void requireHookRules(const std::string& text) {
    const std::optional<HookEvent> event = eventIn(text);
    if (!event) {
        return;
    }
    require(!event->sessionId.isEmpty(), "an event belongs to a session");
    require(event->message.isEmpty() || event->kind == HookEvent::Kind::permission
                || event->kind == HookEvent::Kind::reminder,
            "only what is shown has a message");
    require(!event->message.isEmpty() || event->kind != HookEvent::Kind::permission,
            "a permission is for something");
    require(!eventIn(text.substr(0, text.rfind('}'))), "half a call is none");
    requireShortLine(event->message);
    requireName(event->sessionId);
    requireReadable(*event);
}

} // namespace
} // namespace sallowmere::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    sallowmere::fuzz::requireHookRules(sallowmere::fuzz::textOf(data, size));
    return 0;
}

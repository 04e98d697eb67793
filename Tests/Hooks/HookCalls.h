// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>

#include <string>
#include <vector>

/// What the assistant gives its hooks, in the shapes of its clients 2.0.76 and 2.1.329. Ids,
/// directories and texts are made up.
namespace sallowmere::hookCalls {

inline const std::string session = "0b7f7a3e-5c1d-4e8a-9f26-3d1c8a4e7b90";
inline const std::string otherSession = "c2a95d18-77e4-4b0f-8a63-e1f09b5d2c44";

/// Events that both clients know, and some of the newer one alone.
std::vector<std::string> eventsOfBoth();
std::vector<std::string> eventsOfTheNewer();

/// Any event with the keys that both clients give it; its own keys come on top.
QJsonObject event(const std::string& name, const QJsonObject& keys = {},
                  const std::string& sessionId = session);

/// Bash unless another tool is named.
QJsonObject permissionRequest(const QJsonObject& keys = {}, const std::string& sessionId = session);
QJsonObject question(const std::string& sessionId = session);
QJsonObject planApproval(const std::string& sessionId = session);
QJsonObject notification(const QJsonObject& keys = {}, const std::string& sessionId = session);
QJsonObject toolUsed(const std::string& sessionId = session);

/// On one line, as the client writes it.
std::string text(const QJsonObject& call);

} // namespace sallowmere::hookCalls

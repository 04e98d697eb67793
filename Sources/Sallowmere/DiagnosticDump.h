// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Clock.h"
#include "Platform/FileSystem.h"
#include "Platform/ProcessTable.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

namespace sallowmere {

/// The model as plain text, for `sallowmere --dump`.
namespace DiagnosticDump {

/// Whether any argument, the program's own path included, is exactly "--dump".
bool isRequested(std::span<const char* const> arguments);

struct Model {
    std::optional<std::string> claudeBinary;
    std::vector<ClaudeProcess> orphans;
    UsageSnapshot usage;
    std::vector<SessionInfo> sessions;
};

/// Reads everything once, with fresh caches, one step after the other.
Model collect(const FileSystem& files, const ProcessTable& processes, const Clock& clock,
              const std::string& home);

/// Where the report goes: bytes that somebody else reads, or a terminal, which gets harmless marks
/// instead of what it would take for commands.
enum class Target { bytes, terminal };

/// The report in UTF-8. Ends the program when a figure fits no 64-bit integer rather than print a
/// wrong one.
std::string report(const Model& model, Target target = Target::bytes);

} // namespace DiagnosticDump

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/ScriptedAssistant.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace sallowmere {

namespace {

std::vector<std::string> endedByNul(const std::string& text) {
    std::vector<std::string> pieces;
    std::istringstream stream(text);
    for (std::string piece; std::getline(stream, piece, '\0');) {
        pieces.push_back(piece);
    }
    return pieces;
}

/// A set of signals in the form of `/proc/PID/status`.
unsigned long long signalsIn(const std::string& status, const std::string& name) {
    const std::size_t start = status.find("\n" + name + ":");
    return start == std::string::npos
               ? ~0ULL
               : std::stoull(status.substr(start + name.size() + 2), nullptr, 16);
}

} // namespace

ScriptedAssistant::ScriptedAssistant(const std::string& homeName) : home_(homeName) {
    path_ = home_.makeLink(".local/bin/claude", SALLOWMERE_NOTING_ASSISTANT);
}

void ScriptedAssistant::does(std::string_view sessionId, std::string_view commands) const {
    home_.write("deeds/" + std::string(sessionId), commands);
}

bool ScriptedAssistant::wasCalled(std::string_view sessionId) const {
    return std::filesystem::exists(note(sessionId, "complete"));
}

AssistantCall ScriptedAssistant::call(std::string_view sessionId) const {
    AssistantCall call;
    call.arguments = endedByNul(contentOf(note(sessionId, "arguments")));
    call.environment = endedByNul(contentOf(note(sessionId, "environment")));
    call.directory = contentOf(note(sessionId, "directory"));
    std::istringstream descriptors(contentOf(note(sessionId, "descriptors")));
    int number = 0;
    for (std::string target; descriptors >> number && std::getline(descriptors, target);) {
        call.descriptors[number] = target.substr(1);
    }
    // PID (NAME) STATE PARENT GROUP SESSION, where the name may hold anything.
    const std::string stat = contentOf(note(sessionId, "stat"));
    std::istringstream ids(stat.substr(stat.rfind(')') + 1));
    std::string state;
    pid_t parent = 0;
    pid_t group = 0;
    ids >> state >> parent >> group >> call.terminalSession;
    call.pid = std::stoi(stat);
    const std::string status = contentOf(note(sessionId, "status"));
    call.blockedSignals = signalsIn(status, "SigBlk");
    call.ignoredSignals = signalsIn(status, "SigIgn");
    return call;
}

std::string ScriptedAssistant::note(std::string_view sessionId, std::string_view what) const {
    return home_ / ("notes/" + std::string(sessionId) + '/' + std::string(what));
}

std::string contentOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

bool isAlive(pid_t pid) {
    const std::string stat = contentOf("/proc/" + std::to_string(pid) + "/stat");
    const std::size_t name = stat.rfind(") ");
    return name != std::string::npos && stat[name + 2] != 'Z' && stat[name + 2] != 'X';
}

} // namespace sallowmere

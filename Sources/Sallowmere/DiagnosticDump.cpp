// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/DiagnosticDump.h"

#include "Sallowmere/Processes/ProcessScanner.h"
#include "Sallowmere/Processes/PromptRunner.h"
#include "Sallowmere/Sessions/SessionScanner.h"
#include "Sallowmere/Settings/Settings.h"
#include "Sallowmere/Text/Characters.h"
#include "Sallowmere/Text/StrangersText.h"
#include "Sallowmere/Usage/TimeFormat.h"
#include "Sallowmere/Usage/UsageCalculator.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace sallowmere::DiagnosticDump {

namespace {

constexpr qsizetype promptCharacters = 80;
constexpr qsizetype labelCharacters = 90;
constexpr std::size_t shownEvents = 4;

/// Truncated toward zero.
QString wholeNumber(double value) {
    // 2^63 is the first double that a 64-bit integer cannot hold; the comparison refuses NaN too.
    constexpr double bound = 9'223'372'036'854'775'808.0;
    if (!(value >= -bound && value < bound)) {
        std::fputs("sallowmere: a figure of the report is no whole number of 64 bits\n", stderr);
        std::abort();
    }
    return QString::number(static_cast<qint64>(value));
}

QString windowLine(const QString& name, const UsageWindow& window) {
    return name + QStringLiteral(": ") + wholeNumber(window.weightedTokens) + QStringLiteral(" / ")
           + wholeNumber(window.limit) + QStringLiteral(" wtok (")
           + QString::number(window.percent()) + QStringLiteral("%)");
}

QString fiveHourLine(const UsageWindow& window) {
    const QString line = windowLine(QStringLiteral("5h"), window);
    return window.resetsIn
               ? line + QStringLiteral(" resets in ") + TimeFormat::remaining(*window.resetsIn)
               : line;
}

QString orphanLine(const ClaudeProcess& process) {
    return QStringLiteral("orphan process: pid ") + QString::number(process.pid) + u' '
           + process.cwd.value_or(QStringLiteral("?")) + u' ' + process.elapsed;
}

QString header(const SessionInfo& session) {
    QString line = u'[' + rawValue(session.status) + QStringLiteral("] ") + session.title
                   + QStringLiteral("  <") + session.modelBadge + u'|' + session.projectName + u'>';
    if (session.process) {
        line += QStringLiteral(" ⚡pid ") + QString::number(session.process->pid) + u' '
                + wholeNumber(session.process->cpuPercent) + u'%';
    }
    return line;
}

QString quoted(QString text) {
    text.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    return u'"' + text + u'"';
}

QString askLine(const AskQuestion& ask) {
    QStringList options;
    for (const QString& option : ask.options) {
        options.append(quoted(option));
    }
    return QStringLiteral("  ASK: ") + ask.question + QStringLiteral(" [")
           + options.join(QStringLiteral(", ")) + u']';
}

void appendSession(const SessionInfo& session, QStringList& lines) {
    lines.append(QString());
    lines.append(header(session));
    if (session.lastPrompt) {
        lines.append(QStringLiteral("  you: ")
                     + firstCharacters(*session.lastPrompt, promptCharacters).toString());
    }
    if (session.activity) {
        lines.append(QStringLiteral("  act: ") + *session.activity);
    }
    if (session.todo) {
        lines.append(QStringLiteral("  todo: ") + QString::number(session.todo->completed) + u'/'
                     + QString::number(session.todo->total));
    }
    if (session.ask) {
        lines.append(askLine(*session.ask));
    }
    const std::size_t shown = std::min(session.events.size(), shownEvents);
    for (auto event = session.events.end() - static_cast<std::ptrdiff_t>(shown);
         event != session.events.end(); ++event) {
        lines.append(QStringLiteral("    · ")
                     + firstCharacters(event->label, labelCharacters).toString());
    }
}

} // namespace

bool isRequested(std::span<const char* const> arguments) {
    return std::any_of(arguments.begin(), arguments.end(),
                       [](const char* argument) { return std::string_view(argument) == "--dump"; });
}

Model collect(const FileSystem& files, const ProcessTable& processes, const Clock& clock,
              const std::string& home) {
    const Settings settings = Settings::load(files, home);
    Model model;
    model.sessions = SessionScanner(files).scan(settings, clock());
    model.usage = UsageCalculator(files).compute(settings, clock());
    const std::vector<ClaudeProcess> running = ProcessScanner::scan(processes);
    ProcessScanner::Matches matches = ProcessScanner::match(running, model.sessions, clock());
    ProcessScanner::attach(matches, model.sessions);
    model.orphans = std::move(matches.orphans);
    model.claudeBinary = PromptRunner::resolveClaudeBinary(settings, files, home);
    return model;
}

std::string report(const Model& model, Target target) {
    QStringList lines{
        QStringLiteral("claude binary: ")
        + (model.claudeBinary ? decodeUtf8(*model.claudeBinary) : QStringLiteral("NOT FOUND"))};
    for (const ClaudeProcess& orphan : model.orphans) {
        lines.append(orphanLine(orphan));
    }
    lines.append(fiveHourLine(model.usage.fiveHour));
    lines.append(windowLine(QStringLiteral("7d"), model.usage.weekly));
    for (const SessionInfo& session : model.sessions) {
        appendSession(session, lines);
    }
    if (target == Target::terminal) {
        std::transform(lines.cbegin(), lines.cend(), lines.begin(), StrangersText::forTerminal);
    }
    return lines.join(u'\n').append(u'\n').toStdString();
}

} // namespace sallowmere::DiagnosticDump

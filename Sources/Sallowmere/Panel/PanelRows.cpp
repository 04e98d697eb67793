// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelRows.h"

#include "Sallowmere/Panel/ActivityBeacon.h"
#include "Sallowmere/Panel/PanelContent.h"
#include "Sallowmere/Panel/UsageDisplay.h"
#include "Sallowmere/Text/Numbers.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Usage/TimeFormat.h"

#include <algorithm>

namespace sallowmere {

namespace {

QString share(double percent) {
    return fixed(percent, 0) + u'%';
}

QString name(UsageDisplay::PercentColor color) {
    switch (color) {
    case UsageDisplay::PercentColor::tint:
        return QStringLiteral("tint");
    case UsageDisplay::PercentColor::green:
        return QStringLiteral("green");
    case UsageDisplay::PercentColor::orange:
        return QStringLiteral("orange");
    case UsageDisplay::PercentColor::red:
        break;
    }
    return QStringLiteral("red");
}

QString name(ActivityBeacon::Color color) {
    switch (color) {
    case ActivityBeacon::Color::cyan:
        return QStringLiteral("cyan");
    case ActivityBeacon::Color::green:
        return QStringLiteral("green");
    case ActivityBeacon::Color::blue:
        break;
    }
    return QStringLiteral("blue");
}

double doneShare(const TodoProgress& todo) {
    return todo.total > 0 ? std::clamp(
               static_cast<double>(todo.completed) / static_cast<double>(todo.total), 0.0, 1.0)
                          : 0;
}

} // namespace

LogRow LogRow::of(const LogEvent& event) {
    return {event.label, event.kind == LogEvent::Kind::text};
}

SessionRow SessionRow::of(const SessionInfo& session, bool isPrompting,
                          const QString& promptError) {
    SessionRow row;
    row.id = session.id;
    row.title = session.title;
    row.project = session.projectName;
    row.badge = session.modelBadge;
    row.status = rawValue(session.status);
    row.lastPrompt = session.lastPrompt ? QStringLiteral("You: ") + *session.lastPrompt : QString();
    row.activity = session.activity.value_or(QString());
    if (session.todo) {
        row.hasTodo = true;
        row.todoShare = doneShare(*session.todo);
        row.todoCounts =
            QStringLiteral("%1/%2").arg(session.todo->completed).arg(session.todo->total);
    }
    row.terminal = QStringLiteral("Terminal");
    if (session.process) {
        row.hasProcess = true;
        row.cpu = share(session.process->cpuPercent);
        row.processHelp =
            QStringLiteral("claude running · pid ") + QString::number(session.process->pid);
        row.terminal = session.process->terminalName.value_or(row.terminal);
    }
    row.isPrompting = isPrompting;
    row.promptError = promptError;
    return row;
}

CompletionRow CompletionRow::of(const SessionInfo& session) {
    return {session.id, session.title};
}

AskRow AskRow::of(const SessionInfo& session, bool isTyped) {
    const AskQuestion ask = session.ask.value_or(AskQuestion());
    return {session.id, ask.question, ask.options, PanelContent::askHint(isTyped), isTyped};
}

ProcessRow ProcessRow::of(const ClaudeProcess& process) {
    return {process.cwd ? lastPathComponent(QStringView(*process.cwd)).toString()
                        : QStringLiteral("claude"),
            QStringLiteral("pid ") + QString::number(process.pid), share(process.cpuPercent),
            process.elapsed};
}

UsageWindowRow UsageWindowRow::of(const QString& label, const UsageWindow& window, bool hasTint) {
    return {label, QString::number(window.percent()) + u'%',
            name(UsageDisplay::percentColor(window, hasTint)),
            window.resetsIn ? TimeFormat::remaining(*window.resetsIn) : QString()};
}

UsageRow UsageRow::of(const UsageSnapshot& usage) {
    UsageRow row;
    row.fiveHour = UsageWindowRow::of(QStringLiteral("5h"), usage.fiveHour, false);
    row.weekly = UsageWindowRow::of(QStringLiteral("7d"), usage.weekly, false);
    if (usage.weeklyFable) {
        row.hasFamily = true;
        row.family = UsageWindowRow::of(usage.scopedLabel, *usage.weeklyFable, true);
    }
    row.footer = UsageDisplay::footerText(usage);
    return row;
}

BarRow BarRow::of(const std::vector<SessionInfo>& sessions,
                  const std::vector<PermissionRequest>& requests, qsizetype completions) {
    const ActivityBeacon beacon{
        static_cast<std::int64_t>(PanelContent::workingCount(sessions)),
        static_cast<std::int64_t>(PanelContent::waitingCount(sessions, requests)), completions};
    return {beacon.working > 0, beacon.isShown(), name(beacon.color()), beacon.isBreathing(),
            beacon.toolTip()};
}

} // namespace sallowmere

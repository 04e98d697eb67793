// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Panel/PanelRows.h"

#include "Sallowmere/Panel/ActivityBeacon.h"
#include "Sallowmere/Panel/PanelContent.h"
#include "Sallowmere/Panel/UsageDisplay.h"
#include "Sallowmere/Text/Numbers.h"
#include "Sallowmere/Text/Paths.h"
#include "Sallowmere/Text/StrangersText.h"
#include "Sallowmere/Usage/TimeFormat.h"

#include <algorithm>
#include <iterator>

namespace sallowmere {

namespace {

using StrangersText::forPanel;

/// UTF-16 units: more than anybody reads in a field of eight lines.
constexpr qsizetype mostOfPlan = 50'000;

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
    return {forPanel(event.label), event.kind == LogEvent::Kind::text};
}

SessionRow SessionRow::of(const SessionInfo& session, bool isPrompting,
                          const QString& promptError) {
    SessionRow row;
    row.id = session.id;
    row.title = forPanel(session.title);
    row.project = forPanel(session.projectName);
    row.badge = forPanel(session.modelBadge);
    row.status = rawValue(session.status);
    row.lastPrompt =
        session.lastPrompt ? forPanel(QStringLiteral("You: ") + *session.lastPrompt) : QString();
    row.activity = forPanel(session.activity.value_or(QString()));
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
    row.promptError = forPanel(promptError);
    return row;
}

CompletionRow CompletionRow::of(const SessionInfo& session) {
    return {session.id, forPanel(session.title)};
}

AskRow AskRow::of(const SessionInfo& session, bool isTyped) {
    const AskQuestion ask = session.ask.value_or(AskQuestion());
    QStringList options;
    std::transform(ask.options.begin(), ask.options.end(), std::back_inserter(options),
                   [](const QString& option) { return forPanel(option); });
    return {session.id, forPanel(ask.question), options, PanelContent::askHint(isTyped), isTyped};
}

PlanRow PlanRow::of(const SessionInfo& session) {
    return {session.id, forPanel(session.plan.value(), mostOfPlan)};
}

ProcessRow ProcessRow::of(const ClaudeProcess& process) {
    return {process.cwd ? forPanel(lastPathComponent(QStringView(*process.cwd)).toString())
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

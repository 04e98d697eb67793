// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Permissions/PermissionRequest.h"
#include "Sallowmere/Processes/ClaudeProcess.h"
#include "Sallowmere/Sessions/SessionRecords.h"
#include "Sallowmere/Usage/UsageSnapshot.h"

#include <QObject>
#include <QString>
#include <QStringList>

namespace sallowmere {

/// What the views show, in their words: texts as they stand there, and names instead of the
/// model's enumerations. An empty text stands for one that is absent.

/// One line of a session's log.
struct LogRow {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(bool isProse MEMBER isProse)

public:
    QString label;
    bool isProse = false;

    static LogRow of(const LogEvent& event);
    bool operator==(const LogRow&) const = default;
};

/// A session in the list.
struct SessionRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString project MEMBER project)
    Q_PROPERTY(QString badge MEMBER badge)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(QString lastPrompt MEMBER lastPrompt)
    Q_PROPERTY(QString activity MEMBER activity)
    Q_PROPERTY(bool hasTodo MEMBER hasTodo)
    Q_PROPERTY(double todoShare MEMBER todoShare)
    Q_PROPERTY(QString todoCounts MEMBER todoCounts)
    Q_PROPERTY(bool hasProcess MEMBER hasProcess)
    Q_PROPERTY(QString cpu MEMBER cpu)
    Q_PROPERTY(QString processHelp MEMBER processHelp)
    Q_PROPERTY(QString terminal MEMBER terminal)
    Q_PROPERTY(bool isPrompting MEMBER isPrompting)
    Q_PROPERTY(QString promptError MEMBER promptError)

public:
    QString id;
    QString title;
    QString project;
    QString badge;
    /// "working", "waiting", "done" or "idle".
    QString status;
    QString lastPrompt;
    QString activity;
    bool hasTodo = false;
    /// 0 to 1, and "2/5".
    double todoShare = 0;
    QString todoCounts;
    bool hasProcess = false;
    /// "37%".
    QString cpu;
    QString processHelp;
    /// What the button to its terminal reads.
    QString terminal;
    bool isPrompting = false;
    QString promptError;

    static SessionRow of(const SessionInfo& session, bool isPrompting, const QString& promptError);
    bool operator==(const SessionRow&) const = default;
};

/// A session with a recent completion.
struct CompletionRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString title MEMBER title)

public:
    QString id;
    QString title;

    static CompletionRow of(const SessionInfo& session);
    bool operator==(const CompletionRow&) const = default;
};

/// A pending permission request.
struct ApprovalRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString message MEMBER message)
    /// Whether a click types the answer into the session's terminal.
    Q_PROPERTY(bool isTyped MEMBER isTyped)

public:
    QString id;
    QString message;
    bool isTyped = false;

    bool operator==(const ApprovalRow&) const = default;
};

/// The question that has a card.
struct AskRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString question MEMBER question)
    Q_PROPERTY(QStringList options MEMBER options)
    Q_PROPERTY(QString hint MEMBER hint)
    Q_PROPERTY(bool isTyped MEMBER isTyped)

public:
    /// Of the session; empty when nothing is asked.
    QString id;
    QString question;
    QStringList options;
    QString hint;
    bool isTyped = false;

    static AskRow of(const SessionInfo& session, bool isTyped);
    bool operator==(const AskRow&) const = default;
};

/// The plan that has a card.
struct PlanRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(QString markdown MEMBER markdown)

public:
    /// Of the session; empty when there is none.
    QString id;
    QString markdown;

    /// Of a session that has one.
    static PlanRow of(const SessionInfo& session);
    bool operator==(const PlanRow&) const = default;
};

/// An assistant that belongs to no listed session.
struct ProcessRow {
    Q_GADGET
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString pid MEMBER pid)
    Q_PROPERTY(QString cpu MEMBER cpu)
    Q_PROPERTY(QString elapsed MEMBER elapsed)

public:
    QString name;
    /// "pid 4242".
    QString pid;
    QString cpu;
    QString elapsed;

    static ProcessRow of(const ClaudeProcess& process);
    bool operator==(const ProcessRow&) const = default;
};

/// One allowance.
struct UsageWindowRow {
    Q_GADGET
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString percent MEMBER percent)
    Q_PROPERTY(QString color MEMBER color)
    Q_PROPERTY(QString reset MEMBER reset)

public:
    QString label;
    /// "43%".
    QString percent;
    /// "tint", "green", "orange" or "red".
    QString color;
    /// Time until the reset.
    QString reset;

    static UsageWindowRow of(const QString& label, const UsageWindow& window, bool hasTint);
    bool operator==(const UsageWindowRow&) const = default;
};

/// All allowances. The third has an empty label when it is absent.
struct UsageRow {
    Q_GADGET
    Q_PROPERTY(sallowmere::UsageWindowRow fiveHour MEMBER fiveHour)
    Q_PROPERTY(sallowmere::UsageWindowRow weekly MEMBER weekly)
    Q_PROPERTY(bool hasFamily MEMBER hasFamily)
    Q_PROPERTY(sallowmere::UsageWindowRow family MEMBER family)
    Q_PROPERTY(QString footer MEMBER footer)

public:
    UsageWindowRow fiveHour;
    UsageWindowRow weekly;
    bool hasFamily = false;
    UsageWindowRow family;
    QString footer;

    static UsageRow of(const UsageSnapshot& usage);
    bool operator==(const UsageRow&) const = default;
};

/// The collapsed bar, beside the usage.
struct BarRow {
    Q_GADGET
    Q_PROPERTY(bool isWorking MEMBER isWorking)
    Q_PROPERTY(bool hasBeacon MEMBER hasBeacon)
    Q_PROPERTY(QString beaconColor MEMBER beaconColor)
    Q_PROPERTY(bool isBreathing MEMBER isBreathing)
    Q_PROPERTY(QString beaconHelp MEMBER beaconHelp)

public:
    bool isWorking = false;
    bool hasBeacon = false;
    /// "cyan", "green" or "blue".
    QString beaconColor;
    bool isBreathing = false;
    QString beaconHelp;

    static BarRow of(const std::vector<SessionInfo>& sessions,
                     const std::vector<PermissionRequest>& requests, qsizetype completions);
    bool operator==(const BarRow&) const = default;
};

} // namespace sallowmere

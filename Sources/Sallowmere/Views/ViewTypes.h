// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Panel/KeyedListModel.h"
#include "Sallowmere/Panel/PanelModel.h"
#include "Sallowmere/Panel/PanelRows.h"
#include "Sallowmere/Views/PlanMarkdown.h"

#include <QObject>
#include <QtQml/qqml.h>

namespace sallowmere::ViewTypes {

// The names under which the views know what the core, which knows no views, hands to them.

struct Panel {
    Q_GADGET
    QML_FOREIGN(sallowmere::PanelModel)
    QML_NAMED_ELEMENT(PanelModel)
    QML_UNCREATABLE("handed in")
};

struct List {
    Q_GADGET
    QML_FOREIGN(sallowmere::KeyedListModel)
    QML_NAMED_ELEMENT(KeyedListModel)
    QML_UNCREATABLE("handed in")
};

struct Log {
    Q_GADGET
    QML_FOREIGN(sallowmere::LogRow)
    QML_VALUE_TYPE(logRow)
};

struct Session {
    Q_GADGET
    QML_FOREIGN(sallowmere::SessionRow)
    QML_VALUE_TYPE(sessionRow)
};

struct Completion {
    Q_GADGET
    QML_FOREIGN(sallowmere::CompletionRow)
    QML_VALUE_TYPE(completionRow)
};

struct Approval {
    Q_GADGET
    QML_FOREIGN(sallowmere::ApprovalRow)
    QML_VALUE_TYPE(approvalRow)
};

struct Ask {
    Q_GADGET
    QML_FOREIGN(sallowmere::AskRow)
    QML_VALUE_TYPE(askRow)
};

struct Plan {
    Q_GADGET
    QML_FOREIGN(sallowmere::PlanRow)
    QML_VALUE_TYPE(planRow)
};

struct Process {
    Q_GADGET
    QML_FOREIGN(sallowmere::ProcessRow)
    QML_VALUE_TYPE(processRow)
};

struct UsageWindow {
    Q_GADGET
    QML_FOREIGN(sallowmere::UsageWindowRow)
    QML_VALUE_TYPE(usageWindowRow)
};

struct Usage {
    Q_GADGET
    QML_FOREIGN(sallowmere::UsageRow)
    QML_VALUE_TYPE(usageRow)
};

struct Bar {
    Q_GADGET
    QML_FOREIGN(sallowmere::BarRow)
    QML_VALUE_TYPE(barRow)
};

/// `PlanMarkdown::styled` for the views.
class Plans : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(PlanMarkdown)
    QML_SINGLETON

public:
    Q_INVOKABLE QString styled(const QString& markdown) const {
        return PlanMarkdown::styled(markdown);
    }
};

} // namespace sallowmere::ViewTypes

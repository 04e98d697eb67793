// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Support/Texts.h"
#include "Views/PanelHand.h"
#include "Views/PanelStage.h"
#include "Views/Samples.h"

#include <QStringList>

#include <gmock/gmock.h>

namespace sallowmere {

/// The panel on a stage. A warning of the views is a failure.
class ViewTest : public testing::Test {
protected:
    explicit ViewTest(const NotchMetrics& metrics = {});
    ~ViewTest() override;

    /// Shows the scan's sessions in the open panel.
    void showOpen(std::vector<SessionInfo> sessions, std::vector<PermissionRequest> requests = {},
                  std::vector<ClaudeProcess> orphans = {});
    /// Shows `shown` with its details in the open panel, above another session.
    void showDetails(const SessionInfo& shown);
    /// What the window draws at a point of it.
    QColor pixel(QPoint place);

    PanelStage stage;
    PanelHand hand{stage};
    QQuickItem& root() { return *stage.view().rootObject(); }
};

/// The same on a screen with a notch 32 points high.
class NotchedViewTest : public ViewTest {
protected:
    NotchedViewTest() : ViewTest(NotchMetrics{Rect{0, 0, 1512, 982}, 185, 32, true, 982}) {}
};

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Sallowmere/Panel/NotchMetrics.h"
#include "Sallowmere/Panel/PanelModel.h"
#include "Sallowmere/Views/Keyboard.h"
#include "Sallowmere/Views/Motion.h"

#include <QQuickView>
#include <QRegion>

namespace sallowmere {

/// A window that shows the panel's root view, as large as the window is. What kind of window it is
/// to the desktop is for others to say. Main thread only.
class PanelView : public QQuickView {
    Q_OBJECT

public:
    /// The model must outlive the view. `wingWidth` is that of the settings.
    PanelView(PanelModel& model, const NotchMetrics& metrics, double wingWidth);

    /// Measures anew: the views follow.
    void setMetrics(const NotchMetrics& metrics);
    /// Whether endless animations run.
    void setMotionWanted(bool wanted);
    /// Who types: the views ask for it there, and learn there whether they have it.
    Keyboard& keyboard();
    /// Whether keys go to a control, or will once the window has the keyboard.
    bool hasFocusedControl() const;
    /// None of the views has the keyboard focus any more.
    void clearFocus();
    /// The black ground with its round corners, in the coordinates of the window as large as it is
    /// now: what a screen that knows no transparency has to show of it.
    QRegion opaqueShape() const;

private:
    template <typename Singleton>
    Singleton& singleton(const char* name);
};

} // namespace sallowmere

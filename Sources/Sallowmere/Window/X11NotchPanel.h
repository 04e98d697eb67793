// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/X11/PanelKeyboard.h"
#include "Platform/X11/StackingGuard.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"
#include "Sallowmere/Panel/NotchPanel.h"
#include "Sallowmere/Views/PanelView.h"

#include <QObject>
#include <QVariantAnimation>

#include <memory>

namespace sallowmere {

/// The panel's window on an X server: no window manager places, decorates, lists or covers it. Its
/// round corners are cut out where no compositor makes them transparent.
class X11NotchPanel : public QObject, public NotchPanel {
    Q_OBJECT

public:
    /// All must outlive this; the view is not shown yet.
    X11NotchPanel(PanelView& view, X11Events& events, X11Connection& connection);

    void observe(Events events) override { observer_ = std::move(events); }
    void setMetrics(const NotchMetrics& metrics) override;
    Rect frame() const override { return frame_; }
    void setFrame(const Rect& frame, double seconds) override;
    void show() override;
    bool isKey() const override { return keyboard_->isHeld(); }
    bool hasFirstResponder() const override { return view_.hasFocusedControl(); }
    void clearFirstResponder() override { view_.clearFocus(); }
    std::optional<FrontApplication> frontmost() const override;
    void activate(std::optional<FrontApplication> application) override;

    /// Ends the program's connections with the server, and with them its window: that goes also
    /// when the system cannot end the program yet, because a file system holds up one of its
    /// threads. Nothing can be shown afterwards; nothing but the program's end may follow.
    void hangUp();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createWindow();
    void place(const Rect& frame);
    void cutCorners();
    void keyChanged(bool isKey);

    PanelView& view_;
    X11Connection& connection_;
    Events observer_;
    /// Where it is, where its way began, and the last one asked for.
    Rect placed_;
    Rect start_;
    Rect frame_;
    /// From 0 to 1 on that way.
    QVariantAnimation movement_;
    bool isComposited_;
    std::unique_ptr<StackingGuard> guard_;
    std::unique_ptr<PanelKeyboard> keyboard_;
};

} // namespace sallowmere

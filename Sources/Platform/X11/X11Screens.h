// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Screens.h"
#include "Platform/X11/Bars.h"
#include "Platform/X11/X11Connection.h"
#include "Platform/X11/X11Events.h"

#include <QObject>
#include <QRect>
#include <QTimer>

#include <string>
#include <vector>

class QScreen;

namespace sallowmere {

/// The displays as Qt tells of them, less what bars keep for themselves. Those of laptops with a
/// camera notch are known by the laptop's model. Needs a `QGuiApplication` on an X server.
class X11Screens : public QObject, public Screens {
    Q_OBJECT

public:
    /// Both must outlive this. `laptopModel` is what the firmware calls this machine, or empty.
    X11Screens(X11Events& events, X11Connection& connection, std::string laptopModel);

    std::vector<Screen> all() const override;
    std::optional<Screen> main() const override;

    /// A rectangle of ours as Qt's, whose y grows downwards from the top of the desktop, and back.
    static QRect toQt(const Rect& rect);
    static Rect fromQt(const QRectF& rect);

private:
    Screen describe(const QScreen& screen) const;
    void follow(QScreen* screen);
    void notice(const xcb_generic_event_t* event);
    bool isAboutBars(const xcb_generic_event_t* event) const;
    void readBars();

    X11Events& events_;
    X11Connection& connection_;
    const std::string laptopModel_;
    std::vector<Bar> bars_;
    /// So that much that happens at once is looked at once.
    QTimer barsChanged_;
};

} // namespace sallowmere

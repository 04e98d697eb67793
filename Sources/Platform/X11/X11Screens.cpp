// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Screens.h"

#include "Platform/Linux/NotchedLaptops.h"
#include "Platform/X11/Bars.h"

#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <utility>

namespace sallowmere {

namespace {

/// Where our y of 0 lies for Qt.
double ground() {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary == nullptr ? 0 : primary->geometry().y() + primary->geometry().height();
}

/// Qt scales a screen's size but not its place.
PixelArea pixels(const QScreen& screen) {
    const QRect area = screen.geometry();
    const double scale = screen.devicePixelRatio();
    return {area.x(), area.y(), area.x() + static_cast<int>(std::lround(area.width() * scale)),
            area.y() + static_cast<int>(std::lround(area.height() * scale))};
}

PixelArea wholeDesktop() {
    PixelArea all;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const PixelArea area = pixels(*screen);
        all.right = std::max(all.right, area.right);
        all.bottom = std::max(all.bottom, area.bottom);
    }
    return all;
}

QRectF fromPixels(const PixelArea& area, const QScreen& screen) {
    const QPointF origin = screen.geometry().topLeft();
    const double scale = screen.devicePixelRatio();
    return {origin + (QPointF(area.left, area.top) - origin) / scale,
            QSizeF(area.right - area.left, area.bottom - area.top) / scale};
}

} // namespace

X11Screens::X11Screens(X11Events& events, X11Connection& connection, std::string laptopModel)
    : events_(events), connection_(connection), laptopModel_(std::move(laptopModel)) {
    const auto announce = [this] { announceChange(); };
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &X11Screens::follow);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, announce);
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, announce);
    connect(qGuiApp, &QGuiApplication::primaryScreenChanged, this, announce);
    for (QScreen* screen : QGuiApplication::screens()) {
        follow(screen);
    }
    connect(&events, &X11Events::arrived, this, &X11Screens::notice);
    watchBars();
}

void X11Screens::follow(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { announceChange(); });
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, [this] { announceChange(); });
}

void X11Screens::notice(const xcb_generic_event_t* event) {
    const auto* change = eventOf<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
    if (change == nullptr || !connection_.isAlive()) {
        return;
    }
    const xcb_ewmh_connection_t& names = *connection_.ewmh();
    const bool isListOfWindows =
        change->window == connection_.root()
        && (change->atom == names._NET_CLIENT_LIST || change->atom == names._NET_WORKAREA);
    const bool isBar =
        change->window != connection_.root() && (change->atom == names._NET_WM_STRUT_PARTIAL);
    if (isListOfWindows) {
        watchBars();
    }
    if (isListOfWindows || isBar) {
        announceChange();
    }
}

void X11Screens::watchBars() {
    if (connection_.isAlive()) {
        for (const Bar& bar : bars(connection_)) {
            events_.watchProperties(bar.window);
        }
    }
}

Screen X11Screens::describe(const QScreen& screen) const {
    const PixelArea area = pixels(screen);
    const PixelArea rest =
        connection_.isAlive() ? without(bars(connection_), area, wholeDesktop()) : area;
    Screen described{fromQt(screen.geometry()), fromQt(fromPixels(rest, screen)), 0, {}, {}};
    const auto notch = NotchedLaptops::notchOf(laptopModel_, screen.name().toStdString(),
                                               area.right - area.left, area.bottom - area.top);
    if (notch) {
        const double scale = screen.devicePixelRatio();
        const double beside = (described.frame.width - notch->width / scale) / 2;
        described.topInset = notch->height / scale;
        described.leftOfNotch = beside;
        described.rightOfNotch = beside;
    }
    return described;
}

std::vector<Screen> X11Screens::all() const {
    std::vector<Screen> screens;
    for (const QScreen* screen : QGuiApplication::screens()) {
        screens.push_back(describe(*screen));
    }
    return screens;
}

std::optional<Screen> X11Screens::main() const {
    const QScreen* primary = QGuiApplication::primaryScreen();
    return primary == nullptr ? std::nullopt : std::optional(describe(*primary));
}

QRect X11Screens::toQt(const Rect& rect) {
    // By its middle, so that it stays there while it grows.
    const int width = static_cast<int>(std::lround(rect.width));
    const int height = static_cast<int>(std::lround(rect.height));
    return {static_cast<int>(std::lround(rect.midX() - width / 2.0)),
            static_cast<int>(std::lround(ground() - rect.maxY())), width, height};
}

Rect X11Screens::fromQt(const QRectF& rect) {
    return {rect.x(), ground() - rect.y() - rect.height(), rect.width(), rect.height()};
}

} // namespace sallowmere

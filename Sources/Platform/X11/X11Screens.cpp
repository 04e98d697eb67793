// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/X11Screens.h"

#include "Platform/Linux/NotchedLaptops.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

namespace sallowmere {

namespace {

/// Until a window that comes up, and its properties, are all there.
constexpr std::chrono::milliseconds settlingTime(20);

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
    barsChanged_.setSingleShot(true);
    barsChanged_.setInterval(settlingTime);
    connect(&barsChanged_, &QTimer::timeout, this, &X11Screens::readBars);
    readBars();
}

void X11Screens::follow(QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, [this] { announceChange(); });
    connect(screen, &QScreen::physicalDotsPerInchChanged, this, [this] { announceChange(); });
}

void X11Screens::notice(const xcb_generic_event_t* event) {
    if (isAboutBars(event) && !barsChanged_.isActive()) {
        barsChanged_.start();
    }
}

bool X11Screens::isAboutBars(const xcb_generic_event_t* event) const {
    const auto* property = eventOf<xcb_property_notify_event_t>(event, XCB_PROPERTY_NOTIFY);
    if (property != nullptr) {
        const xcb_ewmh_connection_t& names = *connection_.ewmh();
        return property->atom == names._NET_CLIENT_LIST || property->atom == names._NET_WORKAREA
               || property->atom == names._NET_WM_STRUT_PARTIAL;
    }
    return eventOf<xcb_map_notify_event_t>(event, XCB_MAP_NOTIFY) != nullptr
           || eventOf<xcb_unmap_notify_event_t>(event, XCB_UNMAP_NOTIFY) != nullptr
           || eventOf<xcb_destroy_notify_event_t>(event, XCB_DESTROY_NOTIFY) != nullptr;
}

void X11Screens::readBars() {
    if (!connection_.isAlive()) {
        return;
    }
    std::vector<Bar> found = bars(connection_);
    for (const Bar& bar : found) {
        const bool isKnown = std::any_of(bars_.begin(), bars_.end(), [&](const Bar& known) {
            return known.window == bar.window;
        });
        if (!isKnown) {
            events_.watchProperties(bar.window);
            // It may have changed before it was watched.
            barsChanged_.start();
        }
    }
    if (std::exchange(bars_, std::move(found)) != bars_) {
        announceChange();
    }
}

Screen X11Screens::describe(const QScreen& screen) const {
    const PixelArea area = pixels(screen);
    const PixelArea rest = without(bars_, area, wholeDesktop());
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

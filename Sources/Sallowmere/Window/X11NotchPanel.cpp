// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Window/X11NotchPanel.h"

#include "Platform/X11/Compositor.h"
#include "Platform/X11/X11Screens.h"
#include "Platform/X11/XcbMemory.h"

#include <QEasingCurve>
#include <QGuiApplication>
#include <QScreen>

#include <cmath>
#include <utility>

#include <sys/socket.h>

namespace sallowmere {

namespace {

/// Milliseconds.
constexpr int firstStep = 16;

QEasingCurve easeOut() {
    QEasingCurve curve(QEasingCurve::BezierSpline);
    curve.addCubicBezierSegment({0, 0}, {0.58, 1}, {1, 1});
    return curve;
}

Rect between(const Rect& from, const Rect& to, double share) {
    return {std::lerp(from.x, to.x, share), std::lerp(from.y, to.y, share),
            std::lerp(from.width, to.width, share), std::lerp(from.height, to.height, share)};
}

xcb_connection_t* connectionOfQt() {
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

/// Qt leaves what it asks for lying until it draws or waits for events again.
void flush() {
    xcb_flush(connectionOfQt());
}

bool isXWayland(X11Connection& connection) {
    constexpr std::string_view name = "XWAYLAND";
    return connection.hasExtension(name)
           // Those that have no such extension yet name their screens so.
           || QGuiApplication::primaryScreen()->name().startsWith(QLatin1String(name.data()));
}

} // namespace

X11NotchPanel::X11NotchPanel(PanelView& view, X11Events& events, X11Connection& connection)
    : view_(view), connection_(connection), isComposited_(hasCompositor(connection)) {
    createWindow();
    const auto window = static_cast<xcb_window_t>(view_.winId());
    guard_ = std::make_unique<StackingGuard>(events, connection, window);
    keyboard_ = std::make_unique<PanelKeyboard>(
        events, connection, window,
        isXWayland(connection) ? PanelKeyboard::Server::xwayland : PanelKeyboard::Server::x11);
    connect(keyboard_.get(), &PanelKeyboard::heldChanged, this, &X11NotchPanel::keyChanged);
    connect(&view_.keyboard(), &Keyboard::wanted, keyboard_.get(), &PanelKeyboard::take);
    connect(&events, &X11Events::compositorChanged, this, [this] {
        isComposited_ = hasCompositor(connection_);
        cutCorners();
    });
    // By then the views are as large as the window.
    connect(&view_, &QQuickWindow::frameSwapped, this, &X11NotchPanel::cutCorners);
    cutCorners();
    movement_.setEasingCurve(easeOut());
    movement_.setStartValue(0.0);
    movement_.setEndValue(1.0);
    connect(&movement_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& share) { place(between(start_, frame_, share.toDouble())); });
    view_.installEventFilter(this);
}

void X11NotchPanel::createWindow() {
    view_.setFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint
                   | Qt::X11BypassWindowManagerHint);
    view_.create();
    // A window of no type would get the keyboard under XWayland. On Qt's own connection, behind
    // what makes the window.
    xcb_connection_t* qt = connectionOfQt();
    const xcb_ewmh_connection_t& names = *connection_.ewmh();
    xcb_change_property(qt, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(view_.winId()),
                        names._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, 32, 1,
                        &names._NET_WM_WINDOW_TYPE_NOTIFICATION);
    // Others are going to ask for the window on other connections.
    XcbMemory<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(qt, xcb_get_input_focus(qt), nullptr));
}

void X11NotchPanel::setMetrics(const NotchMetrics& metrics) {
    view_.setMetrics(metrics);
    // The same frame may lie elsewhere on another arrangement of screens.
    if (view_.isVisible()) {
        place(placed_);
    }
}

void X11NotchPanel::setFrame(const Rect& frame, double seconds) {
    start_ = placed_;
    frame_ = frame;
    movement_.stop();
    if (seconds <= 0 || !view_.isVisible()) {
        place(frame);
        return;
    }
    movement_.setDuration(qRound(seconds * 1'000));
    movement_.start();
    // The first step is taken now: where it begins it is already.
    movement_.setCurrentTime(firstStep);
}

void X11NotchPanel::place(const Rect& frame) {
    placed_ = frame;
    view_.setGeometry(X11Screens::toQt(frame));
}

void X11NotchPanel::cutCorners() {
    const QRegion shape = isComposited_ ? QRegion() : view_.opaqueShape();
    if (view_.mask() != shape) {
        view_.setMask(shape);
        flush();
    }
}

void X11NotchPanel::show() {
    view_.show();
    view_.raise();
}

std::optional<NotchPanel::FrontApplication> X11NotchPanel::frontmost() const {
    const std::optional<xcb_window_t> window = keyboard_->frontmost();
    return window ? std::optional(FrontApplication{*window}) : std::nullopt;
}

void X11NotchPanel::activate(std::optional<FrontApplication> application) {
    keyboard_->handTo(application ? std::optional(static_cast<xcb_window_t>(application->id))
                                  : std::nullopt);
}

void X11NotchPanel::keyChanged(bool isKey) {
    if (keyboard_->needsGrab()) {
        view_.setKeyboardGrabEnabled(isKey);
        flush();
    }
    view_.keyboard().setHeld(isKey);
    const auto& tell = isKey ? observer_.becameKey : observer_.resignedKey;
    if (tell) {
        tell();
    }
}

void X11NotchPanel::hangUp() {
    for (xcb_connection_t* connection : {connectionOfQt(), connection_.xcb()}) {
        shutdown(xcb_get_file_descriptor(connection), SHUT_RDWR);
    }
}

bool X11NotchPanel::eventFilter(QObject* watched, QEvent* event) {
    const bool enters = event->type() == QEvent::Enter;
    if ((enters || event->type() == QEvent::Leave) && observer_.hoverChanged) {
        observer_.hoverChanged(enters);
    }
    return QObject::eventFilter(watched, event);
}

} // namespace sallowmere

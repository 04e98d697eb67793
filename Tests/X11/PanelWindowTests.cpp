// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/Compositor.h"
#include "Platform/X11/PanelKeyboard.h"
#include "Platform/X11/StackingGuard.h"
#include "Platform/X11/X11Events.h"
#include "Platform/X11/XcbMemory.h"
#include "System/EventLoop.h"
#include "X11/DesktopTest.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace sallowmere {
namespace {

/// A window that no window manager looks after, all over the place where other windows come up, and
/// what keeps it above them and gives it the keyboard.
class PanelWindowTest : public DesktopTest {
protected:
    void SetUp() override {
        DesktopTest::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        loop.emplace();
        events.emplace(desktop().server.display());
        window = desktop().client.showUnmanaged();
        const std::uint32_t everywhere[] = {0, 0, 4'000, 4'000};
        xcb_configure_window(client().xcb(), window,
                             XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH
                                 | XCB_CONFIG_WINDOW_HEIGHT,
                             everywhere);
        client().sync();
        guard.emplace(*events, desktop().connection, window);
        keyboard.emplace(*events, desktop().connection, window, PanelKeyboard::Server::x11);
        QObject::connect(&*keyboard, &PanelKeyboard::heldChanged, &*keyboard,
                         [this](bool held) { changes.push_back(held); });
    }

    void TearDown() override {
        keyboard.reset();
        guard.reset();
        events.reset();
        loop.reset();
        DesktopTest::TearDown();
    }

    XClient& client() { return desktop().client; }

    /// From the bottom.
    std::vector<xcb_window_t> onDesktop() {
        const XcbMemory<xcb_query_tree_reply_t> tree(xcb_query_tree_reply(
            client().xcb(), xcb_query_tree(client().xcb(), client().root()), nullptr));
        const xcb_window_t* first = xcb_query_tree_children(tree.get());
        return {first, first + xcb_query_tree_children_length(tree.get())};
    }

    std::ptrdiff_t placeOf(xcb_window_t sought) {
        const std::vector<xcb_window_t> windows = onDesktop();
        return std::find(windows.begin(), windows.end(), sought) - windows.begin();
    }

    /// The window that lies directly on the desktop and holds this one.
    xcb_window_t frameOf(xcb_window_t inner) {
        xcb_window_t frame = inner;
        while (client().parentOf(frame) != client().root()) {
            frame = client().parentOf(frame);
        }
        return frame;
    }

    bool isAbove(xcb_window_t other) { return placeOf(window) > placeOf(frameOf(other)); }

    void raise(xcb_window_t raised) {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(client().xcb(), raised, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        client().sync();
    }

    xcb_window_t showManaged() {
        const xcb_window_t managed = client().createWindow();
        client().show(managed);
        return managed;
    }

    void take() {
        keyboard->take();
        ASSERT_TRUE(EventLoop::runUntil([this] { return keyboard->isHeld(); }));
    }

    void useXWayland() {
        keyboard.emplace(*events, desktop().connection, window, PanelKeyboard::Server::xwayland);
        EXPECT_TRUE(keyboard->needsGrab());
    }

    /// Windows on the desktop as small as those that come up in the panel's place.
    std::ptrdiff_t helpers() {
        desktop().waitUntilTyped();
        const std::vector<xcb_window_t> windows = onDesktop();
        return std::count_if(windows.begin(), windows.end(), [this](xcb_window_t each) {
            const XcbMemory<xcb_get_geometry_reply_t> size(xcb_get_geometry_reply(
                client().xcb(), xcb_get_geometry(client().xcb(), each), nullptr));
            return size && size->width == 4 && size->height == 4;
        });
    }

    void losesIt() {
        ASSERT_TRUE(EventLoop::runUntil([this] { return !keyboard->isHeld(); }));
    }

    std::optional<EventLoop> loop;
    std::optional<X11Events> events;
    std::optional<StackingGuard> guard;
    std::optional<PanelKeyboard> keyboard;
    xcb_window_t window = XCB_NONE;
    std::vector<bool> changes;
};

using testing::ElementsAre;
using testing::IsEmpty;

TEST_P(PanelWindowTest, ComesBackAboveAWindowThatCoversIt) {
    const xcb_window_t other = showManaged();
    raise(frameOf(other));
    EXPECT_TRUE(EventLoop::runUntil([&] { return isAbove(other); }));
}

TEST_P(PanelWindowTest, StaysBelowMenusAndScreenLockers) {
    const xcb_window_t menu = client().showUnmanaged();
    ASSERT_LT(placeOf(window), placeOf(menu));
    // Comes later, and has been dealt with once the panel is above it.
    const xcb_window_t other = showManaged();
    raise(menu);
    raise(frameOf(other));
    ASSERT_TRUE(EventLoop::runUntil([&] { return isAbove(other); }));
    raise(menu);
    raise(frameOf(other));
    EXPECT_TRUE(EventLoop::runUntil([&] { return isAbove(other); }));
}

TEST_P(PanelWindowTest, TakesTheKeyboardAndGivesItBack) {
    Terminal& xterm = desktop().addXterm("one");
    const xcb_window_t owner = client().focus();
    take();
    EXPECT_EQ(client().focus(), window);
    EXPECT_EQ(keyboard->frontmost(), owner);

    keyboard->handTo(owner);
    losesIt();
    EXPECT_EQ(client().focus(), owner);
    EXPECT_THAT(changes, ElementsAre(true, false));
    EXPECT_EQ(desktop().received(xterm), "");
}

TEST_P(PanelWindowTest, TakingItAgainIsNothingNew) {
    desktop().addXterm("one");
    const xcb_window_t owner = client().focus();
    keyboard->take();
    take();
    keyboard->take();
    EXPECT_EQ(keyboard->frontmost(), owner);
    EXPECT_THAT(changes, ElementsAre(true));
}

TEST_P(PanelWindowTest, LosesItToAWindowThatTheUserChooses) {
    Terminal& xterm = desktop().addXterm("one");
    take();
    client().setFocus(xterm.window);
    losesIt();
    EXPECT_THAT(changes, ElementsAre(true, false));
}

TEST_P(PanelWindowTest, AGrabDoesNotCountAsALoss) {
    desktop().addXterm("one");
    take();
    ASSERT_TRUE(client().grabKeyboard());
    client().ungrabKeyboard();
    client().sync();
    keyboard->handTo(std::nullopt);
    losesIt();
    EXPECT_THAT(changes, ElementsAre(true, false));
}

TEST_P(PanelWindowTest, GivesItToTheActiveWindowWhenTheOwnerHasGone) {
    Terminal& stays = desktop().addXterm("stays");
    Terminal& goes = desktop().addXterm("goes");
    const xcb_window_t owner = client().focus();
    take();
    desktop().close(goes);
    client().activate(stays.window);
    losesIt();
    take();

    keyboard->handTo(owner);
    losesIt();
    EXPECT_TRUE(client().hasFocus(stays.window));
}

TEST_P(PanelWindowTest, NeverKeepsItWhenThereIsNobodyToHaveIt) {
    take();
    keyboard->handTo(std::nullopt);
    losesIt();
    EXPECT_NE(client().focus(), window);
}

TEST_P(PanelWindowTest, UnderXWaylandAHelperGetsItInItsPlace) {
    Terminal& xterm = desktop().addXterm("one");
    useXWayland();
    keyboard->take();
    keyboard->take();
    EXPECT_TRUE(keyboard->isHeld());
    EXPECT_EQ(helpers(), 1);
    EXPECT_TRUE(client().hasFocus(xterm.window));

    keyboard->handTo(std::nullopt);
    EXPECT_FALSE(keyboard->isHeld());
    EXPECT_EQ(helpers(), 0);
}

TEST_P(PanelWindowTest, UnderXWaylandAnotherActiveWindowHasIt) {
    const xcb_window_t windows[] = {desktop().addXterm("one").window,
                                    desktop().addXterm("two").window};
    useXWayland();
    keyboard->take();
    // What happens right after does not count yet.
    int turn = 0;
    EXPECT_TRUE(EventLoop::runUntil([&] {
        client().activate(windows[turn++ % 2]);
        return !keyboard->isHeld();
    }));
}

TEST_P(PanelWindowTest, NothingHappensOnceTheServerHasGone) {
    desktop().server.kill();
    ASSERT_TRUE(EventLoop::runUntil([this] { return !desktop().connection.isAlive(); }));
    keyboard->take();
    keyboard->handTo(std::nullopt);
    EXPECT_FALSE(keyboard->isHeld());
    EXPECT_FALSE(hasCompositor(desktop().connection));
    EXPECT_THAT(changes, IsEmpty());
}

TEST_P(PanelWindowTest, ACompositorIsNoticedWhenItComesAndGoes) {
    int noticed = 0;
    QObject::connect(&*events, &X11Events::compositorChanged, &*events, [&] { ++noticed; });
    XClient compositor(desktop().server.display());
    const xcb_atom_t selection = compositor.atom("_NET_WM_CM_S0");
    const xcb_window_t owner = compositor.createWindow();
    xcb_set_selection_owner(compositor.xcb(), owner, selection, XCB_CURRENT_TIME);
    compositor.sync();
    EXPECT_TRUE(EventLoop::runUntil([&] { return noticed == 1; }));
    EXPECT_TRUE(hasCompositor(desktop().connection));

    xcb_destroy_window(compositor.xcb(), owner);
    compositor.sync();
    EXPECT_TRUE(EventLoop::runUntil([&] { return noticed == 2; }));
    EXPECT_FALSE(hasCompositor(desktop().connection));
}

ON_EACH_WINDOW_MANAGER(PanelWindowTest);

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Support/Missing.h"
#include "System/EnvironmentVariable.h"
#include "X11/DesktopTest.h"
#include "X11/WaitFor.h"

namespace sallowmere {
namespace {

using testing::IsEmpty;

/// What is there of applications and keystrokes on a connection.
struct Views {
    explicit Views(X11Connection& connection) : applications(connection), keystrokes(connection) {}

    /// Nothing is found, and nothing that is asked for does harm.
    void expectNobody(const Terminal& terminal) {
        EXPECT_EQ(applications.ofProcess(terminal.owner), std::nullopt);
        EXPECT_EQ(applications.withIdentifier("xterm"), std::nullopt);
        EXPECT_THAT(applications.windows({terminal.owner}), IsEmpty());
        EXPECT_FALSE(applications.hasKeyboard({terminal.owner}));
        applications.activate({terminal.owner});
        applications.raise({terminal.window, "title"});
    }

    X11Applications applications;
    X11Keystrokes keystrokes;
};

class ConnectionTest : public testing::Test {
protected:
    void SetUp() override {
        if (!hasPrograms({"/usr/bin/Xvfb", "/usr/bin/setxkbmap", "/usr/bin/xterm"})) {
            MISSING_FOR_TEST("an X server or a terminal is not installed");
        }
    }
};

TEST_F(ConnectionTest, FindsNobodyWithoutAServer) {
    for (const char* display : {":987654", "nonsense", "/nowhere:0"}) {
        X11Connection connection(display);
        Views views(connection);
        EXPECT_FALSE(connection.isAlive());
        EXPECT_FALSE(views.keystrokes.isTrusted());
        views.expectNobody({});
        views.keystrokes.typeDigit(1);
        views.keystrokes.requestTrust();
    }
}

TEST_F(ConnectionTest, GoesToTheServerThatTheEnvironmentNames) {
    const XServer server;
    const EnvironmentVariable display("DISPLAY", server.display());
    X11Connection connection;
    EXPECT_TRUE(connection.isAlive());
    EXPECT_EQ(connection.root(), XClient(server.display()).root());
    const EnvironmentVariable none("DISPLAY", std::nullopt);
    EXPECT_FALSE(X11Connection().isAlive());
}

TEST_F(ConnectionTest, FindsNobodyWithoutAWindowManager) {
    const XServer server;
    XClient client(server.display());
    server.setLayout("us");
    Terminals terminals(server);
    const Terminal& terminal = terminals.startXterm("terminal");
    waitFor("the terminal to show its window", [&] {
        client.setFocus(terminal.window);
        return client.hasFocus(terminal.window);
    });
    X11Connection connection(server.display());
    Views views(connection);
    views.expectNobody(terminal);
    EXPECT_TRUE(connection.isAlive());
    EXPECT_TRUE(client.hasFocus(terminal.window));
}

TEST_F(ConnectionTest, MayTypeWhereverTheServerCan) {
    const XServer server;
    X11Connection connection(server.display());
    Views views(connection);
    EXPECT_TRUE(views.keystrokes.isTrusted());
    views.keystrokes.requestTrust();
    EXPECT_TRUE(views.keystrokes.isTrusted());
}

TEST_F(ConnectionTest, MayNotTypeWhereTheServerCannot) {
    const XServer server({"-extension", "XTEST"});
    X11Connection connection(server.display());
    Views views(connection);
    EXPECT_FALSE(views.keystrokes.isTrusted());
    views.keystrokes.typeDigit(1);
    EXPECT_TRUE(connection.isAlive());
}

TEST_F(ConnectionTest, ThrowsAwayWhatItWasNotAskingFor) {
    const XServer server;
    X11Connection connection(server.display());
    ASSERT_TRUE(connection.isAlive());
    for (const char* layout : {"fr", "us", "de"}) {
        server.setLayout(layout);
    }
    connection.serverTime();
    server.setLayout("us");
    // With an answer comes all that the server sent before.
    ASSERT_NE(connection.atom("WM_NAME"), xcb_atom_t(XCB_NONE));
    ASSERT_TRUE(connection.isAlive());
    EXPECT_EQ(xcb_poll_for_queued_event(connection.xcb()), nullptr);
}

TEST_F(ConnectionTest, KnowsTheServersTime) {
    const XServer server;
    X11Connection connection(server.display());
    ASSERT_TRUE(connection.isAlive());
    const xcb_timestamp_t before = connection.serverTime();
    EXPECT_NE(before, xcb_timestamp_t(XCB_CURRENT_TIME));
    waitFor("time to pass", [&] { return connection.serverTime() != before; });
    EXPECT_LT(before, connection.serverTime());
}

TEST_F(ConnectionTest, KnowsOnlyNamesThatAreInUse) {
    const XServer server;
    X11Connection connection(server.display());
    ASSERT_TRUE(connection.isAlive());
    EXPECT_EQ(connection.atom("WM_NAME"), xcb_atom_t(XCB_ATOM_WM_NAME));
    EXPECT_EQ(connection.atom("NOBODY_USES_THIS"), xcb_atom_t(XCB_NONE));
    const xcb_atom_t used = XClient(server.display()).atom("NOBODY_USES_THIS");
    EXPECT_EQ(connection.atom("NOBODY_USES_THIS"), used);
}

using LostServerTest = DesktopTest;

TEST_P(LostServerTest, LeavesNobodyAndNothingToType) {
    Terminal& terminal = desktop().addXterm("terminal");
    EXPECT_TRUE(desktop().answer(1, terminal));
    desktop().waitForFront(terminal);
    desktop().server.kill();
    desktop().queue.advance(1);
    EXPECT_EQ(desktop().queue.scheduled(), 0U);
    EXPECT_FALSE(desktop().connection.isAlive());
    EXPECT_FALSE(desktop().keystrokes.isTrusted());
    EXPECT_FALSE(desktop().answer(1, terminal));
    EXPECT_FALSE(desktop().jump(terminal));
    Views views(desktop().connection);
    views.expectNobody(terminal);
    EXPECT_TRUE(terminal.received.empty());
}

TEST_P(LostServerTest, IsNoHarmBetweenTwoQuestions) {
    const Terminal& terminal = desktop().addXterm("terminal");
    ASSERT_TRUE(desktop().connection.isAlive());
    desktop().server.kill();
    // As when it goes just after this was asked.
    EXPECT_EQ(desktop().connection.serverTime(), xcb_timestamp_t(XCB_CURRENT_TIME));
    EXPECT_FALSE(desktop().connection.hasWindowManager());
    EXPECT_FALSE(desktop().connection.isKeyboardGrabbed());
    EXPECT_EQ(desktop().connection.atom("WM_NAME"), xcb_atom_t(XCB_NONE));
    ClientWindows windows(desktop().connection);
    EXPECT_THAT(windows.frontToBack(), IsEmpty());
    EXPECT_EQ(windows.process(terminal.window), std::nullopt);
    EXPECT_EQ(windows.title(terminal.window), std::nullopt);
    EXPECT_THAT(windows.applicationNames(terminal.window), IsEmpty());
    EXPECT_FALSE(windows.contains(terminal.window, terminal.window + 1));
}

using LostManagerTest = DesktopTest;

TEST_P(LostManagerTest, LeavesNobody) {
    const Terminal& terminal = desktop().addXterm("terminal");
    EXPECT_TRUE(desktop().connection.hasWindowManager());
    desktop().manager->kill();
    waitFor("the window manager's end", [&] { return !desktop().connection.hasWindowManager(); });
    EXPECT_TRUE(desktop().connection.isAlive());
    Views views(desktop().connection);
    views.expectNobody(terminal);
}

} // namespace

ON_EACH_WINDOW_MANAGER(LostServerTest);
ON_EACH_WINDOW_MANAGER(LostManagerTest);

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "X11/DesktopTest.h"

#include "X11/WaitFor.h"

#include <unistd.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::string thisMachine() {
    char name[256] = {};
    gethostname(name, sizeof name - 1);
    return name;
}

class ApplicationsTest : public DesktopTest {
protected:
    Applications& applications() { return desktop().applications; }
    XClient& client() { return desktop().client; }
    static RunningApplication thisProcess() { return {getpid()}; }

    /// A window of this process with the keyboard.
    xcb_window_t addWindow(const std::string& title = "window") {
        const xcb_window_t window = client().createWindow();
        client().setTitle(window, title);
        client().show(window);
        client().activate(window);
        return window;
    }

    /// Lets a window say where it comes from.
    void claimProcess(xcb_window_t window, pid_t pid, const std::string& machine) {
        client().setNumber(window, client().ewmh()->_NET_WM_PID, XCB_ATOM_CARDINAL,
                           static_cast<std::uint32_t>(pid));
        client().setText(window, XCB_ATOM_WM_CLIENT_MACHINE, XCB_ATOM_STRING, machine);
    }

    std::vector<xcb_window_t> windowsOf(RunningApplication application) {
        std::vector<xcb_window_t> result;
        for (const ApplicationWindow& window : applications().windows(application)) {
            result.push_back(static_cast<xcb_window_t>(window.id));
        }
        return result;
    }
};

TEST_P(ApplicationsTest, BelongToTheProcessThatHasWindows) {
    const Terminal& xterm = desktop().addXterm("one");
    const Terminal& urxvt = desktop().addUrxvt("two");
    EXPECT_EQ(applications().ofProcess(xterm.owner), RunningApplication{xterm.owner});
    EXPECT_EQ(applications().ofProcess(urxvt.owner), RunningApplication{urxvt.owner});
    EXPECT_EQ(applications().ofProcess(getpid()), std::nullopt);
}

TEST_P(ApplicationsTest, BelongToTheNearestAncestorThatHasWindows) {
    const Terminal& urxvt = desktop().addUrxvt("terminal of a daemon");
    EXPECT_EQ(applications().ofProcess(urxvt.inside), RunningApplication{urxvt.owner});
    // From here on the test has a window too.
    addWindow();
    const Terminal& xterm = desktop().addXterm("terminal");
    EXPECT_EQ(applications().ofProcess(xterm.inside), RunningApplication{xterm.owner});
    ChildProcess helper(
        {"/bin/sh", {"sh", "-c", "sleep 1000 & echo $!; wait"}, {"PATH=/usr/bin:/bin"}, {}});
    const pid_t helpersHelper = std::stoi(helper.readLine());
    EXPECT_EQ(applications().ofProcess(helper.pid()), thisProcess());
    EXPECT_EQ(applications().ofProcess(helpersHelper), thisProcess());
}

TEST_P(ApplicationsTest, AreAbsentForProcessesWithoutWindows) {
    desktop().addXterm("other");
    const ChildProcess alone({"/bin/cat", {"cat"}, {}, {}});
    EXPECT_EQ(applications().ofProcess(alone.pid()), std::nullopt);
    for (const std::int32_t nobody : {1, 0, -1, 999'999'999}) {
        EXPECT_EQ(applications().ofProcess(nobody), std::nullopt) << nobody;
        EXPECT_THAT(applications().windows({nobody}), IsEmpty()) << nobody;
    }
}

TEST_P(ApplicationsTest, HaveNoWindowsThatAreTheDesktopsFurniture) {
    for (const xcb_atom_t type : {client().ewmh()->_NET_WM_WINDOW_TYPE_DESKTOP,
                                  client().ewmh()->_NET_WM_WINDOW_TYPE_DOCK}) {
        const xcb_window_t window = client().createWindow();
        client().setNumber(window, client().ewmh()->_NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM, type);
        client().setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, "furniture");
        client().show(window);
        EXPECT_EQ(applications().ofProcess(getpid()), std::nullopt);
        EXPECT_EQ(applications().withIdentifier("furniture"), std::nullopt);
        EXPECT_THAT(windowsOf(thisProcess()), IsEmpty());
    }
    EXPECT_THAT(windowsOf(thisProcess()), IsEmpty());
    const xcb_window_t dialog = client().createWindow();
    client().setNumber(dialog, client().ewmh()->_NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM,
                       client().ewmh()->_NET_WM_WINDOW_TYPE_DIALOG);
    client().show(dialog);
    EXPECT_THAT(windowsOf(thisProcess()), ElementsAre(dialog));
}

TEST_P(ApplicationsTest, AreNotJoinedByAStrangerThatClaimsTheirProcess) {
    const Terminal& terminal = desktop().addXterm("terminal");
    const xcb_window_t stranger = client().createWindow();
    claimProcess(stranger, terminal.owner, thisMachine());
    client().show(stranger);
    EXPECT_THAT(windowsOf({terminal.owner}), ElementsAre(terminal.window));
    EXPECT_THAT(windowsOf(thisProcess()), ElementsAre(stranger));
    client().activate(stranger);
    EXPECT_FALSE(applications().hasKeyboard({terminal.owner}));
    EXPECT_TRUE(applications().hasKeyboard(thisProcess()));
}

TEST_P(ApplicationsTest, ListTheirWindowsFromFrontToBack) {
    const xcb_window_t first = addWindow("first");
    const xcb_window_t second = addWindow("second");
    const xcb_window_t third = addWindow("third");
    EXPECT_THAT(applications().windows(thisProcess()),
                ElementsAre(ApplicationWindow{third, "third"}, ApplicationWindow{second, "second"},
                            ApplicationWindow{first, "first"}));
    client().activate(first);
    EXPECT_THAT(windowsOf(thisProcess()), ElementsAre(first, third, second));
}

TEST_P(ApplicationsTest, ListWindowsThatAreNotSeenLast) {
    const xcb_window_t first = addWindow();
    const xcb_window_t second = addWindow();
    const xcb_window_t third = addWindow();
    client().minimise(third);
    EXPECT_THAT(windowsOf(thisProcess()), ElementsAre(second, first, third));
    client().moveToDesktop(second, 1);
    EXPECT_EQ(windowsOf(thisProcess()).front(), first);
    client().showDesktop(1);
    EXPECT_EQ(windowsOf(thisProcess()).front(), second);
}

TEST_P(ApplicationsTest, ListTheirWindowsWhereTheManagerTellsNoOrder) {
    const Terminal& terminal = desktop().addXterm("terminal");
    const xcb_window_t older = addWindow();
    const xcb_window_t newer = addWindow();
    client().activate(older);
    desktop().manager->stop();
    xcb_delete_property(client().xcb(), client().root(),
                        client().ewmh()->_NET_CLIENT_LIST_STACKING);
    client().sync();
    EXPECT_THAT(windowsOf(thisProcess()), ElementsAre(newer, older));
    EXPECT_EQ(applications().ofProcess(terminal.inside), RunningApplication{terminal.owner});
    desktop().manager->goOn();
}

TEST_P(ApplicationsTest, NameTheirWindowsInUtf8) {
    const xcb_window_t window = client().createWindow();
    client().show(window);
    const auto title = [&] { return applications().windows(thisProcess()).at(0).title; };
    EXPECT_EQ(title(), std::nullopt);
    client().setText(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "caf\xE9");
    EXPECT_EQ(title(), "caf\u00E9");
    const xcb_atom_t compound = client().atom("COMPOUND_TEXT");
    client().setText(window, XCB_ATOM_WM_NAME, compound, "compound \xE9");
    EXPECT_EQ(title(), "compound \u00E9");
    client().setText(window, XCB_ATOM_WM_NAME, compound, "\x1B$(B\x46\x7C");
    EXPECT_EQ(title(), std::nullopt);
    client().setText(window, XCB_ATOM_WM_NAME, client().ewmh()->UTF8_STRING, "\u2014");
    EXPECT_EQ(title(), "\u2014");
    client().setText(window, XCB_ATOM_WM_NAME, client().atom("SOMETHING_ELSE"), "?");
    EXPECT_EQ(title(), std::nullopt);
    client().setText(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, "old");
    client().setTitle(window, "new \u2014 \xFF");
    EXPECT_EQ(title(), "new \u2014 \xFF");
    client().setNumber(window, client().ewmh()->_NET_WM_NAME, XCB_ATOM_CARDINAL, 1);
    EXPECT_EQ(title(), "old");
}

TEST_P(ApplicationsTest, NameTheirWindowsAtBearableLength) {
    const xcb_window_t window = addWindow(std::string(100'000, 'x'));
    EXPECT_THAT(applications().windows(thisProcess()),
                ElementsAre(ApplicationWindow{window, std::string(16'384, 'x')}));
}

TEST_P(ApplicationsTest, AreFoundByTheClassOfTheirWindows) {
    const Terminal& terminal = desktop().addXterm("terminal");
    const RunningApplication xterm{terminal.owner};
    for (const char* name : {"xterm", "XTerm", "XTERM", "com.apple.Terminal"}) {
        EXPECT_EQ(applications().withIdentifier(name), xterm) << name;
    }
    for (const char* name : {"", "xter", "xterm2", "com.googlecode.iterm2", "URxvt"}) {
        EXPECT_EQ(applications().withIdentifier(name), std::nullopt) << name;
    }
}

TEST_P(ApplicationsTest, AreFoundByTheirApplicationIds) {
    const xcb_window_t window = client().createWindow();
    client().setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, std::string("one\0Two\0", 8));
    client().show(window);
    EXPECT_EQ(applications().withIdentifier("org.gnome.Terminal"), std::nullopt);
    client().setText(window, client().atom("_GTK_APPLICATION_ID"), client().ewmh()->UTF8_STRING,
                     "org.gnome.Terminal");
    client().setText(window, client().atom("_KDE_NET_WM_DESKTOP_FILE"),
                     client().ewmh()->UTF8_STRING, "org.wezfurlong.wezterm");
    for (const char* name : {"org.gnome.Terminal", "ORG.GNOME.TERMINAL", "com.apple.Terminal",
                             "com.github.wez.wezterm", "org.wezfurlong.wezterm", "one", "two"}) {
        EXPECT_EQ(applications().withIdentifier(name), thisProcess()) << name;
    }
}

TEST_P(ApplicationsTest, AreNotFoundByAnEmptyName) {
    const xcb_window_t window = addWindow();
    for (const std::string& classes : {std::string(), std::string("\0\0", 2)}) {
        client().setText(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, classes);
        EXPECT_EQ(applications().withIdentifier(""), std::nullopt);
    }
}

TEST_P(ApplicationsTest, AreFoundByTheForemostOfTheirWindows) {
    const Terminal& first = desktop().addXterm("first");
    const Terminal& second = desktop().addXterm("second");
    EXPECT_EQ(applications().withIdentifier("xterm"), RunningApplication{second.owner});
    client().activate(first.window);
    EXPECT_EQ(applications().withIdentifier("xterm"), RunningApplication{first.owner});
}

TEST_P(ApplicationsTest, HaveTheKeyboardWhenOneOfTheirWindowsHas) {
    const Terminal& one = desktop().addUrxvt("one");
    const Terminal& two = desktop().addUrxvt("two");
    const Terminal& other = desktop().addXterm("other");
    EXPECT_FALSE(applications().hasKeyboard({one.owner}));
    for (const Terminal* terminal : {&one, &two}) {
        client().activate(terminal->window);
        EXPECT_TRUE(applications().hasKeyboard({one.owner}));
        EXPECT_FALSE(applications().hasKeyboard({other.owner}));
    }
}

TEST_P(ApplicationsTest, HaveTheKeyboardWhenAWindowWithinTheirsHas) {
    const xcb_window_t window = addWindow();
    const xcb_window_t inner = client().createWindow(client().createWindow(window));
    xcb_map_window(client().xcb(), client().parentOf(inner));
    xcb_map_window(client().xcb(), inner);
    client().setFocus(inner);
    ASSERT_EQ(client().focus(), inner);
    EXPECT_TRUE(applications().hasKeyboard(thisProcess()));
}

TEST_P(ApplicationsTest, HaveNoKeyboardWhenNoWindowHasIt) {
    addWindow();
    EXPECT_TRUE(applications().hasKeyboard(thisProcess()));
    // Or it would give the keyboard back at once.
    desktop().manager->stop();
    for (const xcb_window_t nobody :
         {xcb_window_t(XCB_NONE), xcb_window_t(XCB_INPUT_FOCUS_POINTER_ROOT), client().root()}) {
        client().setFocus(nobody);
        ASSERT_EQ(client().focus(), nobody);
        EXPECT_FALSE(applications().hasKeyboard(thisProcess())) << nobody;
    }
    desktop().manager->goOn();
}

TEST_P(ApplicationsTest, HaveNoKeyboardWhileAProgramHasTakenItWhole) {
    addWindow();
    ASSERT_TRUE(client().grabKeyboard());
    EXPECT_FALSE(applications().hasKeyboard(thisProcess()));
    client().ungrabKeyboard();
    EXPECT_TRUE(applications().hasKeyboard(thisProcess()));
}

TEST_P(ApplicationsTest, AreForgottenWhenTheyCloseBetweenTwoSteps) {
    Terminal& closing = desktop().addXterm("closing");
    const Terminal& other = desktop().addXterm("other");
    const auto application = applications().ofProcess(closing.owner);
    ASSERT_TRUE(application);
    const std::vector<ApplicationWindow> before = applications().windows(*application);
    ASSERT_THAT(before, SizeIs(1));
    desktop().close(closing);
    applications().activate(*application);
    EXPECT_THAT(applications().windows(*application), IsEmpty());
    applications().raise(before.front());
    EXPECT_FALSE(applications().hasKeyboard(*application));
    EXPECT_EQ(applications().ofProcess(closing.owner), std::nullopt);
    desktop().waitUntilTyped();
    EXPECT_TRUE(client().hasFocus(other.window));
    EXPECT_TRUE(applications().hasKeyboard({other.owner}));
}

/// Where the server does not tell which process a window belongs to.
class NamedProcessTest : public ApplicationsTest {
protected:
    std::vector<std::string> serverArguments() const override {
        return {"-extension", "X-Resource"};
    }
};

TEST_P(NamedProcessTest, IsBelievedOfAWindowFromThisMachine) {
    const xcb_window_t window = addWindow();
    claimProcess(window, 4'242, thisMachine());
    EXPECT_THAT(windowsOf({4'242}), ElementsAre(window));
    EXPECT_EQ(applications().ofProcess(getpid()), std::nullopt);
    claimProcess(window, getpid(), thisMachine());
    EXPECT_EQ(applications().ofProcess(getpid()), thisProcess());
}

TEST_P(NamedProcessTest, IsNotBelievedOfAWindowFromElsewhere) {
    const xcb_window_t window = addWindow();
    claimProcess(window, getpid(), thisMachine() + "x");
    EXPECT_EQ(applications().ofProcess(getpid()), std::nullopt);
    xcb_delete_property(client().xcb(), window, XCB_ATOM_WM_CLIENT_MACHINE);
    client().sync();
    EXPECT_EQ(applications().ofProcess(getpid()), std::nullopt);
}

TEST_P(NamedProcessTest, IsEnoughToJump) {
    const Terminal& wanted = desktop().addUrxvt("wanted");
    desktop().addUrxvt("other window");
    desktop().addXterm("other terminal");
    EXPECT_TRUE(desktop().jump(wanted, "/home/u/wanted"));
    desktop().waitForFront(wanted);
}

} // namespace

ON_EACH_WINDOW_MANAGER(ApplicationsTest);
ON_EACH_WINDOW_MANAGER(NamedProcessTest);

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/Buses.h"
#include "EndToEnd/EndToEndTest.h"
#include "EndToEnd/Sway.h"

#include "X11/WaitFor.h"

#include <iostream>

namespace sallowmere {
namespace {

constexpr const char* fieldName = "Prompt this session…";

/// Everything on a Wayland desktop: the panel by way of its X server, as the terminal may be too.
struct WaylandDesk {
    explicit WaylandDesk(const std::string& terminalName)
        : outside(server.display()), user(outside), terminals(server) {
        server.setLayout("us");
        user.moveTo(1'020, 764);
        sway = std::make_unique<Sway>(server, outside);
        inside = std::make_unique<XClient>(sway->display());
        home.addSession("lantern", "Lantern");
        terminal = &terminals.start(command(terminalName));
        program = std::make_unique<RunningPanel>(home, buses, Circumstances{sway->variables(), {}});
        panel = std::make_unique<PanelWindow>(*inside, user, *program);
    }

    std::vector<std::string> command(const std::string& terminalName) const {
        std::vector<std::string> words{"/usr/bin/env"};
        words.insert(words.end(), sway->variables().begin(), sway->variables().end());
        words.push_back("/usr/bin/" + terminalName);
        if (terminalName == "xterm") {
            words.insert(words.end(), {"-xrm", "*waitforwm: false", "-e"});
        }
        return words;
    }

    /// Waits until a key has come into the terminal, and returns all that came so far.
    std::string awaitKey() {
        const std::size_t before = terminal->received.size();
        while (terminal->received.size() == before) {
            terminals.readOne();
        }
        return terminal->received;
    }

    Buses buses;
    XServer server;
    XClient outside;
    User user;
    Terminals terminals;
    LiveHome home;
    std::unique_ptr<Sway> sway;
    std::unique_ptr<XClient> inside;
    Terminal* terminal = nullptr;
    std::unique_ptr<RunningPanel> program;
    std::unique_ptr<PanelWindow> panel;
};

/// By the terminal that the user is busy in.
class UnderSway : public testing::TestWithParam<std::string> {
protected:
    void SetUp() override {
        requirePrograms({"/usr/bin/Xvfb", "/usr/bin/sway", "/usr/bin/swaymsg", "/usr/bin/Xwayland",
                         "/usr/bin/" + GetParam(), "/usr/bin/dbus-daemon",
                         "/usr/libexec/at-spi-bus-launcher"});
        becomeOrdinaryUser();
        desk_ = std::make_unique<WaylandDesk>(GetParam());
        desk().sway->tell(focusing() + " focus");
    }

    void TearDown() override {
        if (HasFailure() && desk_) {
            std::cerr << desk_->server.log();
            if (desk_->panel && !desk_->program->hasEnded()) {
                std::cerr << desk_->panel->box() << '\n' << desk_->panel->tree().text();
            }
        }
    }

    WaylandDesk& desk() { return *desk_; }
    PanelWindow& panel() { return *desk_->panel; }

    /// Which window a command of sway's is for.
    static std::string focusing() {
        return GetParam() == "xterm" ? "[class=\"XTerm\"]" : "[app_id=\"foot\"]";
    }

    Box barPlace() {
        constexpr int width = 240;
        return {(Windows::screen(*desk().inside).width - width) / 2, 0, width, 30};
    }

    /// Clicks into the field, types, and gives the keyboard back.
    void typeIntoField(const std::string& text) {
        panel().click(fieldName, "text");
        // The compositor takes its time to pass the keyboard on, and tells nobody. When it is busy
        // with a window that fills the screen it may take it back: the user clicks again.
        int keys = 0;
        waitFor("the keyboard in the field", [&] {
            constexpr int keysBeforeNextClick = 200;
            if (++keys % keysBeforeNextClick == 0) {
                panel().click(fieldName, "text");
            }
            desk().user.type("x");
            return !textInField().empty();
        });
        desk().user.type(text);
        waitFor('"' + text + "\" in the field", [&] { return textInField().ends_with(text); });
        EXPECT_EQ(textInField().find_first_not_of('x'), textInField().size() - text.size());

        desk().user.tap(Keys::escape);
        waitFor("the field to lose the keyboard",
                [&] { return !AccessibleTree::isFocused(panel().tree().find(fieldName, "text")); });
    }

    std::string textInField() {
        return AccessibleTree::text(panel().tree().find(fieldName, "text"));
    }

    /// Types until the terminal has the keyboard again. It must not have seen any other key than
    /// those that were pressed while the keyboard was on its way.
    void expectKeyboardBack() {
        waitFor("the keyboard in the terminal", [&] {
            desk().user.type("b");
            return desk().terminals.hasMore();
        });
        while (!desk().awaitKey().ends_with('b')) {
        }
        EXPECT_EQ(desk().terminal->received.find_first_not_of("xb"), std::string::npos);
    }

private:
    std::unique_ptr<WaylandDesk> desk_;
};

TEST_P(UnderSway, TheBarHangsAtTheTopWithoutTheKeyboard) {
    EXPECT_EQ(panel().box(), barPlace());
    desk().user.type("a");
    EXPECT_EQ(desk().awaitKey(), "a");

    panel().enter();
    EXPECT_EQ(Windows::geometry(*desk().inside, panel().window()).y, 0);
    panel().click("Lantern, done");
    panel().tree().find(fieldName, "text");
    panel().waitForRest();
    EXPECT_TRUE(panel().isExpanded());
    desk().user.type("b");
    EXPECT_EQ(desk().awaitKey(), "ab");
    panel().leave();
    EXPECT_EQ(panel().box(), barPlace());
    desk().user.type("c");
    EXPECT_EQ(desk().awaitKey(), "abc");
}

TEST_P(UnderSway, TheFieldHasTheKeyboardFromAClickUntilEscape) {
    panel().enter();
    panel().click("Lantern, done");
    typeIntoField("fit");
    panel().leave();
    expectKeyboardBack();
}

TEST_P(UnderSway, AFullScreenCoversNothingOfIt) {
    desk().sway->tell(focusing() + " fullscreen enable");
    panel().enter();
    panel().click("Lantern, done");
    panel().tree().find(fieldName, "text");
    panel().leave();
    EXPECT_EQ(panel().box(), barPlace());
}

TEST_P(UnderSway, ItIsOnEveryWorkspace) {
    desk().sway->tell("workspace 2");
    panel().enter();
    panel().leave();
    EXPECT_EQ(panel().box(), barPlace());
}

INSTANTIATE_TEST_SUITE_P(, UnderSway, testing::Values("foot", "xterm"),
                         [](const auto& instance) { return instance.param; });

} // namespace
} // namespace sallowmere

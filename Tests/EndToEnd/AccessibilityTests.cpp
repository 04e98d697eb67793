// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/RunningSession.h"

#include <algorithm>
#include <set>

namespace sallowmere {
namespace {

using testing::AnyOf;
using testing::Contains;
using testing::IsEmpty;
using testing::IsSupersetOf;
using testing::Not;

/// A panel that shows all there is to click on.
class Accessibility : public RunningSession {
protected:
    void SetUp() override {
        RunningSession::SetUp();
        LiveSession quiet = desk().home.addSession("quiet", "Quiet");
        LiveSession planned = desk().home.addSession("planned", "Planned");
        planned.work();
        planned.plan("Paint it");
        session().ask("Which colour?", {"Amber", "Moss"});
        desk().home.requestPermission(session(), "Run the tests?");
        panel().enter();
        for (const char* name : {"Amber", "Allow", "Plan ready for review", "Quiet, done"}) {
            panel().tree().find(name);
        }
    }

    static bool isControl(const Control& control) {
        static const std::set<std::string> roles{"push button", "text", "menu item", "check box"};
        return roles.contains(control.role) || control.isFocusable;
    }

    std::vector<Control> controls() {
        std::vector<Control> all = panel().tree().shown();
        std::erase_if(all, [](const Control& control) { return !isControl(control); });
        return all;
    }
};

TEST_F(Accessibility, EveryControlHasARoleANameAPlaceAndAnAction) {
    panel().waitForRest();
    std::vector<std::string> names;
    for (const Control& control : controls()) {
        SCOPED_TRACE(control.role + " \"" + control.name + '"');
        EXPECT_THAT(control.name, Not(IsEmpty()));
        EXPECT_THAT(control.actions, Not(IsEmpty()));
        EXPECT_GT(control.box.width, 0);
        EXPECT_GT(control.box.height, 0);
        names.push_back(control.name);
    }
    EXPECT_THAT(names,
                IsSupersetOf({"Allow", "Always", "Deny", "Dismiss", "Amber", "Moss",
                              "Plan ready for review", "Lantern notes, waiting", "Quiet, done",
                              "Jump to this session's terminal", "Quit Sallowmere"}));
}

TEST_F(Accessibility, EveryTextIsReadable) {
    std::vector<std::string> names;
    for (const Control& control : panel().tree().shown()) {
        names.push_back(control.name);
    }
    EXPECT_THAT(names, IsSupersetOf({"Which colour?", "Run the tests?", "Claude asks", "Permission",
                                     "Paint it", "5h", "7d"}));
    // Of the waiting session that did something last, which within one tick of the clock is either.
    EXPECT_THAT(names, Contains(AnyOf("You: go on", "You: Pick a colour")));
}

} // namespace
} // namespace sallowmere

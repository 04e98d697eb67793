// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <QAccessible>

#include <map>

namespace sallowmere {
namespace {

using namespace Samples;
using testing::ElementsAre;
using testing::SizeIs;

class Accessibility : public ViewTest {
protected:
    static QAccessibleInterface& of(QObject& item) {
        QAccessibleInterface* found = QAccessible::queryAccessibleInterface(&item);
        if (!found) {
            throw std::logic_error("nothing to read");
        }
        return *found;
    }

    QAccessibleInterface& of(const char* name, std::size_t place = 0) const {
        return of(hand.find(QString::fromUtf8(name), place));
    }

    std::string nameOf(const char* item, std::size_t place = 0) const {
        return utf8(of(item, place).text(QAccessible::Name));
    }

    void press(const char* name, std::size_t place = 0) {
        QAccessibleActionInterface* actions = of(name, place).actionInterface();
        ASSERT_NE(actions, nullptr);
        ASSERT_TRUE(actions->actionNames().contains(QAccessibleActionInterface::pressAction()));
        actions->doAction(QAccessibleActionInterface::pressAction());
        stage.queue().advance(3);
        stage.settle();
    }

    /// Not among the children of any that a screen reader meets.
    bool isLeftOut(const char* name) const {
        const QQuickItem& item = hand.find(QString::fromUtf8(name));
        QAccessibleInterface* self = QAccessible::queryAccessibleInterface(&hand.find(name));
        for (QQuickItem* above = item.parentItem(); above; above = above->parentItem()) {
            QAccessibleInterface* parent = QAccessible::queryAccessibleInterface(above);
            if (parent && self && parent->indexOfChild(self) >= 0) {
                return false;
            }
        }
        return true;
    }

    void showAll() {
        SessionInfo shown = detailed(false);
        stage.scan({asking(), planning(), shown}, {request()}, {orphan("/home/u/scratch")});
        stage.state().toggleSelection(shown.id);
        stage.open();
    }
};

TEST_F(Accessibility, NamesThePanel) {
    stage.scan({working()});
    EXPECT_EQ(utf8(of(root()).text(QAccessible::Name)), "Sallowmere");
    EXPECT_EQ(stage.view().title(), "Sallowmere");
}

TEST_F(Accessibility, NamesEveryControl) {
    showAll();
    const std::map<std::string, std::string> expected{
        {"answer1", "Allow"},
        {"answer2", "Always"},
        {"answer3", "Deny"},
        {"dismiss", "Dismiss"},
        {"option", "PostgreSQL"},
        {"planCard", "Plan ready for review"},
        {"row", "Pick a database for the account service, waiting"},
        {"jump", "Jump to this session's terminal"},
        {"terminal", "Terminal"},
        {"send", "Send"},
        {"quit", "Quit Sallowmere"},
    };
    for (const auto& [item, name] : expected) {
        EXPECT_EQ(nameOf(item.c_str()), name);
        EXPECT_EQ(of(item.c_str()).role(), QAccessible::Button) << item;
        EXPECT_NE(of(item.c_str()).actionInterface(), nullptr) << item;
    }
    EXPECT_EQ(utf8(of("option", 1).text(QAccessible::Description)), "Types 2 in the terminal");
}

TEST_F(Accessibility, PressesControls) {
    showAll();
    press("option", 1);
    EXPECT_THAT(stage.keystrokes.typed, ElementsAre(2));
    press("answer3");
    EXPECT_FALSE(hand.has("approveCard"));
    EXPECT_EQ(stage.state().selectedSessionId(), "work");
    press("row");
    EXPECT_EQ(stage.state().selectedSessionId(), "ask");
    stage.applications.done.clear();
    press("jump");
    EXPECT_FALSE(stage.applications.done.empty());
}

TEST_F(Accessibility, OfTheFieldIsANameAndItsText) {
    showAll();
    QAccessibleInterface& field = of("prompt");
    EXPECT_EQ(field.role(), QAccessible::EditableText);
    EXPECT_EQ(utf8(field.text(QAccessible::Name)), "Prompt this session…");
    EXPECT_FALSE(stage.view().keyboard().isHeld());
    press("prompt");
    EXPECT_TRUE(stage.view().keyboard().isHeld());
    EXPECT_TRUE(hand.find("prompt").hasActiveFocus());
    hand.type("go");
    ASSERT_NE(field.textInterface(), nullptr);
    EXPECT_EQ(field.textInterface()->text(0, 2), "go");
    press("send");
    EXPECT_THAT(stage.prompts, SizeIs(1));
}

TEST_F(Accessibility, OfTheFieldTakesTheFocus) {
    showAll();
    of("prompt").actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
    stage.settle();
    EXPECT_TRUE(stage.view().keyboard().isHeld());
    EXPECT_TRUE(stage.state().editingPrompt());
}

TEST_F(Accessibility, ReadsTexts) {
    showAll();
    for (const char* name : {"message", "question", "hint", "activity", "logLabel", "footerText",
                             "processesHeading", "project"}) {
        EXPECT_EQ(nameOf(name), utf8(hand.text(name))) << name;
    }
    EXPECT_THAT(nameOf("plan"), testing::HasSubstr("Replace the map in Session"));
}

TEST_F(Accessibility, TellsTheStateOfTheBar) {
    stage.scan({working()});
    EXPECT_EQ(nameOf("beacon"), "1 session(s) working");
    EXPECT_EQ(nameOf("fiveHourPercent"), "62%");
}

TEST_F(Accessibility, LeavesOutWhatIsSaidElsewhere) {
    showAll();
    for (const char* name : {"number", "optionLabel", "title", "statusDot"}) {
        EXPECT_TRUE(isLeftOut(name)) << name;
    }
}

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"
#include "System/NewFileMask.h"

#include <filesystem>
#include <map>
#include <set>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::Pair;
using testing::UnorderedElementsAre;

std::set<fs::path> tree(const fs::path& root) {
    return {fs::recursive_directory_iterator(root), fs::recursive_directory_iterator()};
}

/// How the program starts and how it ends.
class Life : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown();
        desk().home.addSession("lantern", "Lantern");
    }

    void expectGoodEnd() {
        EXPECT_EQ(desk().program->waitForEnd().status, 0);
        EXPECT_EQ(desk().program->errors(), "");
    }

    void expectOneLine(const std::string& errors) {
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
};

TEST_F(Life, EndsByThePowerButton) {
    desk().startPanel().enter();
    desk().panel->click("Quit Sallowmere", "push button");
    expectGoodEnd();
}

TEST_F(Life, EndsByTheMenu) {
    desk().startPanel().enter();
    desk().user.clickOn(desk().panel->atRest("Lantern, done").box, User::Button::right);
    desk().panel->click("Quit Sallowmere", "menu item");
    expectGoodEnd();
}

TEST_F(Life, EndsWhenItIsToldTo) {
    desk().startPanel();
    desk().program->terminate();
    expectGoodEnd();
}

TEST_F(Life, EndsWithoutACrashWhenItsDisplayGoes) {
    desk().startPanel();
    desk().server.kill();
    EXPECT_EQ(desk().program->waitForEnd().signal, std::nullopt);
}

TEST_F(Life, StartsOnlyOnce) {
    desk().startPanel();
    const std::unique_ptr<RunningPanel> first = std::move(desk().program);
    desk().startProgram();
    EXPECT_EQ(desk().program->waitForEnd().status, 1);
    EXPECT_EQ(desk().program->errors(), "sallowmere: the panel is already running\n");
    EXPECT_FALSE(first->hasEnded());
}

TEST_F(Life, WritesToItsOwnDirectoryOnlyAndForTheUserAlone) {
    const NewFileMask everybody(0);
    const fs::path home = desk().home.directory().path();
    fs::remove_all(home / ".config");
    std::set<fs::path> others = tree(home);
    // What it complains about goes there.
    others.insert(home / "panel-errors");
    desk().startPanel().enter();
    desk().panel->atRest("Lantern, done");
    std::map<fs::path, fs::perms> written;
    for (const fs::path& path : tree(home)) {
        if (!others.contains(path)) {
            written[fs::relative(path, home)] = fs::status(path).permissions();
        }
    }
    const fs::perms file = fs::perms::owner_read | fs::perms::owner_write;
    EXPECT_THAT(written, UnorderedElementsAre(Pair(".config", fs::perms::owner_all),
                                              Pair(".config/sallowmere", fs::perms::owner_all),
                                              Pair(".config/sallowmere/panel.lock", file),
                                              Pair(".config/sallowmere/settings.json", file)));
}

TEST_F(Life, SaysThatItNeedsADisplay) {
    const RunningPanel program(desk().home, desk().buses, {});
    EXPECT_EQ(program.waitForEnd().status, 1);
    EXPECT_THAT(program.errors(), HasSubstr("--dump"));
    expectOneLine(program.errors());
}

} // namespace
} // namespace sallowmere

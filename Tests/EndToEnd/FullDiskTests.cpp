// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

using Files = std::map<std::string, std::string>;

std::string content(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The regular files of a directory and what is in them.
Files filesIn(const std::string& directory) {
    Files files;
    for (const auto& entry : fs::recursive_directory_iterator(directory)) {
        if (entry.is_regular_file() && !entry.is_symlink()) {
            files[entry.path().lexically_relative(directory)] = content(entry.path());
        }
    }
    return files;
}

/// The home is on a disk on which nothing is free.
class FullDisk : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown();
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        session_->work("Pick a colour");
    }

    PanelWindow& panel() { return *desk().panel; }
    LiveSession& session() { return *session_; }
    const TemporaryHome& home() { return desk().home.directory(); }

    void start() {
        desk().startPanel({{}, {SALLOWMERE_PRIVATE_MOUNTS, "--full", home().path()}});
        panel().enter();
        panel().tree().find("Lantern, working");
    }

    /// What the panel has in its home, without what only the test put there.
    Files filesSeen() {
        Files files = filesIn(seen());
        EXPECT_EQ(files.erase("ballast") + files.erase("panel-errors"), 2U);
        return files;
    }

    /// The home as the panel sees it.
    std::string seen(const std::string& relative = {}) {
        return "/proc/" + std::to_string(desk().program->pid()) + "/root" + home() / relative;
    }

    void makeRoom() { fs::remove(seen("ballast")); }
    /// What the session has written since gets to where the panel sees it.
    void passOn() {
        const std::string transcript =
            ".claude/projects/-work-lantern/" + session().id() + ".jsonl";
        fs::copy_file(home() / transcript, seen(transcript), fs::copy_options::overwrite_existing);
    }

private:
    std::unique_ptr<LiveSession> session_;
};

TEST_F(FullDisk, IsShownAsItIsAndLeftSo) {
    const Files before = filesIn(home().path());
    start();
    EXPECT_EQ(filesSeen(), before);

    makeRoom();
    session().finish();
    passOn();
    panel().tree().find("Lantern, done");
    EXPECT_EQ(desk().program->errors(), "");
}

TEST_F(FullDisk, GetsNoHalfSettingsFile) {
    const std::string settings = ".config/sallowmere/settings.json";
    fs::remove(home() / settings);
    const Files before = filesIn(home().path());
    start();
    EXPECT_EQ(filesSeen(), before);
}

TEST_F(FullDisk, LetsARequestBeDismissed) {
    const std::string request = desk().home.requestPermission(session(), "Run the tests?");
    start();
    panel().click("Dismiss", "push button");
    panel().tree().waitUntilGone("Run the tests?");
    EXPECT_FALSE(fs::exists(seen() + request.substr(home().path().size() + 1)));
}

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// First, because GLib has to be included before Qt.
#include "Desktop/PrivateBus.h"

#include "Desktop/Daemon.h"
#include "Desktop/SoundServer.h"
#include "EndToEnd/EndToEndTest.h"
#include "X11/WaitFor.h"

#include <filesystem>

namespace sallowmere {
namespace {

/// What the panel uses of a desktop besides its display ends while it runs.
class LostServices : public EndToEndTest {
protected:
    void SetUp() override {
        sitDown();
        session_ = std::make_unique<LiveSession>(desk().home.addSession("lantern", "Lantern"));
        session_->work("Pick a colour");
        desk().home.directory().write(".config/sallowmere/settings.json",
                                      R"({"usageAPIEnabled":true,"soundsEnabled":true})");
        ASSERT_EQ(keyring_->readLine(), "ready");
        // On that bus nothing tells where assistive programs are, so that this sees windows alone.
        desk().startPanel({{"DBUS_SESSION_BUS_ADDRESS=" + bus_.address(),
                            "PULSE_SERVER=" + SoundServer::address(services_)},
                           {}});
        // The panel has looked for its item on the bus, and before that for sessions.
        ASSERT_EQ(keyring_->readLine(), "SearchItems");
    }

    PanelWindow& panel() { return *desk().panel; }
    LiveSession& session() { return *session_; }

    /// The panel has made a sound.
    void waitForSound() {
        waitFor("the panel at the sound server", [this] {
            return sounds_->control({"list", "clients"}).find("Sallowmere") != std::string::npos;
        });
    }

    void endBus() { bus_.end(); }
    void killKeyring() { keyring_.reset(); }
    void killSoundServer() { sounds_.reset(); }

    /// The panel tells of news as ever, opens for the pointer and ends when it is told to.
    void expectLife() {
        desk().home.requestPermission(session(), "Run the tests?");
        panel().waitUntilExpanded();
        panel().waitUntilCollapsed();
        panel().enter();
        panel().leave();
        // GLib may have said that it was interrupted.
        desk().program->terminate();
        EXPECT_EQ(desk().program->waitForEnd().status, 0);
    }

private:
    TemporaryHome services_;
    PrivateBus bus_{services_};
    std::unique_ptr<ChildProcess> keyring_ =
        startDaemon(services_, {SALLOWMERE_SECRET_SERVICE_STAND_IN, bus_.address(), "open"});
    std::unique_ptr<SoundServer> sounds_ = std::make_unique<SoundServer>(services_);
    std::unique_ptr<LiveSession> session_;
};

TEST_F(LostServices, TheSessionBusIsNotMissed) {
    endBus();
    expectLife();
}

TEST_F(LostServices, TheKeyringIsNotMissed) {
    killKeyring();
    expectLife();
}

TEST_F(LostServices, TheSoundServerIsNotMissed) {
    session().ask("Which colour?", {"Amber", "Moss"});
    panel().waitUntilExpanded();
    waitForSound();
    panel().waitUntilCollapsed();
    killSoundServer();
    expectLife();
}

using DeletedHome = EndToEndTest;

TEST_F(DeletedHome, ThatIsMadeAgainIsShownAgain) {
    sitDown();
    desk().home.addSession("lantern", "Lantern");
    const std::string home = desk().home.directory().path();
    desk().startPanel().enter();
    desk().panel->tree().find("Lantern, done");
    std::filesystem::remove_all(home);
    desk().panel->tree().waitUntilGone("Lantern, done");
    desk().panel->leave();
    desk().panel->enter();
    std::filesystem::create_directory(home);
    desk().home.addSession("moss", "Moss");
    desk().panel->tree().find("Moss, done");
    desk().program->terminate();
    EXPECT_EQ(desk().program->waitForEnd().status, 0);
}

} // namespace
} // namespace sallowmere

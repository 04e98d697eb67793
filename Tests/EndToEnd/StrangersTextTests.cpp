// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "EndToEnd/EndToEndTest.h"

#include "X11/WaitFor.h"

#include <cstdint>
#include <map>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace sallowmere {
namespace {

/// A port on this machine that nobody has a reason to connect with.
class LurePort {
public:
    LurePort() : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), size), 0);
        EXPECT_EQ(listen(socket_, 1), 0);
        EXPECT_EQ(getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size), 0);
        url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/picture.png";
    }
    LurePort(const LurePort&) = delete;
    LurePort& operator=(const LurePort&) = delete;
    ~LurePort() { close(socket_); }

    const std::string& url() const { return url_; }
    bool wasVisited() const {
        pollfd connection{socket_, POLLIN, 0};
        return poll(&connection, 1, 0) != 0;
    }

private:
    int socket_;
    std::string url_;
};

/// Texts that strangers wrote, in the panel.
class StrangersText : public EndToEndTest {
protected:
    void SetUp() override { sitDown(); }

    PanelWindow& panel() { return *desk().panel; }

    /// How many pixels of a control differ from most of it. Text that is nothing but markup leaves
    /// none if it is taken for markup.
    int inkOf(const Control& control) {
        std::map<std::uint32_t, int> colors;
        int most = 0;
        for (int y = control.box.y; y < control.box.bottom(); ++y) {
            for (int x = control.box.x; x < control.box.right(); ++x) {
                most = std::max(most, ++colors[Windows::pixel(desk().client, x, y)]);
            }
        }
        return control.box.width * control.box.height - most;
    }

    void expectDrawn(const std::string& text) {
        SCOPED_TRACE(text);
        const Control control = panel().atRest(text, "label");
        EXPECT_GT(inkOf(control), 20);
    }
};

TEST_F(StrangersText, MarkupIsDrawnAsItIsWritten) {
    const std::string bold = "<b></b><i></i>";
    LiveSession session = desk().home.addSession("lantern", bold);
    session.work();
    desk().startPanel();
    panel().enter();
    panel().tree().find(bold + ", working");
    session.finish();
    expectDrawn(bold);
    desk().home.requestPermission(session, "<s></s><u></u>");
    expectDrawn("<s></s><u></u>");
    session.work();
    session.ask("<table></table>", {"<hr/>"});
    expectDrawn("<table></table>");
    panel().tree().find("<hr/>", "push button");
}

TEST_F(StrangersText, APlanLoadsNothingAndLeadsNowhere) {
    const LurePort lure;
    LiveSession session = desk().home.addSession("lantern", "Lantern");
    session.work();
    session.plan("Look at ![this](" + lure.url() + ") and <img src=\"" + lure.url()
                 + "\"> and [that](" + lure.url() + ") now");
    desk().startPanel();
    panel().enter();
    panel().tree().find("Plan ready for review", "heading");
    // Two refreshes later it would have been loaded.
    session.takeAnswer();
    panel().tree().find("Lantern, working");
    session.finish();
    panel().tree().find("Lantern, done");
    EXPECT_FALSE(lure.wasVisited());
}

} // namespace
} // namespace sallowmere

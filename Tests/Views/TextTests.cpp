// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Views/ViewTest.h"

#include <chrono>

namespace sallowmere {
namespace {

using namespace std::chrono_literals;
using namespace Samples;
using testing::Contains;

class Texts : public ViewTest {
protected:
    /// All that is to read, wherever it stands.
    std::vector<std::string> read() {
        std::vector<std::string> texts;
        collect(*stage.view().contentItem(), texts);
        return texts;
    }

private:
    static void collect(const QQuickItem& item, std::vector<std::string>& texts) {
        if (!item.isVisible()) {
            return;
        }
        if (item.inherits("QQuickText")) {
            texts.push_back(utf8(item.property("text").toString()));
        }
        for (const QQuickItem* child : item.childItems()) {
            collect(*child, texts);
        }
    }
};

TEST_F(Texts, SayThatThereAreNoSessions) {
    showOpen({});
    EXPECT_EQ(hand.text("noSessions"), "No active Claude Code sessions");
    EXPECT_FALSE(hand.has("processesHeading"));
    stage.scan({idle()});
    EXPECT_FALSE(hand.has("noSessions"));
}

TEST_F(Texts, OfCards) {
    SessionInfo done = session("done", "Add retry", SessionStatus::working, 2s);
    stage.scan({done});
    done.status = SessionStatus::done;
    showOpen({asking(), planning(), done}, {request()});
    const auto texts = read();
    for (const char* text : {"Add retry", "Finished — click to jump", "Permission",
                             "Bash: npm test -- LoginForm --watch=false", "Allow", "Always", "Deny",
                             "Claude asks", "Which database should the new service use?", "1",
                             "PostgreSQL", "2", "SQLite, one file per user", "3",
                             "Keep the JSON files", "Click an option to answer in the terminal",
                             "Plan ready for review", "Approve in the terminal — click to jump"}) {
        EXPECT_THAT(texts, Contains(text));
    }
}

TEST_F(Texts, SayWhereAnOptionLeadsWhenItCannotBeTyped) {
    stage.keystrokes.trusted = false;
    showOpen({asking()});
    EXPECT_EQ(utf8(hand.text("hint")),
              "Click an option to jump — grant Accessibility to answer from here");
    EXPECT_EQ(hand.find("option").property("help"), "Jump to this session's terminal");
}

TEST_F(Texts, OfButtonsThatTypeSaySo) {
    showOpen({asking(), working()}, {request()});
    EXPECT_EQ(hand.find("option", 2).property("help"), "Types 3 in the terminal");
    EXPECT_EQ(hand.find("answer3").property("help"), "Types 3 in the terminal");
}

TEST_F(Texts, OfOptionsThatNoKeyStandsForSayThatTheyLeadThere) {
    SessionInfo asks = asking();
    asks.ask->options = QStringList(10, QStringLiteral("Keep it"));
    stage.scan({asks});
    stage.open();
    EXPECT_EQ(hand.find("option", 8).property("help"), "Types 9 in the terminal");
    EXPECT_EQ(hand.find("option", 9).property("help"), "Jump to this session's terminal");
}

TEST_F(Texts, OfRowsAndFigures) {
    showOpen({asking(), idle()}, {}, {orphan("/home/u/scratch")});
    const auto texts = read();
    for (const char* text : {"Pick a database for the account service",
                             "accounts",
                             "3%",
                             "Opus",
                             "You: choose something we can run without an administrator",
                             "Asks: Which database should the new service use?",
                             "2/5",
                             "Read the release notes and say what concerns us",
                             "Haiku",
                             "ALSO RUNNING",
                             "scratch",
                             "pid 4242",
                             "0%",
                             "3h12m",
                             "5h",
                             "62%",
                             "2h14m",
                             "7d",
                             "40%",
                             "81h5m",
                             "Fable",
                             "84%"}) {
        EXPECT_THAT(texts, Contains(text));
    }
    EXPECT_EQ(hand.find("chip").property("help").toString(), "claude running · pid 5120");
    EXPECT_EQ(hand.find("jump").property("help"), "Jump to this session's terminal");
    EXPECT_EQ(hand.find("quit").property("help"), "Quit Sallowmere");
    EXPECT_EQ(hand.text("footerText"), stage.model().usage().footer);
}

TEST_F(Texts, OfDetails) {
    showDetails(detailed(false));
    EXPECT_EQ(hand.find("prompt").property("placeholderText").toString(), "Prompt this session…");
    EXPECT_EQ(hand.find("terminal").property("caption"), "Terminal");
    EXPECT_EQ(hand.find("terminal").property("help"), "Open this session's terminal window");
    EXPECT_FALSE(hand.has("promptState"));
    EXPECT_EQ(hand.text("logLabel", 1),
              "The button ignores the pending state. I will pass it down.");
    stage.model().sendPrompt("work", "go");
    stage.settle();
    EXPECT_EQ(utf8(hand.text("promptState")),
              "Running headlessly — response will appear as the active session");
    stage.prompts.at(0).completion(QStringLiteral("it failed"));
    stage.settle();
    EXPECT_EQ(hand.text("promptState"), "it failed");
}

TEST_F(Texts, OfDetailsInATerminal) {
    showDetails(detailed(true));
    EXPECT_EQ(utf8(hand.text("activeNote")), "Session is active in the terminal — prompt it there");
    EXPECT_FALSE(hand.has("prompt"));
    EXPECT_EQ(hand.find("terminal").property("caption"), "kitty");
}

TEST_F(Texts, OfDetailsWithoutALog) {
    showDetails(idle());
    EXPECT_EQ(hand.text("noLog"), "No recent activity");
}

TEST_F(Texts, StayWithinThePanelHoweverLong) {
    const QString endless = QString(10'000, u'W');
    SessionInfo info = asking();
    info.title = info.projectName = info.modelBadge = endless;
    info.lastPrompt = info.activity = endless;
    info.ask->question = endless;
    info.ask->options = {endless};
    info.plan = endless;
    info.events = {LogEvent{"1", LogEvent::Kind::tool, endless, {}, {}}};
    info.process->terminalName = endless;
    PermissionRequest asked = request();
    asked.message = endless;
    stage.scan({info}, {asked}, {orphan(("/" + endless).toUtf8().constData())});
    stage.state().toggleSelection(info.id);
    stage.open();
    for (const char* name : {"title", "project", "lastPrompt", "activity", "optionLabel",
                             "question", "message", "name", "logLabel", "plan", "terminal"}) {
        const QRectF ground = PanelHand::place(hand.find("ground"));
        for (const QQuickItem* item : hand.all(QString::fromUtf8(name))) {
            const QRectF place = PanelHand::place(*item);
            EXPECT_GE(place.left(), ground.left()) << name;
            EXPECT_LE(place.right(), ground.right()) << name;
            EXPECT_LE(item->property("contentWidth").toDouble(), item->width() + 1) << name;
        }
    }
    EXPECT_EQ(hand.find("title").property("truncated"), true);
    EXPECT_LE(PanelHand::place(hand.find("badge")).right(), 664 - 22);
    EXPECT_GE(PanelHand::place(hand.find("badge")).left(), 22);
}

TEST_F(Texts, OfOneLineStayOnIt) {
    SessionInfo info = asking();
    info.title = QStringLiteral("one\ntwo\u2028three\u2029four");
    info.activity = info.lastPrompt = info.title;
    showOpen({info}, {}, {orphan("/home/u/a\nb")});
    for (const char* name : {"title", "activity", "lastPrompt", "name"}) {
        EXPECT_EQ(hand.find(name).property("lineCount").toInt(), 1) << name;
        EXPECT_LT(hand.find(name).height(), 24) << name;
    }
}

TEST_F(Texts, OfPathsLoseTheirMiddle) {
    SessionInfo info = working();
    info.projectName = QStringLiteral("a-very-long-name-").repeated(9);
    showOpen({info}, {}, {orphan("/home/u/scratch")});
    EXPECT_EQ(hand.find("project").property("elide").toInt(), Qt::ElideMiddle);
    EXPECT_EQ(hand.find("name").property("elide").toInt(), Qt::ElideMiddle);
    EXPECT_EQ(hand.find("project").property("truncated"), true);
}

TEST_F(Texts, KeepTheirSideWhicheverWayTheyRead) {
    showOpen({titled("a", "إصلاح نموذج تسجيل الدخول", 1s), titled("b", "修复登录表单", 2s)}, {},
             {orphan("/home/u/שלום")});
    for (const char* name : {"title", "name"}) {
        for (const QQuickItem* item : hand.all(QString::fromUtf8(name))) {
            EXPECT_EQ(item->property("effectiveHorizontalAlignment").toInt(), Qt::AlignLeft);
        }
    }
    EXPECT_EQ(PanelHand::place(hand.find("title", 0)).left(),
              PanelHand::place(hand.find("title", 1)).left());
}

TEST_F(Texts, OfStrangersAreNoMarkupAndReorderNothing) {
    const QString sly = QStringLiteral("<b>x</b> \u202Eevil\u2066\u2067 [y](http://z)");
    SessionInfo info = asking();
    info.title = info.ask->question = sly;
    info.ask->options = {sly};
    PermissionRequest asked = request();
    asked.message = sly;
    showOpen({info}, {asked});
    for (const char* name : {"title", "question", "optionLabel", "message"}) {
        EXPECT_EQ(hand.text(name), "<b>x</b> �evil�� [y](http://z)") << name;
        EXPECT_EQ(hand.find(name).property("textFormat").toInt(), Qt::PlainText) << name;
    }
    // An item of its own, beside the label.
    EXPECT_EQ(hand.text("number"), "1");
    EXPECT_LT(PanelHand::place(hand.find("number")).right(),
              PanelHand::place(hand.find("optionLabel")).left());
}

TEST_F(Texts, OfAnyCharactersFit) {
    const QString zalgo = QStringLiteral("Z\u0301\u0302\u0316\u0323").repeated(300);
    for (const QString& odd :
         {QStringLiteral("\x1B]0;sly\x07\x1B[2J\u009B31m"),
          QStringLiteral("one\ntwo\r\nthree\tfour"), QStringLiteral("\u202E").repeated(80),
          QStringLiteral("\u2028\u2029\u0085x"), zalgo, QString(80, QChar(u'\0'))}) {
        SCOPED_TRACE(utf8(odd));
        SessionInfo info = asking();
        info.title = info.projectName = odd;
        info.lastPrompt = info.activity = info.ask->question = odd;
        info.ask->options = {odd, odd};
        showOpen({info, titled("other", qPrintable(odd), 1s)});
        for (const char* name : {"title", "optionLabel", "lastPrompt", "activity"}) {
            EXPECT_LE(PanelHand::place(hand.find(name)).right(), stage.view().width()) << name;
        }
    }
}

TEST_F(Texts, OfEndlessLengthAreShownAsFarAsTheyFit) {
    const QString endless(10'000'000, u'x');
    SessionInfo info = asking();
    info.title = info.ask->question = endless;
    info.lastPrompt = info.activity = info.projectName = endless;
    info.plan = endless;
    info.ask->options = {endless};
    PermissionRequest asked = request();
    asked.message = endless;
    showOpen({info}, {asked});
    for (const char* name : {"title", "question", "optionLabel", "message"}) {
        EXPECT_LT(hand.text(name).size(), 2'100U) << name;
        EXPECT_LE(PanelHand::place(hand.find(name)).right(), stage.view().width()) << name;
    }
}

} // namespace
} // namespace sallowmere

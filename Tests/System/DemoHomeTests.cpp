// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Sallowmere/Sessions/SessionScanner.h"
#include "Sallowmere/Text/Json.h"
#include "Sallowmere/Usage/UsageCalculator.h"
#include "System/DemoHome.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

#include <algorithm>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Gt;
using testing::HasSubstr;
using testing::Lt;
using testing::SizeIs;

const QString tides = QStringLiteral("Fix the tide table around midnight 🌊");
const QString search = QStringLiteral("Choisir l'index de recherche des cahiers d'e\u0301te\u0301");
const QString seasons = QStringLiteral("خطة مواسم البستان 🍎");
const QString hours = QStringLiteral("Öffnungszeiten an Feiertagen 👩🏽‍🌾");
const QString gauges = QStringLiteral("潮位データ十年分の取り込み");

std::vector<SessionInfo> sessionsOf(const DemoHome& home) {
    const LinuxFileSystem files;
    return SessionScanner(files).scan(Settings::load(files, home.path()), linuxClock()());
}

/// The session with that title; an empty one when there is none.
SessionInfo sessionOf(const DemoHome& home, const QString& title) {
    const std::vector<SessionInfo> sessions = sessionsOf(home);
    const auto found = std::find_if(sessions.begin(), sessions.end(),
                                    [&](const SessionInfo& s) { return s.title == title; });
    return found == sessions.end() ? SessionInfo() : *found;
}

void expectWholeLinesOfJson(const DemoHome& home) {
    JsonReader reader;
    for (const QString& path : home.transcripts()) {
        const QByteArray content = contentOf(path);
        EXPECT_TRUE(content.endsWith('\n')) << path.toStdString();
        EXPECT_FALSE(QString::fromUtf8(content).contains(QChar::ReplacementCharacter));
        for (const QByteArray& line : linesOf(content)) {
            EXPECT_TRUE(reader.object(line.toStdString())) << line.left(300).toStdString();
        }
    }
}

TEST(DemoHome, HasASessionInEachState) {
    struct Expected {
        SessionStatus status;
        QString title;
        const char* badge;
        const char* project;
        const char* activity;
    };
    const std::vector<Expected> expected{
        {SessionStatus::working, tides, "Opus", "harbour-app",
         "Running cmake --build build && ctest --test-dir build -R…"},
        {SessionStatus::waiting, search, "Sonnet", "lantern-notes",
         "Asks: Quel moteur de recherche pour les cahiers ? 🔎"},
        {SessionStatus::waiting, seasons, "Fable", "orchard.planner", "Plan ready for review"},
        {SessionStatus::done, hours, "Haiku", "Gärtnerei Mühlbach", "Done — click to jump"},
        {SessionStatus::idle, gauges, "Opus", "harbour-app", ""},
    };
    const DemoHome home;
    const std::vector<SessionInfo> sessions = sessionsOf(home);
    ASSERT_THAT(sessions, SizeIs(expected.size()));
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].title.toStdString());
        EXPECT_EQ(sessions[i].status, expected[i].status);
        EXPECT_EQ(sessions[i].title, expected[i].title);
        EXPECT_EQ(sessions[i].modelBadge, QLatin1String(expected[i].badge));
        EXPECT_EQ(sessions[i].projectName, QString::fromUtf8(expected[i].project));
        EXPECT_EQ(sessions[i].activity.value_or(QString()),
                  QString::fromUtf8(expected[i].activity));
    }
}

TEST(DemoHome, AsksAQuestionWithThreeOptions) {
    const DemoHome home;
    const AskQuestion expected{QStringLiteral("Quel moteur de recherche pour les cahiers ? 🔎"),
                               {QStringLiteral("SQLite FTS5"),
                                QStringLiteral("Un index « maison »"),
                                QStringLiteral("Aucun : \"grep\" suffit")}};
    EXPECT_EQ(sessionOf(home, search).ask, expected);
}

TEST(DemoHome, PresentsAPlanInMarkdown) {
    const DemoHome home;
    const std::string plan = sessionOf(home, seasons).plan.value_or(QString()).toStdString();
    EXPECT_THAT(plan, testing::StartsWith("# Seasons for the orchard\n\n1. **Model**: a `Season`"));
    EXPECT_THAT(plan, HasSubstr("\n| week | work |\n| --- | --- |\n"));
}

TEST(DemoHome, CountsTodos) {
    const DemoHome home;
    EXPECT_EQ(sessionOf(home, tides).todo, (TodoProgress{2, 4}));
    EXPECT_EQ(sessionOf(home, search).todo, (TodoProgress{1, 3}));
    EXPECT_EQ(sessionOf(home, hours).todo, (TodoProgress{3, 3}));
    EXPECT_EQ(sessionOf(home, seasons).todo, std::nullopt);
}

TEST(DemoHome, TakesPromptsFromTheUserOnly) {
    const DemoHome home;
    EXPECT_EQ(sessionOf(home, search).lastPrompt,
              QStringLiteral("Commence par la normalisation, la recherche ensuite."));
    EXPECT_EQ(sessionOf(home, gauges).lastPrompt,
              QStringLiteral("欠けている時間を年ごとの表にしてください。"));
}

TEST(DemoHome, ListsNoSubAgents) {
    const DemoHome home;
    QStringList agents = home.transcripts().filter(QStringLiteral("/agent-"));
    EXPECT_THAT(agents.filter(QStringLiteral("/subagents/")), SizeIs(1));
    EXPECT_THAT(agents, SizeIs(2));
    for (const SessionInfo& session : sessionsOf(home)) {
        EXPECT_FALSE(session.id.contains(QStringLiteral("/agent-")));
    }
}

TEST(DemoHome, HoldsWholeLinesOfJson) {
    expectWholeLinesOfJson(DemoHome());
}

TEST(DemoHome, HoldsEveryKindOfLine) {
    const DemoHome home;
    QByteArray all;
    for (const QString& path : home.transcripts()) {
        all += contentOf(path);
    }
    for (const char* mark : {
             R"("type":"user","message":{"role":"user","content":")",
             R"("type":"user","message":{"role":"user","content":[{"tool_use_id":")",
             R"("isMeta":true,"type":"user")",
             R"("isCompactSummary":true,"type":"user")",
             R"("content":"<command-name>)",
             R"("text":"[Request interrupted by user]")",
             R"("type":"thinking")",
             R"("type":"system","subtype":"stop_hook_summary")",
             R"("type":"system","subtype":"turn_duration")",
             R"("type":"system","subtype":"compact_boundary")",
             R"({"type":"ai-title","aiTitle":)",
             R"("type":"progress")",
             R"({"type":"file-history-snapshot")",
             R"({"type":"summary")",
             R"({"type":"queue-operation")",
             R"("type":"attachment")",
             R"({"type":"last-prompt")",
             R"({"type":"mode")",
             R"({"type":"permission-mode")",
             R"("name":"TodoWrite")",
             R"("name":"Read")",
             R"("name":"Edit")",
             R"("name":"Bash")",
             R"("name":"Grep")",
             R"("name":"Agent")",
             R"("name":"WebFetch")",
             R"("isSidechain":true)",
         }) {
        EXPECT_TRUE(all.contains(mark)) << mark;
    }
    EXPECT_FALSE(all.contains("\": ")) << "no blank follows a key's colon";
}

TEST(DemoHome, HasALargeTranscriptAmongTheListed) {
    const DemoHome home;
    EXPECT_GT(QFileInfo(sessionOf(home, gauges).id).size(), 2 * 1'024 * 1'024);
}

TEST(DemoHome, KeepsFilesFromOtherUsers) {
    const DemoHome home;
    QStringList paths = home.transcripts();
    paths << home.file(".claude/.credentials.json")
          << home.file(".config/sallowmere/settings.json");
    for (const QString& path : paths) {
        EXPECT_EQ(QFile::permissions(path)
                      & (QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther
                         | QFile::ExeOwner),
                  QFile::Permissions())
            << path.toStdString();
        EXPECT_TRUE(QFile::permissions(path) & QFile::WriteOwner) << path.toStdString();
    }
    EXPECT_TRUE(QDir(home.file(".config/sallowmere/notifications")).isEmpty());
}

TEST(DemoHome, HasCredentialsThatExpireInAnHour) {
    const DemoHome home;
    JsonReader reader;
    const std::string text = contentOf(home.file(".claude/.credentials.json")).toStdString();
    const JsonObject blob =
        reader.object(text).value_or(JsonObject()).object("claudeAiOauth").value_or(JsonObject());
    EXPECT_EQ(blob.string("accessToken"), "demo-not-a-token");
    const double now = secondsBetween(Timestamp(), linuxClock()());
    EXPECT_THAT(blob.number("expiresAt").value_or(0) / 1'000, AllOf(Gt(now), Lt(now + 3'601)));
}

/// The assistant's name for the directory of a project.
QString encoded(QString directory) {
    for (QChar& unit : directory) {
        const bool isPlain = unit.unicode() < 128 && unit.isLetterOrNumber();
        unit = isPlain ? unit : QChar(u'-');
    }
    return directory;
}

TEST(DemoHome, NamesProjectsAfterWorkingDirectoriesThatExist) {
    const DemoHome home(QStringLiteral(" a\"b\\c & ünï_日本😀"));
    for (const SessionInfo& session : sessionsOf(home)) {
        const QString cwd = session.cwd.value_or(QString());
        EXPECT_TRUE(cwd.startsWith(home.file("code/"))) << cwd.toStdString();
        EXPECT_TRUE(QFileInfo(cwd).isDir()) << cwd.toStdString();
        EXPECT_EQ(QFileInfo(session.id).dir().dirName(), encoded(cwd));
    }
    EXPECT_THAT(sessionsOf(home), SizeIs(5));
    expectWholeLinesOfJson(home);
}

TEST(DemoHome, CountsEachMessageOnceAndSubAgentsToo) {
    const DemoHome home;
    const LinuxFileSystem files;
    Settings settings = Settings::load(files, home.path());
    settings.weeklyResetDate.reset();
    const UsageSnapshot usage = UsageCalculator(files).compute(settings, linuxClock()());

    const MessageWeights all = weighMessages(home.transcripts());
    EXPECT_NEAR(usage.weekly.weightedTokens, all.once, 0.01);
    EXPECT_NEAR(usage.weeklyFable.value_or(UsageWindow()).weightedTokens, all.fableOnce, 0.01);

    EXPECT_LT(all.once, all.everyLine) << "messages repeat";
    QStringList withoutAgents = home.transcripts();
    withoutAgents.removeIf([](const QString& path) { return path.contains("/agent-"); });
    EXPECT_LT(weighMessages(withoutAgents).once, all.once) << "sub-agents have usage of their own";
}

TEST(DemoHome, SpreadsItsUsageOverSixDaysOfBlocks) {
    const DemoHome home;
    const std::vector<QDateTime> times = weighMessages(home.transcripts()).times;
    int blocks = 0;
    QDateTime end = times.front();
    for (const QDateTime& time : times) {
        if (time >= end) {
            ++blocks;
            end = time.addSecs(qint64{5} * 3'600);
        }
    }
    EXPECT_EQ(blocks, 8);
    EXPECT_THAT(times.front().daysTo(QDateTime::currentDateTimeUtc()), AllOf(Gt(4), Lt(7)));
}

TEST(DemoHome, UsesPartOfEachAllowance) {
    const DemoHome home;
    const LinuxFileSystem files;
    const Timestamp now = linuxClock()();
    const Settings settings = Settings::load(files, home.path());
    EXPECT_GT(settings.weeklyResetDate, now);
    const UsageSnapshot usage = UsageCalculator(files).compute(settings, now);
    const auto isPart = AllOf(Gt(20), Lt(80));
    EXPECT_THAT(usage.fiveHour.percent(), isPart);
    EXPECT_TRUE(usage.fiveHour.resetsIn);
    EXPECT_THAT(usage.weekly.percent(), isPart);
    EXPECT_THAT(usage.weeklyFable.value_or(UsageWindow()).percent(), isPart);
}

TEST(DemoHome, IsReportedByTheProgram) {
    const DemoHome home;
    const ProgramRun run = runProgram(QStringLiteral(SALLOWMERE_EXECUTABLE),
                                      {QStringLiteral("--dump")}, home.file(""));
    EXPECT_EQ(run.status, 0);
    QStringList states;
    for (const QString& line : run.output.split(u'\n')) {
        if (line.startsWith(u'[')) {
            states << line.section(u' ', 0, 0);
        }
    }
    EXPECT_EQ(states.join(u' '), QStringLiteral("[working] [waiting] [waiting] [done] [idle]"));
}

TEST(DemoHomeScript, RefusesADirectoryThatIsNotEmpty) {
    const QTemporaryDir directory;
    QFile file(directory.filePath(QStringLiteral(".hidden")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    const ProgramRun run = runScript({directory.path()});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors.toStdString(), HasSubstr("the directory is not empty"));
    EXPECT_THAT(
        QDir(directory.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        ElementsAre(QStringLiteral(".hidden")));
}

TEST(DemoHomeScript, DoesNotWriteADemoHomeTwice) {
    const DemoHome home;
    EXPECT_EQ(runScript({home.file("")}).status, 1);
}

TEST(DemoHomeScript, SaysHowToUseIt) {
    const ProgramRun help = runScript({QStringLiteral("--help")});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.output.startsWith(QStringLiteral("Usage: make-demo-home DIR")));
    const QTemporaryDir directory;
    const QString path = directory.path();
    const std::vector<QStringList> wrong{
        {},   {path, "--frobnicate"}, {path, path}, {path, "--live", "0"}, {path, "--live", "soon"},
        {""},
    };
    for (const QStringList& arguments : wrong) {
        SCOPED_TRACE(arguments.join(u' ').toStdString());
        const ProgramRun run = runScript(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.errors.toStdString(), HasSubstr("Usage: make-demo-home DIR"));
    }
    EXPECT_TRUE(QDir(path).isEmpty());
}

TEST(LiveDemoHome, ChangesTheStatesOfItsSessions) {
    const DemoHome home;
    ASSERT_EQ(runScript({home.file(""), "--live", "3"}).status, 0);

    EXPECT_EQ(sessionOf(home, tides).status, SessionStatus::done);
    EXPECT_EQ(sessionOf(home, tides).todo, (TodoProgress{4, 4}));
    EXPECT_EQ(sessionOf(home, search).status, SessionStatus::done);
    EXPECT_EQ(sessionOf(home, seasons).status, SessionStatus::waiting);
    EXPECT_EQ(sessionOf(home, hours).status, SessionStatus::waiting);
    EXPECT_EQ(sessionOf(home, hours).ask.value_or(AskQuestion()).question,
              QStringLiteral("Gilt das für alle vier Adventssonntage?"));
    const SessionInfo fresh = sessionOf(home, QStringLiteral("Dark theme for the night shift 🌙"));
    EXPECT_EQ(fresh.status, SessionStatus::working);
    EXPECT_EQ(fresh.projectName, QStringLiteral("lantern-notes"));
    expectWholeLinesOfJson(home);
}

TEST(LiveDemoHome, StopsBetweenLinesWhenToldTo) {
    const DemoHome home;
    const QString transcript = sessionOf(home, tides).id;
    const qint64 before = QFileInfo(transcript).size();
    QProcess script;
    startScript(script, {home.file(""), "--live"});
    while (QFileInfo(transcript).size() == before) {
        ASSERT_FALSE(script.waitForFinished(20));
    }
    script.terminate();
    ASSERT_TRUE(script.waitForFinished());
    EXPECT_EQ(script.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(script.exitCode(), 0);
    expectWholeLinesOfJson(home);
}

} // namespace
} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/DiagnosticDump.h"

#include <gmock/gmock.h>

#include <limits>

namespace sallowmere {
namespace {

using DiagnosticDump::Model;
using DiagnosticDump::report;
using testing::HasSubstr;

Model emptyModel() {
    Model model;
    model.usage.fiveHour.limit = 50'000'000;
    model.usage.weekly.limit = 350'000'000;
    return model;
}

constexpr const char* emptyReport = "claude binary: NOT FOUND\n"
                                    "5h: 0 / 50000000 wtok (0%)\n"
                                    "7d: 0 / 350000000 wtok (0%)\n";

SessionInfo plainSession() {
    SessionInfo session;
    session.id = "/p/a.jsonl";
    session.title = "Title";
    session.modelBadge = "Opus";
    session.projectName = "web";
    return session;
}

/// What a report says of one session, behind the usage lines.
std::string block(const SessionInfo& session) {
    Model model = emptyModel();
    model.sessions = {session};
    const std::string text = report(model);
    EXPECT_TRUE(text.starts_with(emptyReport)) << text;
    return text.substr(std::string(emptyReport).size());
}

std::string line(const SessionInfo& session, int number) {
    return QString::fromStdString(block(session)).split('\n').value(number).toStdString();
}

ClaudeProcess process(std::int32_t pid, double cpuPercent) {
    ClaudeProcess made;
    made.pid = pid;
    made.cpuPercent = cpuPercent;
    return made;
}

std::vector<LogEvent> events(int count) {
    std::vector<LogEvent> made;
    for (int number = 1; number <= count; ++number) {
        made.push_back({QString::number(number),
                        LogEvent::Kind::text,
                        QStringLiteral("event %1").arg(number),
                        QString("detail"),
                        {}});
    }
    return made;
}

TEST(DiagnosticDump, IsRequestedByExactlyItsWordAnywhere) {
    const std::vector<std::vector<const char*>> requests{
        {"sallowmere", "--dump"},           {"sallowmere", "--verbose", "x", "--dump"},
        {"sallowmere", "--dump", "x"},      {"--dump"},
        {"sallowmere", "--dump", "--dump"},
    };
    for (const auto& arguments : requests) {
        EXPECT_TRUE(DiagnosticDump::isRequested(arguments));
    }
    for (const char* word : {"--DUMP", "--Dump", "-dump", "dump", "--dump=1", "--dump ", " --dump",
                             "--dumps", "---dump", "--", ""}) {
        const std::vector<const char*> arguments{"sallowmere", word};
        EXPECT_FALSE(DiagnosticDump::isRequested(arguments)) << word;
    }
    EXPECT_FALSE(DiagnosticDump::isRequested({}));
}

TEST(DiagnosticDump, WithoutSessionsEndsAfterTheWeeklyLine) {
    EXPECT_EQ(report(emptyModel()), emptyReport);
}

TEST(DiagnosticDump, PrintsItsSectionsInOrder) {
    Model model;
    model.claudeBinary = "/usr/local/bin/claude";
    model.usage.fiveHour = {120'345.9, 800'000, 8'040.0, {}};
    model.usage.weekly = {1'500'000, 9'000'000, {}, {}};
    model.orphans = {process(4242, 0)};
    model.orphans.front().cwd = "/home/me/scratch";
    model.orphans.front().elapsed = "3h12m";
    SessionInfo session = plainSession();
    session.status = SessionStatus::waiting;
    session.process = process(5120, 37.9);
    session.lastPrompt = "disable the button";
    session.activity = "Asks: Which one?";
    session.todo = TodoProgress{2, 5};
    session.ask = AskQuestion{"Which one?", {"first", "second"}};
    session.events = events(2);
    model.sessions = {session, plainSession()};
    EXPECT_EQ(report(model), "claude binary: /usr/local/bin/claude\n"
                             "orphan process: pid 4242 /home/me/scratch 3h12m\n"
                             "5h: 120345 / 800000 wtok (15%) resets in 2h14m\n"
                             "7d: 1500000 / 9000000 wtok (17%)\n"
                             "\n"
                             "[waiting] Title  <Opus|web> \u26A1pid 5120 37%\n"
                             "  you: disable the button\n"
                             "  act: Asks: Which one?\n"
                             "  todo: 2/5\n"
                             "  ASK: Which one? [\"first\", \"second\"]\n"
                             "    \u00B7 event 1\n"
                             "    \u00B7 event 2\n"
                             "\n"
                             "[idle] Title  <Opus|web>\n");
}

TEST(DiagnosticDump, PrintsABinaryWhosePathIsNoUtf8) {
    Model model = emptyModel();
    model.claudeBinary = "/h\xFF/claude";
    EXPECT_THAT(report(model), HasSubstr("claude binary: /h\xEF\xBF\xBD/claude\n"));
}

TEST(DiagnosticDump, PrintsOrphansInTheirOrder) {
    Model model = emptyModel();
    for (const std::int32_t pid : {9, 3, 7}) {
        model.orphans.push_back(process(pid, 0));
        model.orphans.back().cwd = "/d";
        model.orphans.back().elapsed = "0m";
    }
    EXPECT_EQ(report(model), "claude binary: NOT FOUND\n"
                             "orphan process: pid 9 /d 0m\n"
                             "orphan process: pid 3 /d 0m\n"
                             "orphan process: pid 7 /d 0m\n"
                             "5h: 0 / 50000000 wtok (0%)\n"
                             "7d: 0 / 350000000 wtok (0%)\n");
}

TEST(DiagnosticDump, PrintsAQuestionMarkForAnOrphanWithoutADirectory) {
    Model model = emptyModel();
    model.orphans = {process(9, 0)};
    model.orphans.front().elapsed = "2d4h";
    EXPECT_THAT(report(model), HasSubstr("\norphan process: pid 9 ? 2d4h\n"));
}

TEST(DiagnosticDump, TellsTheResetOfTheFiveHourWindowAlone) {
    Model model = emptyModel();
    model.usage.fiveHour.resetsIn = 8'040;
    model.usage.weekly.resetsIn = 8'040;
    EXPECT_THAT(report(model), HasSubstr("\n5h: 0 / 50000000 wtok (0%) resets in 2h14m\n"
                                         "7d: 0 / 350000000 wtok (0%)\n"));
    model.usage.fiveHour.resetsIn = 0;
    EXPECT_THAT(report(model), HasSubstr(" resets in 0m\n"));
    model.usage.fiveHour.resetsIn.reset();
    EXPECT_THAT(report(model), HasSubstr("\n5h: 0 / 50000000 wtok (0%)\n"));
}

TEST(DiagnosticDump, LeavesTheThirdWindowOut) {
    Model model = emptyModel();
    model.usage.weeklyFable = UsageWindow{1, 2, 3, 0.5};
    model.usage.scopedLabel = "Fable";
    EXPECT_EQ(report(model), emptyReport);
}

TEST(DiagnosticDump, PrintsTheShareThatTheWindowTells) {
    Model model = emptyModel();
    model.usage.fiveHour.officialFraction = 0.425;
    model.usage.weekly.weightedTokens = 700'000'000;
    EXPECT_THAT(report(model), HasSubstr("\n5h: 0 / 50000000 wtok (43%)\n"
                                         "7d: 700000000 / 350000000 wtok (100%)\n"));
}

TEST(DiagnosticDump, CutsFiguresTowardZeroAndDoesNotGroupThem) {
    struct Case {
        double value;
        const char* text;
    };
    const Case cases[] = {
        {0.999, "0"},
        {-0.999, "0"},
        {1'234'567.99, "1234567"},
        {-1.5, "-1"},
        {1e15, "1000000000000000"},
        {9'223'372'036'854'774'784.0, "9223372036854774784"},
        {-9'223'372'036'854'775'808.0, "-9223372036854775808"},
    };
    for (const Case& c : cases) {
        Model model = emptyModel();
        model.usage.weekly.weightedTokens = c.value;
        EXPECT_THAT(report(model), HasSubstr("7d: " + std::string(c.text) + " / 350000000 wtok"));
        model = emptyModel();
        model.usage.fiveHour.limit = c.value;
        EXPECT_THAT(report(model), HasSubstr("5h: 0 / " + std::string(c.text) + " wtok"));
    }
}

TEST(DiagnosticDumpDeathTest, PrintsNoFigureBeyond64Bits) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr const char* complaint = "figure of the report";
    for (const double value : {9'223'372'036'854'775'808.0, -9'223'372'036'854'777'856.0, 1e300,
                               infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        Model fiveHour = emptyModel();
        fiveHour.usage.fiveHour.weightedTokens = value;
        EXPECT_DEATH(report(fiveHour), complaint) << value;
        Model fiveHourLimit = emptyModel();
        fiveHourLimit.usage.fiveHour.limit = value;
        EXPECT_DEATH(report(fiveHourLimit), complaint) << value;
        Model weekly = emptyModel();
        weekly.usage.weekly.weightedTokens = value;
        EXPECT_DEATH(report(weekly), complaint) << value;
        Model weeklyLimit = emptyModel();
        weeklyLimit.usage.weekly.limit = value;
        EXPECT_DEATH(report(weeklyLimit), complaint) << value;
        Model cpu = emptyModel();
        cpu.sessions = {plainSession()};
        cpu.sessions.front().process = process(1, value);
        EXPECT_DEATH(report(cpu), complaint) << value;
    }
}

TEST(DiagnosticDumpSession, NamesEachStatus) {
    SessionInfo session = plainSession();
    for (const auto& [status, word] :
         {std::pair{SessionStatus::working, "working"},
          std::pair{SessionStatus::waiting, "waiting"}, std::pair{SessionStatus::done, "done"},
          std::pair{SessionStatus::idle, "idle"}}) {
        session.status = status;
        EXPECT_EQ(block(session), "\n[" + std::string(word) + "] Title  <Opus|web>\n");
    }
}

TEST(DiagnosticDumpSession, NamesItsProcess) {
    SessionInfo session = plainSession();
    for (const auto& [percent, text] :
         {std::pair{0.0, "0%"}, std::pair{99.9, "99%"}, std::pair{1234.5, "1234%"}}) {
        session.process = process(77, percent);
        EXPECT_EQ(block(session),
                  "\n[idle] Title  <Opus|web> \u26A1pid 77 " + std::string(text) + '\n');
    }
}

TEST(DiagnosticDumpSession, PrintsEachOptionalLineWithoutTheOthers) {
    SessionInfo prompted = plainSession();
    prompted.lastPrompt = "prompt";
    EXPECT_EQ(block(prompted), "\n[idle] Title  <Opus|web>\n  you: prompt\n");
    SessionInfo active = plainSession();
    active.activity = "Running";
    EXPECT_EQ(block(active), "\n[idle] Title  <Opus|web>\n  act: Running\n");
    SessionInfo busy = plainSession();
    busy.todo = TodoProgress{0, 0};
    EXPECT_EQ(block(busy), "\n[idle] Title  <Opus|web>\n  todo: 0/0\n");
    SessionInfo asking = plainSession();
    asking.ask = AskQuestion{"Why?", {}};
    EXPECT_EQ(block(asking), "\n[idle] Title  <Opus|web>\n  ASK: Why? []\n");
    SessionInfo planning = plainSession();
    planning.plan = "1. Do it";
    EXPECT_EQ(block(planning), "\n[idle] Title  <Opus|web>\n") << "a plan has no line";
}

TEST(DiagnosticDumpSession, PrintsTextsThatAreThereButEmpty) {
    SessionInfo session = plainSession();
    session.lastPrompt = "";
    session.activity = "";
    EXPECT_EQ(block(session), "\n[idle] Title  <Opus|web>\n  you: \n  act: \n");
}

TEST(DiagnosticDumpSession, CutsThePromptAfterEightyCharacters) {
    SessionInfo session = plainSession();
    session.lastPrompt = QString(80, 'x');
    EXPECT_EQ(line(session, 2), "  you: " + std::string(80, 'x'));
    session.lastPrompt = QString(81, 'x');
    EXPECT_EQ(line(session, 2), "  you: " + std::string(80, 'x'));
}

TEST(DiagnosticDumpSession, CutsAnEventAfterNinetyCharacters) {
    SessionInfo session = plainSession();
    session.events = events(1);
    session.events.front().label = QString(90, 'x');
    EXPECT_EQ(line(session, 2), "    \u00B7 " + std::string(90, 'x'));
    session.events.front().label = QString(91, 'x');
    EXPECT_EQ(line(session, 2), "    \u00B7 " + std::string(90, 'x'));
}

TEST(DiagnosticDumpSession, CutsBetweenUserPerceivedCharacters) {
    const QString family = QString::fromUtf8("\U0001F468\u200D\U0001F469\u200D\U0001F467");
    const QString accented = QString::fromUtf8("e\u0301");
    for (const QString& character :
         {family, accented, QString::fromUtf8("\u00E4"), QString::fromUtf8("\U0001F44B"),
          QString::fromUtf8("\U0001F1E9\U0001F1EA")}) {
        SessionInfo session = plainSession();
        session.lastPrompt = character.repeated(81);
        session.events = events(1);
        session.events.front().label = character.repeated(91);
        EXPECT_EQ(line(session, 2), "  you: " + character.repeated(80).toStdString());
        EXPECT_EQ(line(session, 3), "    \u00B7 " + character.repeated(90).toStdString());
    }
}

TEST(DiagnosticDumpSession, PrintsOtherTextsWhole) {
    SessionInfo session = plainSession();
    session.title = QString(200, 't');
    session.activity = QString(200, 'a');
    session.ask = AskQuestion{QString(200, 'q'), {QString(200, 'o')}};
    EXPECT_EQ(line(session, 1), "[idle] " + std::string(200, 't') + "  <Opus|web>");
    EXPECT_EQ(line(session, 2), "  act: " + std::string(200, 'a'));
    EXPECT_EQ(line(session, 3),
              "  ASK: " + std::string(200, 'q') + " [\"" + std::string(200, 'o') + "\"]");
}

TEST(DiagnosticDumpSession, EscapesQuotesAndBackslashesInsideAnOption) {
    SessionInfo session = plainSession();
    session.ask = AskQuestion{"Say \"it\"?", {"a\"b", "c\\d", "\\\"", "e, f"}};
    EXPECT_EQ(line(session, 2), R"(  ASK: Say "it"? ["a\"b", "c\\d", "\\\"", "e, f"])");
}

TEST(DiagnosticDumpSession, PrintsTheLastFourEvents) {
    struct Case {
        int count;
        const char* text;
    };
    const Case cases[] = {
        {0, ""},
        {2, "    \u00B7 event 1\n    \u00B7 event 2\n"},
        {4, "    \u00B7 event 1\n    \u00B7 event 2\n    \u00B7 event 3\n    \u00B7 event 4\n"},
        {7, "    \u00B7 event 4\n    \u00B7 event 5\n    \u00B7 event 6\n    \u00B7 event 7\n"},
    };
    for (const Case& c : cases) {
        SessionInfo session = plainSession();
        session.events = events(c.count);
        EXPECT_EQ(block(session), "\n[idle] Title  <Opus|web>\n" + std::string(c.text)) << c.count;
    }
}

TEST(DiagnosticDumpSession, StandsInTheOrderOfTheScan) {
    Model model = emptyModel();
    for (const char* title : {"second", "first", "third"}) {
        model.sessions.push_back(plainSession());
        model.sessions.back().title = title;
    }
    EXPECT_EQ(report(model), std::string(emptyReport)
                                 + "\n[idle] second  <Opus|web>\n"
                                   "\n[idle] first  <Opus|web>\n"
                                   "\n[idle] third  <Opus|web>\n");
}

TEST(DiagnosticDumpTarget, GetsMarksOnATerminalAndTheBytesElsewhere) {
    Model model = emptyModel();
    SessionInfo session = plainSession();
    session.title = QStringLiteral("\x1B[2J\u202Esly");
    session.lastPrompt = QStringLiteral("one\ntwo");
    session.ask = AskQuestion{QStringLiteral("q\x07"), {QStringLiteral("o\r")}};
    model.sessions = {session};
    model.orphans = {process(7, 0)};
    model.orphans.front().cwd = QStringLiteral("/tmp/\x9B"
                                               "1m");
    const std::string exact = report(model);
    EXPECT_EQ(report(model, DiagnosticDump::Target::bytes), exact);
    for (const char* raw : {"\x1B[2J\u202Esly", "one\ntwo", "q\x07 [\"o\r\"]", "/tmp/\u009B"}) {
        EXPECT_THAT(exact, HasSubstr(raw));
    }
    const std::string shown = report(model, DiagnosticDump::Target::terminal);
    for (const char* mark : {"[idle] ␛[2J�sly  <", "  you: one␊two\n", "  ASK: q␇ [\"o␍\"]\n",
                             "orphan process: pid 7 /tmp/�1m "}) {
        EXPECT_THAT(shown, HasSubstr(mark));
    }
}

TEST(DiagnosticDumpTarget, MakesNoDifferenceForHarmlessTexts) {
    Model model = emptyModel();
    model.sessions = {plainSession(), plainSession()};
    EXPECT_EQ(report(model, DiagnosticDump::Target::terminal), report(model));
}

} // namespace
} // namespace sallowmere

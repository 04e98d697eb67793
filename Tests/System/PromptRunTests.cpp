// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/EnvironmentVariable.h"
#include "System/Gate.h"
#include "System/PromptRunTest.h"

#include <QEvent>

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <filesystem>

#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Pair;
using testing::StartsWith;
using testing::UnorderedElementsAreArray;

class PromptRun : public PromptRunTest {};

/// Counts how often the event loop finds a descriptor ready.
class NotificationCounter : public QObject {
public:
    NotificationCounter() { QCoreApplication::instance()->installEventFilter(this); }

    int count() const { return count_; }

    bool eventFilter(QObject*, QEvent* event) override {
        count_ += event->type() == QEvent::SockAct ? 1 : 0;
        return false;
    }

private:
    int count_ = 0;
};

TEST_F(PromptRun, PassesEachArgumentAsItIs) {
    for (const QString& prompt :
         {QStringLiteral("-rf"), QStringLiteral("--"), QString(), QStringLiteral(" a  b\t"),
          QStringLiteral("one\ntwo\r\n\n"), QStringLiteral("'x' \"y\" \\ $HOME `id` $(id) ; * ?"),
          QStringLiteral("grüße \U0001F468\u200D\U0001F469\u200D\U0001F467 e\u0301 \uFFFE\uFFFF"),
          QStringLiteral("\x01\x1B[31m\x7F\u0085\u2028")}) {
        completions.clear();
        settings.resumePermissionMode = QStringLiteral("bypassPermissions");
        send(prompt, session("abc"));
        ASSERT_TRUE(eventuallyCompleted());
        EXPECT_THAT(completions, ElementsAre(Pair("abc", std::nullopt)));
        EXPECT_THAT(assistant.call("abc").arguments,
                    ElementsAre(assistant.path(), "-p", "--resume", "abc", "--fork-session",
                                "--permission-mode", "bypassPermissions", "--", utf8(prompt)));
    }
}

TEST_F(PromptRun, PassesAPromptAsLargeAsTheKernelAllows) {
    // 32 pages, of which the last byte is the end.
    const auto most = 32 * sysconf(_SC_PAGESIZE) - 1;
    send(QString(most, u'x'), session("abc"));
    ASSERT_TRUE(eventuallyCompleted());
    EXPECT_EQ(assistant.call("abc").arguments.back(), std::string(std::size_t(most), 'x'));
}

TEST_F(PromptRun, GivesItsOwnEnvironmentWithAnotherPath) {
    const EnvironmentVariable odd("SALLOWMERE_ODD", "a=b\n\xFF");
    const std::string home = assistant.home().path();
    const std::string places =
        home + "/.local/bin:/usr/local/bin:/opt/homebrew/bin:" + home + "/.local/bin:";
    struct Row {
        std::optional<std::string> inherited;
        std::string path;
    };
    for (const Row& row : {Row{"/x:/y", places + "/x:/y"}, Row{"", places},
                           Row{std::nullopt, places + "/usr/bin:/bin"},
                           Row{"/\xE9:/usr/bin", places + "/\xE9:/usr/bin"}}) {
        const EnvironmentVariable path("PATH", row.inherited);
        std::vector<std::string> expected{"PATH=" + row.path};
        for (const std::string& variable : programs->environment()) {
            if (!variable.starts_with("PATH=")) {
                expected.push_back(variable);
            }
        }
        EXPECT_THAT(expected, Contains("SALLOWMERE_ODD=a=b\n\xFF"));
        EXPECT_EQ(outcomeOf(""), std::nullopt);
        EXPECT_THAT(assistant.call("abc").environment, UnorderedElementsAreArray(expected));
    }
}

TEST_F(PromptRun, WorksInTheSessionsDirectory) {
    SessionInfo where = session("abc");
    where.cwd = QString::fromStdString(assistant.home().makeDirectory("a project/ü"));
    send(QStringLiteral("Hello"), where);
    ASSERT_TRUE(eventuallyCompleted());
    EXPECT_EQ(assistant.call("abc").directory, utf8(where.cwd));
}

TEST_F(PromptRun, InheritsTheDirectoryWhenTheSessionsIsGoneOrUnknown) {
    const QString gone = QString::fromStdString(assistant.home() / "gone");
    for (const std::optional<QString>& cwd :
         {std::optional<QString>(), std::optional(gone), std::optional(QString()),
          std::optional(gone + QChar(0)), std::optional(QStringLiteral("/") + QChar(0))}) {
        SessionInfo where = session("abc");
        where.cwd = cwd;
        completions.clear();
        send(QStringLiteral("Hello"), where);
        ASSERT_TRUE(eventuallyCompleted());
        EXPECT_THAT(completions, ElementsAre(Pair("abc", std::nullopt)));
        EXPECT_EQ(assistant.call("abc").directory, std::filesystem::current_path());
    }
}

TEST_F(PromptRun, ReadsAndPrintsNothing) {
    EXPECT_EQ(outcomeOf("read -r line && exit 1\n"
                        "/usr/bin/head -c 1000000 /dev/zero || exit 2\n"),
              std::nullopt);
    const AssistantCall call = assistant.call("abc");
    EXPECT_EQ(call.descriptors.at(STDIN_FILENO), "/dev/null");
    EXPECT_EQ(call.descriptors.at(STDOUT_FILENO), "/dev/null");
    EXPECT_THAT(call.descriptors.at(STDERR_FILENO), StartsWith("pipe:"));
}

TEST_F(PromptRun, SucceedsWithStatusZeroWhateverItPrints) {
    EXPECT_EQ(outcomeOf("exit 0"), std::nullopt);
    EXPECT_EQ(outcomeOf("echo careful >&2; echo an answer; exit 0"), std::nullopt);
}

TEST_F(PromptRun, ReportsTheStatusOfASilentFailure) {
    EXPECT_EQ(outcomeOf("exit 2"), "claude exited with status 2");
    EXPECT_EQ(outcomeOf("exit 255"), "claude exited with status 255");
    EXPECT_EQ(outcomeOf("echo an answer; printf ' \\n\\t\\r\\n' >&2; exit 1"),
              "claude exited with status 1");
}

TEST_F(PromptRun, ReportsWhatAFailurePrinted) {
    EXPECT_EQ(outcomeOf("printf '\\n \\t No conversation found: abc\\r\\n\\n' >&2; exit 1"),
              "No conversation found: abc");
    EXPECT_EQ(outcomeOf("printf 'caf\\303 \\377x' >&2; exit 1"), "caf\xEF\xBF\xBD \xEF\xBF\xBDx");
}

TEST_F(PromptRun, ReportsTheSignalThatEndedItAsItsStatus) {
    EXPECT_EQ(outcomeOf("kill -KILL $$"), "claude exited with status 9");
    EXPECT_EQ(outcomeOf("kill -TERM $$"), "claude exited with status 15");
    EXPECT_EQ(outcomeOf("echo oh >&2; kill -ABRT $$"), "oh");
}

TEST_F(PromptRun, ReportsTheLastTwoHundredCharactersOfMany) {
    // 100,000 bytes: of each group of ten the last says which it is.
    std::string expected;
    for (int group = 9'980; group < 10'000; ++group) {
        expected += "......" + std::to_string(group);
    }
    EXPECT_EQ(outcomeOf("i=10000\n"
                        "while [ $i -lt 20000 ]; do\n"
                        "    printf '......%s' \"${i#1}\"\n"
                        "    i=$((i + 1))\n"
                        "done >&2\n"
                        "exit 1\n"),
              expected);
}

TEST_F(PromptRun, CountsCharactersAndNotBytes) {
    // Each of the last 200 takes three bytes.
    std::string expected;
    for (int i = 0; i < 200; ++i) {
        expected += "e\xCC\x81";
    }
    EXPECT_EQ(outcomeOf("i=0\n"
                        "while [ $i -lt 30000 ]; do\n"
                        "    printf 'e\\314\\201'\n"
                        "    i=$((i + 1))\n"
                        "done >&2\n"
                        "exit 1\n"),
              expected);
}

TEST_F(PromptRun, KeepsTheLastBytesAlsoWhenTheyBeginInsideACharacter) {
    // One letter with 20,000 marks of four bytes each: what is kept begins inside it, and with some
    // endings inside a mark. That is still fewer than 200 characters.
    const std::string mark = "\xF3\xA0\x84\x80";
    for (std::size_t length = 1; length <= mark.size(); ++length) {
        const std::string ending(length, 'z');
        std::string expected;
        const std::size_t kept = 65'536 - length;
        for (std::size_t i = 0; i < kept % mark.size(); ++i) {
            expected += "\xEF\xBF\xBD";
        }
        for (std::size_t i = 0; i < kept / mark.size(); ++i) {
            expected += mark;
        }
        EXPECT_EQ(outcomeOf("i=0\n"
                            "printf e >&2\n"
                            "while [ $i -lt 20000 ]; do\n"
                            "    printf '\\363\\240\\204\\200'\n"
                            "    i=$((i + 1))\n"
                            "done >&2\n"
                            "printf "
                            + ending + " >&2; exit 1\n"),
                  expected + ending);
    }
}

TEST_F(PromptRun, ReportsErrorsThatCameInManyPieces) {
    EXPECT_EQ(outcomeOf("for piece in ' ' o n e ' ' p '' i e c e; do\n"
                        "    printf '%s' \"$piece\" >&2\n"
                        "    /bin/true\n"
                        "done\n"
                        "exit 1\n"),
              "one piece");
}

TEST_F(PromptRun, ReportsErrorsThatEndedLongBeforeTheRun) {
    const Gate gate(assistant.home(), "gate");
    const std::string mark = assistant.home() / "mark";
    assistant.does("abc", "echo early >&2; exec 2>&-; : > '" + mark + "'; read -r line < '"
                              + gate.path() + "'; exit 4");
    send(QStringLiteral("Hello"), session("abc"));
    ASSERT_TRUE(EventLoop::runUntil([&] { return std::filesystem::exists(mark); }));
    // The end of the pipe is an event once, or the event loop would never rest again.
    NotificationCounter counter;
    for (int i = 0; i < 100; ++i) {
        QCoreApplication::processEvents();
    }
    EXPECT_LE(counter.count(), 2);
    gate.letPass();
    ASSERT_TRUE(eventuallyCompleted());
    EXPECT_THAT(completions, ElementsAre(Pair("abc", "early")));
}

TEST_F(PromptRun, EndsBeforeWhatItLeavesBehind) {
    const Gate gate(assistant.home(), "gate");
    const std::string mark = assistant.home() / "mark";
    const std::string child = assistant.home() / "child";
    // The child inherits the pipe, and says late that it had it.
    EXPECT_EQ(outcomeOf("(read -r line < '" + gate.path() + "'; echo late >&2; echo > '" + mark
                        + "') &\necho $! > '" + child + "'\necho failed >&2; exit 3\n"),
              "failed");
    EXPECT_TRUE(isAlive(std::stoi(contentOf(child))));
    gate.letPass();
    EXPECT_TRUE(EventLoop::runUntil([&] { return std::filesystem::exists(mark); }));
    EXPECT_EQ(completions.size(), 1U);
}

TEST_F(PromptRun, MayEndInAnotherOrderThanItBegan) {
    const Gate first(assistant.home(), "first");
    const Gate second(assistant.home(), "second");
    assistant.does("1", "read -r line < '" + first.path() + "'; echo one >&2; exit 1");
    assistant.does("2", "read -r line < '" + second.path() + "'; echo two >&2; exit 2");
    assistant.does("3", "exit 3");
    for (const char* id : {"1", "2", "3"}) {
        send(QStringLiteral("Hello"), session(id));
    }
    ASSERT_TRUE(eventuallyCompleted(1));
    second.letPass();
    ASSERT_TRUE(eventuallyCompleted(2));
    first.letPass();
    ASSERT_TRUE(eventuallyCompleted(3));
    EXPECT_THAT(completions, ElementsAre(Pair("3", "claude exited with status 3"), Pair("2", "two"),
                                         Pair("1", "one")));
}

TEST_F(PromptRun, MayStartAnotherWhenItEnds) {
    assistant.does("1", "exit 1");
    assistant.does("2", "exit 2");
    PromptRunner::send(QStringLiteral("Hello"), session("1"), settings, services(),
                       [this](const std::optional<QString>& error) {
                           completions.emplace_back("1", utf8(error));
                           send(QStringLiteral("Hello"), session("2"));
                       });
    ASSERT_TRUE(eventuallyCompleted(2));
    EXPECT_THAT(completions, ElementsAre(Pair("1", "claude exited with status 1"),
                                         Pair("2", "claude exited with status 2")));
}

TEST_F(PromptRun, MayRunAnEventLoopWhenItEnds) {
    assistant.does("2", "exit 2");
    PromptRunner::send(QStringLiteral("Hello"), session("1"), settings, services(),
                       [this](const std::optional<QString>& error) {
                           completions.emplace_back("1", utf8(error));
                           send(QStringLiteral("Hello"), session("2"));
                           EXPECT_TRUE(eventuallyCompleted(2));
                       });
    ASSERT_TRUE(eventuallyCompleted());
    EXPECT_THAT(completions,
                ElementsAre(Pair("1", std::nullopt), Pair("2", "claude exited with status 2")));
}

TEST_F(PromptRun, MayEndTheRunnerWhenItEnds) {
    const Gate gate(assistant.home(), "gate");
    const std::string mark = assistant.home() / "mark";
    assistant.does("2",
                   "read -r line < '" + gate.path() + "'; echo late >&2; echo > '" + mark + "'");
    send(QStringLiteral("Hello"), session("2"));
    PromptRunner::send(QStringLiteral("Hello"), session("1"), settings, services(),
                       [this](const std::optional<QString>& error) {
                           completions.emplace_back("1", utf8(error));
                           programs.reset();
                       });
    ASSERT_TRUE(eventuallyCompleted());
    // The other one goes on, and nobody is told of its end.
    gate.letPass();
    EXPECT_TRUE(EventLoop::runUntil([&] { return std::filesystem::exists(mark); }));
    const pid_t other = assistant.call("2").pid;
    EXPECT_TRUE(EventLoop::runUntil([=] { return !isAlive(other); }));
    EXPECT_EQ(waitpid(other, nullptr, WNOHANG), other);
    EventLoop::runReady();
    EXPECT_THAT(completions, ElementsAre(Pair("1", std::nullopt)));
}

TEST_F(PromptRun, HasUnknownStatusWhenSomethingElseWasTold) {
    const Gate gate(assistant.home(), "gate");
    assistant.does("abc", "read -r line < '" + gate.path() + "'; exit 0");
    send(QStringLiteral("Hello"), session("abc"));
    ASSERT_TRUE(EventLoop::runUntil([&] { return assistant.wasCalled("abc"); }));
    const pid_t pid = assistant.call("abc").pid;
    gate.letPass();
    ASSERT_EQ(waitpid(pid, nullptr, 0), pid);
    ASSERT_TRUE(eventuallyCompleted());
    EXPECT_THAT(completions, ElementsAre(Pair("abc", "claude exited with status -1")));
}

} // namespace
} // namespace sallowmere

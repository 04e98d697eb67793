// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/ChildProcess.h"
#include "System/Executable.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* program = ".local/bin/claude";

/// A report is complete when it has the lines that are always there.
testing::Matcher<const std::string&> isReport() {
    return AllOf(StartsWith("claude binary: "), HasSubstr("\n5h: "), HasSubstr("\n7d: "),
                 EndsWith("\n"));
}

std::string contentOf(const std::string& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Fills a home so that its report stays the same from one second to the next: a session that has
/// been idle for three days and the usage of that time.
void fillWithThePast(const TemporaryHome& home) {
    constexpr std::time_t day = 86'400;
    const std::time_t then = std::time(nullptr) - 3 * day;
    char stamp[32] = {};
    std::tm utc{};
    std::strftime(stamp, sizeof stamp, "%Y-%m-%dT%H:%M:%S", gmtime_r(&then, &utc));
    home.writeProgram(program);
    home.write(".config/sallowmere/settings.json", R"({"showIdleHours":168})");
    const std::string path = home.write(
        ".claude/projects/-w/a.jsonl",
        R"({"type":"user","cwd":"/w/stra\u00dfe","message":{"role":"user","content":"I\u0130i"}})"
        "\n"
        R"({"type":"assistant","timestamp":")"
            + std::string(stamp)
            + R"(.250Z","message":{"id":"m1","model":"claude-OPUS-4","content":[{"type":"text",)"
              R"("text":"caf\u00e9 \ud83d\udc4b"}],"usage":{"input_tokens":12345678,)"
              R"("output_tokens":0,"cache_read_input_tokens":5}}})"
              "\n");
    setModified(path, then);
}

TEST(Executable, PrintsTheReportWhereverItsFlagStands) {
    const TemporaryHome home;
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"--dump"}, {"--verbose", "x", "--dump"}, {"--dump", "x"}}) {
        const Outcome outcome = runSallowmere(home.path(), arguments);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_THAT(outcome.output, isReport());
        EXPECT_EQ(outcome.errors, "");
    }
}

TEST(Executable, PrintsTheReportWhenItIsCalledByThatName) {
    const TemporaryHome home;
    const Outcome outcome = run({SALLOWMERE_EXECUTABLE, {"--dump"}, {"HOME=" + home.path()}, {}});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, isReport());
}

TEST(Executable, PrintsHarmlessMarksOnATerminal) {
    const TemporaryHome home;
    home.addSession("p", R"(\u001b]0;sly\u0007)", "/w");
    EXPECT_THAT(dump(home.path()), HasSubstr("] \x1B]0;sly\x07  <"));

    const int terminal = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(terminal >= 0 && grantpt(terminal) == 0 && unlockpt(terminal) == 0);
    const Outcome outcome =
        run({"/bin/sh",
             {"sh", "-c", R"(exec "$0" --dump >"$1")", SALLOWMERE_EXECUTABLE, ptsname(terminal)},
             {"HOME=" + home.path(), "PATH=/usr/bin:/bin"},
             {}});
    EXPECT_EQ(outcome.exitStatus, 0);
    char printed[4'096] = {};
    EXPECT_GT(read(terminal, printed, sizeof printed - 1), 0);
    close(terminal);
    EXPECT_THAT(printed, HasSubstr("] ␛]0;sly␇  <"));
}

TEST(Executable, PrintsNoReportForAnotherWord) {
    const TemporaryHome home;
    for (const char* word : {"--DUMP", "-dump", "dump", "--dump=1", "--dump ", ""}) {
        const Outcome outcome = runSallowmere(home.path(), {word});
        EXPECT_EQ(outcome.output, "") << word;
    }
    EXPECT_EQ(runSallowmere(home.path(), {}).output, "");
}

TEST(Executable, SaysWhatItCanDoWithoutADisplay) {
    const TemporaryHome home;
    const Outcome outcome = runSallowmere(home.path(), {});
    EXPECT_EQ(outcome.errors, "sallowmere: there is no display to show the panel on; --dump prints "
                              "a report instead\n");
    EXPECT_EQ(outcome.exitStatus, 1);
}

TEST(Executable, ReportsAnEmptyHomeInThreeLines) {
    const TemporaryHome home;
    home.writeProgram(program);
    EXPECT_EQ(dump(home.path()), "claude binary: " + (home / program)
                                     + "\n5h: 0 / 50000000 wtok (0%)\n"
                                       "7d: 0 / 350000000 wtok (0%)\n");
}

TEST(Executable, ReportsTheSameInEveryLocaleAndTimeZone) {
    const TemporaryHome home;
    fillWithThePast(home);
    const std::string plain = dump(home.path());
    EXPECT_EQ(plain, "claude binary: " + (home / program)
                         + "\n5h: 0 / 50000000 wtok (0%)\n"
                           "7d: 12345678 / 350000000 wtok (4%)\n"
                           "\n"
                           "[idle] I\u0130i  <Opus|stra\u00DFe>\n"
                           "  you: I\u0130i\n"
                           "    \u00B7 caf\u00E9 \U0001F44B\n");
    for (const char* variable :
         {"LC_ALL=C", "LC_ALL=C.UTF-8", "LC_ALL=de_DE.UTF-8", "LC_ALL=nonsense", "LANG=de_DE.UTF-8",
          "LC_NUMERIC=de_DE.UTF-8", "TZ=Asia/Kathmandu", "TZ=America/St_Johns", "TZ=nonsense"}) {
        EXPECT_EQ(dump(home.path(), {variable, "LOCPATH=" SALLOWMERE_LOCALES}), plain) << variable;
    }
}

TEST(Executable, FindsTheHomeDirectoryWithoutTheEnvironment) {
    const Outcome outcome = run({SALLOWMERE_EXECUTABLE, {"sallowmere", "--dump"}, {}, "/"});
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_THAT(outcome.output, isReport());
    EXPECT_EQ(outcome.errors, "");
}

TEST(Executable, TakesAHomeDirectoryWithATrailingSlash) {
    const TemporaryHome home;
    fillWithThePast(home);
    const Outcome outcome = runSallowmere(home.path() + '/', {"--dump"});
    EXPECT_EQ(withoutForeignOrphans(outcome.output, home.path()), dump(home.path()));
    EXPECT_THAT(outcome.output, HasSubstr("[idle] "));
}

TEST(Executable, TakesAHomeDirectoryThatIsNoUtf8) {
    const TemporaryHome home("caf\xE9\xFF");
    fillWithThePast(home);
    const std::string report = dump(home.path());
    EXPECT_THAT(report, HasSubstr("/caf\xEF\xBF\xBD\xEF\xBF\xBD/.local/bin/claude\n"));
    EXPECT_THAT(report, HasSubstr("\n7d: 12345678 / "));
    EXPECT_THAT(report, HasSubstr("\n[idle] I\u0130i  <"));
}

TEST(Executable, WritesNothingIntoAnEmptyHome) {
    const TemporaryHome home;
    dump(home.path());
    EXPECT_TRUE(std::filesystem::is_empty(home.path()));
}

TEST(Executable, TakesOverTheSettingsOfTheFormerName) {
    const TemporaryHome home;
    const std::string settings = R"({"fiveHourLimit": 12345, "weeklyLimit": 67890})";
    const std::string legacy = home.write(".config/velm-askrow/settings.json", settings);
    EXPECT_THAT(dump(home.path()), AllOf(HasSubstr("\n5h: 0 / 12345 wtok (0%)\n"),
                                         HasSubstr("\n7d: 0 / 67890 wtok (0%)\n")));
    EXPECT_EQ(contentOf(home / ".config/sallowmere/settings.json"), settings);
    EXPECT_EQ(contentOf(legacy), settings);
}

TEST(Executable, PrefersItsOwnSettings) {
    const TemporaryHome home;
    home.write(".config/velm-askrow/settings.json", R"({"fiveHourLimit": 1})");
    home.write(".config/sallowmere/settings.json", R"({"fiveHourLimit": 2})");
    EXPECT_THAT(dump(home.path()), HasSubstr("\n5h: 0 / 2 wtok (0%)\n"));
}

TEST(Executable, EndsAbnormallyRatherThanReportAWrongFigure) {
    const TemporaryHome home;
    home.write(".config/sallowmere/settings.json", R"({"fiveHourLimit": 1e300})");
    const Outcome outcome = runSallowmere(home.path(), {"--dump"});
    EXPECT_EQ(outcome.exitStatus, std::nullopt);
    EXPECT_EQ(outcome.output, "");
    EXPECT_THAT(outcome.errors, StartsWith("sallowmere: "));
}

/// Runs `--dump` from a shell that connects its standard output as `redirection` says.
Outcome dumpTo(const TemporaryHome& home, const std::string& redirection) {
    return run({"/bin/sh",
                {"sh", "-c", "exec \"$0\" --dump " + redirection, SALLOWMERE_EXECUTABLE},
                {"HOME=" + home.path()},
                {}});
}

TEST(Executable, SaysInOneLineThatTheReportCouldNotBeWritten) {
    const TemporaryHome home;
    for (const char* redirection : {">/dev/full", ">&-"}) {
        const Outcome outcome = dumpTo(home, redirection);
        EXPECT_EQ(outcome.exitStatus, 1) << redirection;
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, StartsWith("sallowmere: cannot write the report"));
        EXPECT_EQ(outcome.errors.find('\n'), outcome.errors.size() - 1) << outcome.errors;
    }
}

TEST(Executable, NeedsNoStandardInputNorErrors) {
    const TemporaryHome home;
    for (const char* redirection : {"<&-", "2>&-", "<&- 2>&-", "<&- 2>/dev/full"}) {
        const Outcome outcome = dumpTo(home, redirection);
        EXPECT_EQ(outcome.exitStatus, 0) << redirection;
        EXPECT_THAT(outcome.output, isReport()) << redirection;
    }
}

} // namespace
} // namespace sallowmere

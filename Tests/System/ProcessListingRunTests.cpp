// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxProcessTable.h"

#include "Sallowmere/Processes/ProcessScanner.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <string>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace sallowmere {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

/// A listing that comes at all comes within this, on the slowest of machines.
constexpr double minute = 60;

/// What becomes of the listing when the program that prints it is not what it should be.
class ProcessListingRun : public testing::Test {
protected:
    LinuxProcessTable printedBy(const std::string& script, double patience = minute) const {
        return LinuxProcessTable(home.writeProgram("ps", script), patience);
    }

    /// A number that a script wrote into a file; 0 while it did not.
    pid_t numberIn(const std::string& name) const {
        std::ifstream stream(home / name);
        pid_t number = 0;
        stream >> number;
        return number;
    }

    /// The listing of a script that hangs, which notes its own process id in the file "pid" before
    /// that. It gets more and more time until it has come so far.
    std::string listingOfOneThatHangs(const std::string& script) const {
        std::string listing = "none";
        for (double patience = 0.05; numberIn("pid") == 0; patience *= 2) {
            listing = printedBy(script, patience).listing();
        }
        return listing;
    }

    /// Neither running nor a zombie.
    static bool isGone(pid_t pid) { return kill(pid, 0) != 0 && errno == ESRCH; }

    const TemporaryHome home;
    /// Notes the process id of a script.
    const std::string notePid = "echo $$ > '" + (home / "pid") + "'\n";
};

TEST_F(ProcessListingRun, IsAskedForItsColumnsAndNothingElse) {
    EXPECT_EQ(printedBy(R"(printf '[%s]' "$@")").listing(),
              "[-axo][pid=,ppid=,uid=,pcpu=,etime=,comm=]");
}

TEST_F(ProcessListingRun, GetsNoInputAndIsNotHeardToComplain) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(printedBy("cat; echo complaint >&2; echo end").listing(), "end\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ProcessListingRun, PassesOnWhateverIsPrinted) {
    const std::string rubbish =
        printedBy(R"(printf '\377\000\n12 x\n\n 7 1 0 0.0 00:01 sh\nend')").listing();
    using namespace std::string_literals;
    EXPECT_EQ(rubbish, "\xFF\0\n12 x\n\n 7 1 0 0.0 00:01 sh\nend"s);
    EXPECT_THAT(ProcessScanner::runPs(printedBy("head -c 100000 /dev/urandom; echo\n"
                                                "echo 7 1 0 0.0 00:01 sh")),
                SizeIs(1));
}

TEST_F(ProcessListingRun, CountsHoweverItEnds) {
    EXPECT_EQ(printedBy("echo row; exit 1").listing(), "row\n");
    EXPECT_EQ(printedBy("echo row; kill -KILL $$").listing(), "row\n");
    EXPECT_EQ(printedBy("kill -SEGV $$").listing(), "");
}

TEST_F(ProcessListingRun, MayBeLong) {
    constexpr std::size_t fiftyMebibytes = 52'428'800;
    const std::string listing =
        printedBy("yes '  123     1  1000  0.0    01:02:03 bash' | head -c 52428800").listing();
    EXPECT_EQ(listing.size(), fiftyMebibytes);
}

TEST_F(ProcessListingRun, IsEmptyWhenItCannotBeStarted) {
    testing::internal::CaptureStderr();
    EXPECT_THAT(LinuxProcessTable(home / "missing").listing(), IsEmpty());
    EXPECT_THAT(LinuxProcessTable(home.path()).listing(), IsEmpty());
    EXPECT_THAT(LinuxProcessTable(home.write("text", "echo row")).listing(), IsEmpty());
    EXPECT_THAT(LinuxProcessTable(home.makeLink("link", home / "nowhere")).listing(), IsEmpty());
    EXPECT_THAT(LinuxProcessTable("").listing(), IsEmpty());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ProcessListingRun, IsEmptyWhenItHangs) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(listingOfOneThatHangs(notePid + "exec sleep 100000"), "");
    EXPECT_TRUE(isGone(numberIn("pid")));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(ProcessListingRun, IsEmptyWhenItHangsHalfway) {
    EXPECT_EQ(listingOfOneThatHangs("echo 7 1 0 0.0 00:01 sh\n" + notePid + "exec sleep 100000"),
              "");
    EXPECT_TRUE(isGone(numberIn("pid")));
}

TEST_F(ProcessListingRun, IsEmptyWhenItHangsAfterTheEnd) {
    EXPECT_EQ(listingOfOneThatHangs("echo row\n" + notePid + "exec sleep 100000 >&-"), "");
    EXPECT_TRUE(isGone(numberIn("pid")));
}

TEST_F(ProcessListingRun, IsEmptyWhenItPrintsForEver) {
    EXPECT_EQ(listingOfOneThatHangs(notePid + "exec yes '7 1 0 0.0 00:01 sh'"), "");
    EXPECT_TRUE(isGone(numberIn("pid")));
}

TEST_F(ProcessListingRun, IsEmptyWhileSomethingElseHoldsItsOutput) {
    // Whether that has something to add nobody can tell. It ends with the home directory.
    const std::string stays = "while [ -e '" + (home / "pid") + "' ]; do sleep 0.1; done &\n";
    EXPECT_EQ(listingOfOneThatHangs(notePid + stays + "echo row"), "");
    EXPECT_TRUE(isGone(numberIn("pid")));
}

TEST_F(ProcessListingRun, EndsOneThatWouldRatherGoOn) {
    EXPECT_EQ(listingOfOneThatHangs("trap '' TERM INT HUP\n" + notePid + "exec sleep 100000"), "");
    EXPECT_TRUE(isGone(numberIn("pid")));
}

/// Makes the system a stranger to `pidfd_open` from now on, as old kernels and some containers are.
bool forbidProcessDescriptors() {
    std::array<sock_filter, 4> program{{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_pidfd_open, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSYS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    const sock_fprog filter{program.size(), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0
           && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST_F(ProcessListingRun, ComesAlsoWhereThereAreNoProcessDescriptors) {
    const LinuxProcessTable good = printedBy("echo row");
    const LinuxProcessTable hanging(home.writeProgram("hanging-ps", "exec sleep 100000"), 0.05);
    const auto listInAnotherProcess = [&] {
        const bool listed =
            forbidProcessDescriptors() && good.listing() == "row\n" && hanging.listing().empty();
        std::_Exit(listed ? EXIT_SUCCESS : EXIT_FAILURE);
    };
    EXPECT_EXIT(listInAnotherProcess(), testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ProcessListingRun, IsGoodAgainAfterOneThatHung) {
    const LinuxProcessTable processes = [&] {
        home.writeProgram("ps", "exec sleep 100000");
        return LinuxProcessTable(home / "ps", 0.05);
    }();
    EXPECT_EQ(processes.listing(), "");
    const LinuxProcessTable patient(home.writeProgram("ps", "echo row"), minute);
    EXPECT_EQ(patient.listing(), "row\n");
}

} // namespace
} // namespace sallowmere

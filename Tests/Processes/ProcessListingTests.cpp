// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Processes/ProcessScanner.h"

#include "Support/FakeProcessTable.h"

#include <gmock/gmock.h>

#include <string_view>

namespace sallowmere {
namespace {

using ProcessScanner::parseRow;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> names(const std::string& listing) {
    FakeProcessTable processes;
    processes.listingText = listing;
    std::vector<std::string> comms;
    for (const PsRow& row : ProcessScanner::runPs(processes)) {
        comms.push_back(row.comm);
    }
    return comms;
}

TEST(PsRow, IsReadFromAPaddedLine) {
    EXPECT_EQ(parseRow("  123   1  501   0.0 01:02:03 /usr/local/bin/claude"),
              (PsRow{123, 1, 501, 0.0, "01:02:03", "/usr/local/bin/claude"}));
}

TEST(PsRow, ReadsWhatFitsItsColumns) {
    struct Case {
        std::string_view line;
        PsRow row;
    };
    const Case cases[] = {
        {"1 0 0 0.2 35:02 init", {1, 0, 0, 0.2, "35:02", "init"}},
        {"2147483647 2147483647 4294967295 250.75 1-00:00:00 x",
         {2147483647, 2147483647, 4294967295U, 250.75, "1-00:00:00", "x"}},
        {"-2147483648 -1 0 7 00:01 x", {-2147483647 - 1, -1, 0, 7, "00:01", "x"}},
        {"7 1 0 0.0 whatever x", {7, 1, 0, 0, "whatever", "x"}},
        {"7 1 0 0.0 00:01 x   ", {7, 1, 0, 0, "00:01", "x"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseRow(c.line), c.row) << c.line;
    }
}

TEST(PsRow, KeepsBlanksInsideTheNameAsSingleOnes) {
    EXPECT_EQ(parseRow("7 1 0 0.0 00:01 /Applications/Some   App.app/Code Helper (Renderer)")->comm,
              "/Applications/Some App.app/Code Helper (Renderer)");
}

TEST(PsRow, IsAbsentForFewerThanSixPieces) {
    EXPECT_EQ(parseRow(""), std::nullopt);
    EXPECT_EQ(parseRow("      "), std::nullopt);
    EXPECT_EQ(parseRow("  123   1  501   0.0 01:02:03"), std::nullopt);
    EXPECT_EQ(parseRow("  123   1  501   0.0 01:02:03   "), std::nullopt);
    EXPECT_EQ(parseRow("7 1 0 0.0 00:01\tx"), std::nullopt) << "a tab separates nothing";
}

TEST(PsRow, IsAbsentForAMalformedNumber) {
    for (const std::string_view line :
         {"x 1 0 0.0 00:01 c", "7x 1 0 0.0 00:01 c", "7.0 1 0 0.0 00:01 c",
          "2147483648 1 0 0.0 00:01 c", "-2147483649 1 0 0.0 00:01 c", "0x7 1 0 0.0 00:01 c",
          "7 x 0 0.0 00:01 c", "7 2147483648 0 0.0 00:01 c", "7 1 x 0.0 00:01 c",
          "7 1 -1 0.0 00:01 c", "7 1 4294967296 0.0 00:01 c", "7 1 0 x 00:01 c",
          "7 1 0 0,5 00:01 c", "7 1 0 nan 00:01 c", "7 1 0 inf 00:01 c", "7 1 0 1e400 00:01 c",
          "7 1 0 0.5% 00:01 c", "PID PPID UID %CPU ELAPSED COMMAND"}) {
        EXPECT_EQ(parseRow(line), std::nullopt) << line;
    }
}

TEST(ProcessListing, KeepsTheOrderOfItsLines) {
    EXPECT_THAT(names("9 1 0 0.0 00:01 b\n 3 1 0 0.0 00:01 a\n5 1 0 0.0 00:01 c\n"),
                ElementsAre("b", "a", "c"));
}

TEST(ProcessListing, PassesOverLinesThatAreNoRows) {
    EXPECT_THAT(names("\n\n1 0 0 0.0 00:01 a\nwarning: bad data\n\n2 0 0 0.0 00:01 b"),
                ElementsAre("a", "b"));
}

TEST(ProcessListing, ReplacesWhatIsNoUtf8) {
    EXPECT_THAT(names("1 0 0 0.0 00:01 a\xFF"
                      "b\n2 0 0 0.0 00:01 \xC3\xA4\n"),
                ElementsAre("a\xEF\xBF\xBD"
                            "b",
                            "\xC3\xA4"));
}

TEST(ProcessListing, MayBeEmpty) {
    EXPECT_THAT(names(""), IsEmpty());
}

} // namespace
} // namespace sallowmere

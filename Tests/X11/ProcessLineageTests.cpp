// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/X11/ProcessLineage.h"

#include "System/ChildProcess.h"
#include "System/TemporaryHome.h"

#include <gmock/gmock.h>

#include <filesystem>

#include <unistd.h>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using ProcessLineage::parentIn;
using ProcessLineage::parentOf;

TEST(ProcessLineage, ReadsTheParentBehindTheName) {
    EXPECT_EQ(parentIn("4242 (bash) S 4240 4242 4242 34816"), 4240);
    EXPECT_EQ(parentIn("4242 (tmux: server) S 1 4242"), 1);
    EXPECT_EQ(parentIn("4242 (a) S 7 (b c) R 4240 4242"), 4240);
    EXPECT_EQ(parentIn("4242 (() S 4240 4242"), 4240);
    EXPECT_EQ(parentIn("4242 ()) Z 4240 4242"), 4240);
    EXPECT_EQ(parentIn("1 (init) S 0 1 1"), 0);
}

TEST(ProcessLineage, ReadsNoParentFromAnythingElse) {
    for (const char* text : {"", "4242", "4242 (bash", "4242 (bash)", "4242 (bash) S",
                             "4242 (bash) S ", "4242 (bash) S x", "4242 (bash) S 99999999999"}) {
        EXPECT_EQ(parentIn(text), std::nullopt) << text;
    }
}

TEST(ProcessLineage, KnowsTheParentOfARealProcess) {
    EXPECT_EQ(parentOf(getpid()), getppid());
    EXPECT_EQ(parentOf(-1), std::nullopt);
    EXPECT_EQ(parentOf(0), std::nullopt);
}

TEST(ProcessLineage, KnowsTheParentOfAProcessWithAMisleadingName) {
    const TemporaryHome home;
    const std::string program = home / ") R 1 (x";
    std::filesystem::copy_file("/bin/cat", program);
    ChildProcess child({program, {program}, {}, {}});
    EXPECT_EQ(parentOf(child.pid()), getpid());
}

TEST(ProcessLineage, GoesFromAProcessToThoseAboveIt) {
    const auto parent = [](std::int32_t pid) { return std::optional(pid / 10); };
    EXPECT_THAT(ProcessLineage::of(4321, parent), ElementsAre(4321, 432, 43, 4));
    EXPECT_THAT(ProcessLineage::of(2, parent), ElementsAre(2));
    const ChildProcess child({"/bin/cat", {"cat"}, {}, {}});
    const auto real = ProcessLineage::of(child.pid());
    ASSERT_THAT(real, SizeIs(testing::Ge(2U)));
    EXPECT_EQ(real[0], child.pid());
    EXPECT_EQ(real[1], getpid());
}

TEST(ProcessLineage, EndsBelowTheFirstProcess) {
    const auto parent = [](std::int32_t pid) { return std::optional(pid - 1); };
    EXPECT_THAT(ProcessLineage::of(4, parent), ElementsAre(4, 3, 2));
    for (const std::int32_t nobody : {1, 0, -1}) {
        EXPECT_THAT(ProcessLineage::of(nobody, parent), IsEmpty()) << nobody;
    }
}

TEST(ProcessLineage, EndsWhereAParentIsUnknown) {
    const auto parent = [](std::int32_t pid) { return pid == 9 ? std::optional(8) : std::nullopt; };
    EXPECT_THAT(ProcessLineage::of(9, parent), ElementsAre(9, 8));
}

TEST(ProcessLineage, EndsAfterAGoodNumberOfAncestors) {
    const auto circle = [](std::int32_t pid) { return std::optional(pid == 5 ? 6 : 5); };
    EXPECT_THAT(ProcessLineage::of(5, circle), SizeIs(ProcessLineage::maximumAncestors + 1U));
}

} // namespace
} // namespace sallowmere

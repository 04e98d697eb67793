// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/Installation.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace sallowmere {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(Uninstalling, TakesAwayAllThatWasInstalled) {
    const Installation installation;
    ASSERT_THAT(installation.files(), Not(IsEmpty()));
    const Outcome outcome = installation.uninstall();
    EXPECT_EQ(outcome.exitStatus, 0) << outcome.output << outcome.errors;
    EXPECT_THAT(installation.files(), IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(installation / "share/sallowmere"));
    EXPECT_FALSE(std::filesystem::exists(installation / "share/doc/sallowmere"));
    EXPECT_TRUE(std::filesystem::exists(installation / "share/doc"));
}

TEST(Uninstalling, LeavesWhatOthersPutBeside) {
    const Installation installation;
    const TemporaryHome& root = installation.root();
    root.write("home/me/.config/sallowmere/settings.json", "{}");
    root.write("usr/local/bin/other", "");
    root.write("usr/local/share/doc/sallowmere/.hidden", "");
    root.write("usr/local/share/sallowmere/mine", "");
    EXPECT_EQ(installation.uninstall().exitStatus, 0);
    EXPECT_THAT(installation.files(),
                ElementsAre(HasSubstr("home/me/.config/sallowmere/settings.json"),
                            HasSubstr("usr/local/bin/other"),
                            HasSubstr("usr/local/share/doc/sallowmere/.hidden"),
                            HasSubstr("usr/local/share/sallowmere/mine")));
}

TEST(Uninstalling, DoesNotMindWhatIsGoneAlready) {
    const Installation installation;
    std::filesystem::remove(installation / "bin/sallowmere");
    std::filesystem::remove_all(installation / "share/sallowmere");
    EXPECT_EQ(installation.uninstall().exitStatus, 0);
    EXPECT_THAT(installation.files(), IsEmpty());
}

TEST(Uninstalling, WithNothingInstalledSaysSo) {
    const Installation installation;
    ASSERT_EQ(installation.uninstall().exitStatus, 0);
    const Outcome again = installation.uninstall();
    EXPECT_NE(again.exitStatus, 0);
    EXPECT_THAT(again.output + again.errors, HasSubstr("Nothing is installed from here"));
}

} // namespace
} // namespace sallowmere

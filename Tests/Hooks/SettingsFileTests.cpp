// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "HookSwitch.h"
#include "Hooks/SwitchHome.h"
#include "SettingsFile.h"
#include "System/Unprivileged.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>

#include <unistd.h>

namespace fs = std::filesystem;

namespace sallowmere {
namespace {

using testing::HasSubstr;

/// What is said of a failure; empty when there is none.
std::string failureOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const FileError& error) {
        return error.reason;
    }
    return {};
}

class SettingsFiles : public SwitchHome {
protected:
    /// The program in a shell that limits something for it.
    Outcome inShell(const std::string& script, const std::string& argument) const {
        Command inner = command({});
        inner.arguments = {"sh", "-c", script, inner.program, argument};
        inner.program = "/bin/sh";
        return run(inner);
    }

    /// Everything below the home directory for everybody or, but the home directory, for nobody.
    void makeWritable(bool isWritable) const {
        const auto mode = isWritable ? fs::perms(0777) : fs::perms(0555);
        fs::permissions(home.path() + "/..", fs::perms(0755));
        for (const auto& entry : fs::recursive_directory_iterator(home.path())) {
            fs::permissions(entry.path(), mode);
        }
        fs::permissions(home.path(), mode);
    }
};

TEST_F(SettingsFiles, KeepTheirModeAndOwner) {
    write("{}");
    for (const mode_t mode : {0600U, 0644U, 0664U, 0640U}) {
        ASSERT_EQ(chmod(settings().c_str(), mode), 0);
        const struct stat before = statusOf(settings());
        for (const char* argument : {"install", "remove"}) {
            done(argument);
            const struct stat after = statusOf(settings());
            EXPECT_EQ(after.st_mode, before.st_mode);
            EXPECT_EQ(after.st_uid, before.st_uid);
            EXPECT_EQ(after.st_gid, before.st_gid);
        }
    }
}

TEST_F(SettingsFiles, StayWithWhomTheyBelongTo) {
    write("{}");
    if (geteuid() == 0) {
        ASSERT_EQ(chown(settings().c_str(), 65'534, 65'534), 0);
        done("install");
        EXPECT_EQ(statusOf(settings()).st_uid, 65'534U);
        EXPECT_EQ(statusOf(settings()).st_gid, 65'534U);
        ASSERT_EQ(chown(settings().c_str(), 0, 0), 0);
        makeWritable(true);
        const Unprivileged nobody;
        EXPECT_THAT(failureOf([&] { SettingsFile(settings()).replace("{ }"); }),
                    HasSubstr("cannot keep its owner and mode"));
    } else {
        done("install");
        EXPECT_EQ(statusOf(settings()).st_uid, geteuid());
    }
}

TEST_F(SettingsFiles, AreFoundThroughLinksThatStay) {
    const std::string real = home.write("dotfiles/claude.json", "{ \"a\": 1 }");
    home.makeLink("dotfiles/link", "claude.json");
    home.makeLink(".claude/settings.json", "../dotfiles/link");
    done("install");
    EXPECT_TRUE(fs::is_symlink(settings()));
    EXPECT_TRUE(fs::is_symlink(home / "dotfiles/link"));
    EXPECT_THAT(contentOf(real), HasSubstr("sallowmere-notify"));
    EXPECT_EQ(contentOf(backup()), "{ \"a\": 1 }");
    done("remove");
    EXPECT_TRUE(fs::is_symlink(settings()));
    EXPECT_EQ(contentOf(real), "{ \"a\": 1 }");
    EXPECT_EQ(everything().size(), 5U);
}

TEST_F(SettingsFiles, AreRefusedWhereALinkLeadsNowhere) {
    home.makeLink(".claude/settings.json", home / "nothing");
    for (const char* argument : {"install", "remove", "status"}) {
        EXPECT_THAT(refused(argument), HasSubstr("is a link that leads nowhere: No such file"));
    }
    fs::remove(settings());
    home.makeLink(".claude/settings.json", "settings.json");
    EXPECT_THAT(refused("install"), HasSubstr("is a link that leads nowhere: Too many levels"));
}

TEST_F(SettingsFiles, AreRefusedWhenTheyAreNoPlainFile) {
    home.makeDirectory(".claude/settings.json");
    for (const char* argument : {"install", "remove", "status"}) {
        EXPECT_THAT(refused(argument), HasSubstr("settings.json is a directory\n"));
    }
    fs::remove(settings());
    home.makeFifo(".claude/settings.json");
    EXPECT_THAT(refused("install"), HasSubstr("settings.json is no plain file\n"));
    fs::remove_all(home / ".claude");
    home.write(".claude", "kept");
    EXPECT_THAT(refused("install"), HasSubstr("cannot be read: Not a directory\n"));
}

TEST_F(SettingsFiles, AreRefusedWhenTheyAreTooLarge) {
    write("{}" + std::string(SettingsFile::largest - 2, ' '));
    EXPECT_EQ(call("status").exitStatus, 3);
    write("{}" + std::string(SettingsFile::largest - 1, ' '));
    const Outcome outcome = call("install");
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_THAT(outcome.errors, HasSubstr("is larger than 16 MiB\n"));
    EXPECT_EQ(fs::file_size(settings()), SettingsFile::largest + 1);
    EXPECT_FALSE(fs::exists(backup()));
}

TEST_F(SettingsFiles, AreRefusedWithASecondName) {
    fs::create_hard_link(write("{}"), home / "other.json");
    EXPECT_THAT(refused("install"), HasSubstr("has a second name (a hard link)"));
    EXPECT_EQ(call("status").exitStatus, 3);
}

TEST_F(SettingsFiles, AreLeftAloneWhereTheyMayNotBeWritten) {
    write("{}");
    for (const bool isDirectoryWritable : {false, true}) {
        makeWritable(false);
        if (isDirectoryWritable) {
            fs::permissions(home / ".claude", fs::perms(0777));
        } else {
            fs::permissions(settings(), fs::perms(0666));
        }
        const std::vector<std::string> before = everything();
        {
            const Unprivileged nobody;
            EXPECT_THAT(failureOf([&] { HookSwitch(home.path()).install(); }),
                        HasSubstr("Permission denied"));
        }
        EXPECT_EQ(everything(), before);
    }
    makeWritable(true);
}

TEST_F(SettingsFiles, AreLeftAloneWhereTheyMayNotBeRead) {
    write("{}");
    makeWritable(true);
    fs::permissions(settings(), fs::perms::none);
    {
        const Unprivileged nobody;
        EXPECT_THAT(failureOf([&] { HookSwitch(home.path()).status(); }),
                    HasSubstr("cannot be read: Permission denied"));
    }
}

TEST_F(SettingsFiles, AreWholeOnAFullDisk) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer itself needs a file that something fits into";
#endif
    // As far as it can be had without a disk of its own: little fits into a file. First nothing,
    // then the copy of the former settings, but not the new ones.
    for (const std::string size : {"0", "1"}) {
        write("{ \"a\": \"" + std::string(300, 'x') + "\" }");
        const std::vector<std::string> before = everything();
        const Outcome outcome = inShell("ulimit -f " + size + "; exec \"$0\" \"$1\"", "install");
        EXPECT_EQ(outcome.exitStatus, 1);
        // Its complaint goes to a file too.
        EXPECT_THAT(outcome.errors, HasSubstr(size == "0" ? "" : "cannot be written: File too"));
        EXPECT_EQ(everything(), before);
    }
    fs::remove_all(home / ".claude");
    EXPECT_EQ(inShell("ulimit -f 0; exec \"$0\" \"$1\"", "install").exitStatus, 1);
    EXPECT_EQ(everything().size(), 0U);
}

TEST_F(SettingsFiles, KeepTheHookWhenItCannotBeRemovedOnAFullDisk) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer itself needs a file that something fits into";
#endif
    write("{ \"a\": 1 }");
    done("install");
    const std::vector<std::string> before = everything();
    EXPECT_EQ(inShell("ulimit -f 0; exec \"$0\" \"$1\"", "remove").exitStatus, 1);
    EXPECT_EQ(everything(), before);
}

TEST_F(SettingsFiles, AreNotOverwrittenWhenSomebodyChangedThem) {
    const std::vector<std::function<void()>> changes{
        [&] { home.write(".claude/settings.json", "{1}"); }, [&] { fs::remove(settings()); },
        [&] { fs::permissions(settings(), fs::perms(0600)); },
        [&] { fs::rename(home.write("new", "{ }"), settings()); },
        [&] {
            fs::remove(settings());
            home.makeLink(".claude/settings.json", home.write("elsewhere", "{ }"));
        }};
    for (const auto& change : changes) {
        fs::remove_all(home / ".claude");
        write("{ }");
        const SettingsFile file(settings());
        change();
        const std::vector<std::string> before = everything();
        EXPECT_NE(failureOf([&] { file.replace("ours"); }), "");
        EXPECT_THAT(failureOf([&] { file.remove(); }),
                    HasSubstr("was changed by somebody else meanwhile; nothing was written"));
        EXPECT_EQ(everything(), before);
    }
}

TEST_F(SettingsFiles, AreNotOverwrittenWhenTheyCameMeanwhile) {
    home.makeDirectory(".claude");
    const SettingsFile file(settings());
    write("{ }");
    EXPECT_THAT(failureOf([&] { file.replace("ours"); }),
                HasSubstr("was changed by somebody else meanwhile"));
    EXPECT_EQ(contentOf(settings()), "{ }");
    EXPECT_EQ(everything().size(), 2U);
}

} // namespace
} // namespace sallowmere

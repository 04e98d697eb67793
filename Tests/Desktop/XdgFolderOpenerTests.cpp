// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/XdgFolderOpener.h"

#include "Desktop/Daemon.h"
#include "System/EnvironmentVariable.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

namespace sallowmere {
namespace {

namespace fs = std::filesystem;

struct Note {
    /// Of arguments; the first is `argument`.
    std::string count;
    std::string argument;
    std::string input;
    std::string output;
    std::string errors;
    std::string session;
};

/// A desktop whose `xdg-open` notes how it is called.
class XdgFolderOpener : public testing::Test {
protected:
    XdgFolderOpener() {
        home.makeDirectory("noted");
        const std::string program = home.write("bin/xdg-open", R"sh(#!/bin/sh
noted=$(dirname "$0")/../noted
of() {
    /usr/bin/readlink "/proc/$$/fd/$1"
}
input=$(of 0) output=$(of 1) errors=$(of 2)
session=$(/usr/bin/ps -o sid= -p $$ | /usr/bin/tr -d ' ')
printf '%s\0' "$#" "$1" "$input" "$output" "$errors" "$session" >"$noted/$$"
)sh");
        fs::permissions(program, fs::perms::owner_all);
    }

    /// Whether a process of it runs.
    bool isRunning() const {
        for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
            std::string line;
            std::getline(std::ifstream(entry.path() / "cmdline"), line);
            if (line.find(home / "bin/xdg-open") != std::string::npos) {
                return true;
            }
        }
        return false;
    }

    /// A file for each call.
    std::vector<fs::path> notes() const {
        const fs::directory_iterator entries(home / "noted");
        return {begin(entries), end(entries)};
    }

    /// The one call, which is waited for.
    Note note() const {
        // While it is being started it has no name.
        EXPECT_TRUE(comesTrue([this] { return !notes().empty() && !isRunning(); }));
        EXPECT_EQ(notes().size(), 1U);
        std::ifstream stream(notes().at(0));
        Note result;
        for (std::string* field : {&result.count, &result.argument, &result.input, &result.output,
                                   &result.errors, &result.session}) {
            std::getline(stream, *field, '\0');
        }
        return result;
    }

    TemporaryHome home;
    EnvironmentVariable search{"PATH", home / "bin" + ":/usr/bin:/bin"};
    FolderOpener open = xdgFolderOpener();
};

TEST_F(XdgFolderOpener, HandsOnTheDirectoryAndNothingElse) {
    const std::string directory = home.makeDirectory("-a b\"'$(touch x);\n Übung %20#?*\\");
    open(directory);
    const Note noted = note();
    EXPECT_EQ(noted.count, "1");
    EXPECT_EQ(noted.argument, directory);
}

TEST_F(XdgFolderOpener, LetsItRunByItself) {
    open(home.path());
    const Note noted = note();
    EXPECT_EQ(noted.input, "/dev/null");
    EXPECT_EQ(noted.output, "/dev/null");
    EXPECT_EQ(noted.errors, "/dev/null");
    EXPECT_NE(noted.session, std::to_string(getsid(0)));
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

TEST_F(XdgFolderOpener, FollowsLinksToDirectories) {
    const std::string link = home.makeLink("link", home.makeDirectory("project"));
    open(link);
    EXPECT_EQ(note().argument, link);
}

TEST_F(XdgFolderOpener, OpensNothingButDirectoriesThatExist) {
    const std::string file = home.write("run.desktop", "[Desktop Entry]\n");
    for (const std::string& path :
         {std::string(), std::string("."), std::string("bin"), std::string("--help"),
          std::string("file:///"), std::string("https://example.org/"), std::string(":/"),
          std::string("~"), home / "none", file, home.makeLink("to-file", file),
          home.makeLink("broken", home / "none"), home.makeFifo("fifo"),
          home.path() + std::string("\0x", 2), home / "\xff"}) {
        open(path);
    }
    const std::string directory = home.makeDirectory("project");
    open(directory);
    EXPECT_EQ(note().argument, directory);
}

TEST_F(XdgFolderOpener, DoesNothingWhereThereIsNoFileManager) {
    const EnvironmentVariable nothing("PATH", home / "none");
    testing::internal::CaptureStderr();
    open(home.path());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
}

} // namespace
} // namespace sallowmere

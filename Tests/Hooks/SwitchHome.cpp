// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Hooks/SwitchHome.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace fs = std::filesystem;

namespace sallowmere {

Command SwitchHome::command(const std::vector<std::string>& arguments) const {
    // The hook is found where it was built.
    const std::string directory = fs::path(SALLOWMERE_NOTIFY).parent_path().native();
    Command command{SALLOWMERE_HOOK,
                    {"sallowmere-hook"},
                    {"PATH=/usr/bin:" + directory, "HOME=" + home.path()},
                    {}};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return command;
}

std::string SwitchHome::done(const std::string& argument) const {
    const Outcome outcome = call(argument);
    EXPECT_EQ(outcome.exitStatus, 0);
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
}

std::string SwitchHome::refused(const std::string& argument) const {
    const std::vector<std::string> before = everything();
    const Outcome outcome = call(argument);
    EXPECT_EQ(outcome.exitStatus, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(everything(), before);
    return outcome.errors;
}

std::string SwitchHome::write(const std::string& content) const {
    std::string path = home.write(".claude/settings.json", content);
    fs::permissions(path, fs::perms(0644));
    return path;
}

std::vector<std::string> SwitchHome::everything() const {
    std::vector<std::string> result;
    for (const auto& entry : fs::recursive_directory_iterator(home.path())) {
        const std::string name = entry.path().lexically_relative(home.path()).native();
        if (entry.is_symlink()) {
            result.push_back(name + " -> " + fs::read_symlink(entry.path()).native());
        } else if (entry.is_regular_file()) {
            result.push_back(name + ' ' + modeOf(entry.path()) + ' ' + contentOf(entry.path()));
        } else {
            result.push_back(name + '/');
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

std::string SwitchHome::contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    return {std::istreambuf_iterator<char>(file), {}};
}

struct stat SwitchHome::statusOf(const std::string& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

std::string SwitchHome::modeOf(const std::string& path) {
    std::ostringstream text;
    text << std::oct << (statusOf(path).st_mode & 07777U);
    return text.str();
}

std::string hookSnippet() {
    std::ifstream file(SALLOWMERE_HOOK_SETTINGS);
    EXPECT_TRUE(file);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace sallowmere

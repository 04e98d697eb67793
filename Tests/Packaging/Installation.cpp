// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Packaging/Installation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include <sys/stat.h>

namespace sallowmere {

namespace {

namespace fs = std::filesystem;

const std::string manifest = SALLOWMERE_BUILD_DIR "/install_manifest.txt";
const std::string searchPath = "PATH=/usr/local/bin:/usr/bin:/bin";

std::string readAll(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

Outcome runCMake(std::vector<std::string> arguments, const TemporaryHome& root) {
    arguments.insert(arguments.begin(), "cmake");
    return run(
        {SALLOWMERE_CMAKE, arguments, {searchPath, "LC_ALL=C", "DESTDIR=" + root.path()}, {}});
}

std::string octal(fs::perms permissions) {
    char text[8];
    std::snprintf(text, sizeof text, "%o", static_cast<unsigned>(permissions & fs::perms::mask));
    return text;
}

std::string described(const fs::directory_entry& entry, const fs::path& root) {
    const std::string path = entry.path().lexically_relative(root).string();
    if (entry.is_symlink()) {
        return path + " -> " + fs::read_symlink(entry.path()).string();
    }
    return octal(entry.status().permissions()) + ' ' + path;
}

template <typename Wanted>
std::vector<std::string> listed(const std::string& root, Wanted wanted) {
    std::vector<std::string> lines;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        if (wanted(entry)) {
            lines.push_back(described(entry, root));
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

bool isDirectory(const fs::directory_entry& entry) {
    return entry.is_directory() && !entry.is_symlink();
}

} // namespace

Installation::Installation() {
    if (fs::exists(manifest)) {
        formerManifest_ = readAll(manifest);
    }
    const mode_t former = umask(S_IWGRP | S_IWOTH);
    const Outcome outcome =
        runCMake({"--install", SALLOWMERE_BUILD_DIR, "--prefix", '/' + std::string(prefix)}, root_);
    umask(former);
    if (outcome.exitStatus != 0) {
        throw std::runtime_error("cannot install: " + outcome.errors);
    }
}

Installation::~Installation() {
    std::error_code ignored;
    fs::remove(manifest, ignored);
    if (formerManifest_) {
        std::ofstream(manifest, std::ios::binary) << *formerManifest_;
    }
}

std::string Installation::operator/(std::string_view relative) const {
    return root_ / (std::string(prefix) + '/' + std::string(relative));
}

std::vector<std::string> Installation::files() const {
    return listed(root_.path(), [](const auto& entry) { return !isDirectory(entry); });
}

std::vector<std::string> Installation::directories() const {
    return listed(root_.path(), isDirectory);
}

Outcome Installation::uninstall() const {
    return runCMake({"--build", SALLOWMERE_BUILD_DIR, "--target", "uninstall"}, root_);
}

Outcome runProgram(const std::string& name, const std::vector<std::string>& arguments) {
    const std::string path = "/usr/bin/" + name;
    if (!fs::exists(path)) {
        ADD_FAILURE() << path << " is needed and is not there";
        return {};
    }
    std::vector<std::string> words{name};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return run({path, words, {searchPath, "LC_ALL=C.UTF-8"}, {}});
}

std::string contentOf(const std::string& path) {
    EXPECT_TRUE(fs::exists(path)) << path;
    return readAll(path);
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "System/TemporaryHome.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>

namespace fs = std::filesystem;

namespace sallowmere {

TemporaryHome::TemporaryHome(const std::string& name) {
    root_ = fs::canonical(fs::temp_directory_path()).native() + "/sallowmere-test-XXXXXX";
    if (mkdtemp(root_.data()) == nullptr) {
        throw std::runtime_error("no temporary directory");
    }
    path_ = root_ + '/' + name;
    fs::create_directory(path_);
}

TemporaryHome::~TemporaryHome() {
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

std::string TemporaryHome::operator/(std::string_view relative) const {
    return path_ + '/' + std::string(relative);
}

std::string TemporaryHome::write(std::string_view relative, std::string_view content) const {
    std::string path = *this / relative;
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream stream(path, std::ios::binary);
    stream << content;
    stream.close();
    if (!stream) {
        throw std::runtime_error("cannot write " + path);
    }
    return path;
}

std::string TemporaryHome::makeDirectory(std::string_view relative) const {
    std::string path = *this / relative;
    fs::create_directories(path);
    return path;
}

std::string TemporaryHome::makeFifo(std::string_view relative) const {
    std::string path = *this / relative;
    fs::create_directories(fs::path(path).parent_path());
    if (mkfifo(path.c_str(), 0600) != 0) {
        throw std::runtime_error("cannot make " + path);
    }
    return path;
}

std::string TemporaryHome::makeLink(std::string_view relative, const std::string& target) const {
    std::string path = *this / relative;
    fs::create_directories(fs::path(path).parent_path());
    fs::create_symlink(target, path);
    return path;
}

std::string TemporaryHome::writeProgram(std::string_view relative, std::string_view script) const {
    std::string path = write(relative, "#!/bin/sh\n" + std::string(script));
    fs::permissions(path, fs::perms::owner_all);
    return path;
}

std::string TemporaryHome::addSession(std::string_view project, std::string_view title,
                                      std::string_view cwd) const {
    const std::string prompt(title);
    const std::string lines =
        R"({"type":"user","cwd":")" + std::string(cwd)
        + R"(","sessionId":"5e55","timestamp":"2025-06-02T11:00:00.000Z","message":{)"
        + R"("role":"user","content":")" + prompt + "\"}}\n"
        + R"({"type":"assistant","timestamp":"2025-06-02T11:00:05.000Z","message":{"id":"m1",)"
        + R"("model":"claude-opus-4","content":[{"type":"text","text":"All done."}]}})" + '\n'
        + R"({"type":"system","subtype":"stop_hook_summary",)"
        + R"("timestamp":"2025-06-02T11:00:06.000Z"})" + '\n';
    return write(".claude/projects/" + std::string(project) + "/5e55.jsonl", lines);
}

bool setModified(const std::string& path, std::int64_t seconds, long nanoseconds) {
    const timespec times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
    return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0;
}

} // namespace sallowmere

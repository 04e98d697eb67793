// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
// Stands in for the assistant below HOME/.local/bin: notes in HOME/notes/SESSION how it was called,
// and does what the shell commands in HOME/deeds/SESSION say.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <system_error>

#include <dirent.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

void write(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

std::string contentOf(const char* path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// "NUMBER TARGET" in each line.
std::string openDescriptors() {
    std::string lines;
    DIR* directory = opendir("/proc/self/fd");
    while (const dirent* entry = readdir(directory)) {
        const std::string number = entry->d_name;
        std::error_code error;
        const fs::path target = fs::read_symlink("/proc/self/fd/" + number, error);
        if (!error && number != std::to_string(dirfd(directory))) {
            lines.append(number).append(" ").append(target.native()).append("\n");
        }
    }
    closedir(directory);
    return lines;
}

} // namespace

int main(int argc, char** argv) {
    constexpr std::string_view place = "/.local/bin/claude";
    const std::string path = argv[0];
    if (argc < 4 || !path.ends_with(place)) {
        return 99;
    }
    const fs::path home = path.substr(0, path.size() - place.size());
    const fs::path notes = home / "notes" / argv[3];
    // First, because noting opens files.
    const std::string descriptors = openDescriptors();
    fs::create_directories(notes);
    write(notes / "descriptors", descriptors);
    write(notes / "arguments", contentOf("/proc/self/cmdline"));
    write(notes / "environment", contentOf("/proc/self/environ"));
    write(notes / "stat", contentOf("/proc/self/stat"));
    write(notes / "status", contentOf("/proc/self/status"));
    write(notes / "directory", fs::current_path());
    write(notes / "complete", "");
    const fs::path deeds = home / "deeds" / argv[3];
    if (!fs::exists(deeds)) {
        return 0;
    }
    execl("/bin/sh", "/bin/sh", deeds.c_str(), nullptr);
    return 98;
}

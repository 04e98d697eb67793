// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#pragma once

#include "Platform/Linux/Descriptor.h"

#include <string>
#include <vector>

#include <spawn.h>

namespace sallowmere {

/// What a program that is started does to its descriptors before it begins, in the order added.
class FileActions {
public:
    FileActions() { posix_spawn_file_actions_init(&actions_); }
    FileActions(const FileActions&) = delete;
    FileActions& operator=(const FileActions&) = delete;
    ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

    posix_spawn_file_actions_t* get() { return &actions_; }

private:
    posix_spawn_file_actions_t actions_{};
};

/// Pointers to the texts, and the null that ends them, as the kernel wants them; valid as long as
/// the texts are.
std::vector<char*> pointersTo(const std::vector<std::string>& texts);

/// Becomes readable when the process has ended. Empty, with `errno` set, where the system gives no
/// such descriptor.
Descriptor openProcess(pid_t pid);

} // namespace sallowmere

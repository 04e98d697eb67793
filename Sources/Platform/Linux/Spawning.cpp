// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/Spawning.h"

#include <sys/syscall.h>
#include <unistd.h>

namespace sallowmere {

std::vector<char*> pointersTo(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (const std::string& text : texts) {
        pointers.push_back(const_cast<char*>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

Descriptor openProcess(pid_t pid) {
    // The C library's own function cannot be called from C++ before version 2.37.
    return Descriptor(static_cast<int>(syscall(SYS_pidfd_open, pid, 0U)));
}

} // namespace sallowmere

// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Linux/LinuxClock.h"
#include "Platform/Linux/LinuxFileSystem.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Linux/LinuxUser.h"
#include "Sallowmere/DiagnosticDump.h"
#include "Sallowmere/Launch/PanelProgram.h"

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>

#include <unistd.h>

using namespace sallowmere;

namespace {

int dump() {
    const LinuxFileSystem files;
    const LinuxProcessTable processes;
    const std::string report = DiagnosticDump::report(
        DiagnosticDump::collect(files, processes, linuxClock(), homeDirectory()),
        isatty(STDOUT_FILENO) != 0 ? DiagnosticDump::Target::terminal
                                   : DiagnosticDump::Target::bytes);
    const bool written = std::fwrite(report.data(), 1, report.size(), stdout) == report.size()
                         && std::fflush(stdout) == 0;
    if (!written) {
        std::perror("sallowmere: cannot write the report");
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

} // namespace

int main(int argc, char** argv) {
    if (DiagnosticDump::isRequested({argv, static_cast<std::size_t>(argc)})) {
        return dump();
    }
    return PanelProgram::run(argv[0]);
}

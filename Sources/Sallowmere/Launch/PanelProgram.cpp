// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Sallowmere/Launch/PanelProgram.h"

#include "Platform/Linux/LinuxUser.h"
#include "Platform/X11/X11Connection.h"
#include "Sallowmere/Launch/AppDelegate.h"
#include "Sallowmere/Launch/RunningInstance.h"
#include "Sallowmere/Launch/SystemServices.h"
#include "Sallowmere/Launch/TerminationSignals.h"

#include <QGuiApplication>
#include <QQuickWindow>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <utility>

#include <malloc.h>

namespace sallowmere::PanelProgram {

namespace {

/// Bytes from which on a block goes back to the system when it is freed: where the C library
/// begins. Left alone it would go by the largest ever freed, and keep what pictures of the window
/// and the reading of transcripts leave behind between smaller blocks.
constexpr int largeBlock = 128 * 1'024;

bool hasDisplay() {
    return X11Connection().isAlive();
}

int refuse(const char* reason) {
    std::fprintf(stderr, "sallowmere: %s\n", reason);
    return EXIT_FAILURE;
}

/// What Qt takes from a command line: not the user's, which says nothing to it. The panel's window
/// is one of an X server, also under Wayland; no variable says so, because programs started from
/// here would go by that too.
class QtArguments {
public:
    explicit QtArguments(char* program) : values_{program, platform_, xcb_, nullptr} {}

    int& count() { return count_; }
    char** values() { return values_.data(); }

private:
    int count_ = 3;
    char platform_[10] = "-platform";
    char xcb_[4] = "xcb";
    std::array<char*, 4> values_;
};

/// As long as this lives, Qt that starts will not share memory with the X server: at a time without
/// descriptors it waits for ever for the one of a share, and what little the panel draws goes over
/// the connection at less cost. Programs started later are not to go by it.
class WithoutSharedMemory {
public:
    WithoutSharedMemory() : isUsers_(qEnvironmentVariableIsSet(variable)) {
        if (!isUsers_) {
            qputenv(variable, "1");
        }
    }
    WithoutSharedMemory(const WithoutSharedMemory&) = delete;
    WithoutSharedMemory& operator=(const WithoutSharedMemory&) = delete;
    ~WithoutSharedMemory() {
        if (!isUsers_) {
            qunsetenv(variable);
        }
    }

private:
    static constexpr const char* variable = "QT_XCB_NO_MITSHM";

    const bool isUsers_;
};

} // namespace

int run(char* program) {
    if (!hasDisplay()) {
        return refuse("there is no display to show the panel on; --dump prints a report instead");
    }
    RunningInstance instance(homeDirectory());
    if (instance.isAnother()) {
        return refuse("the panel is already running");
    }
    mallopt(M_MMAP_THRESHOLD, largeBlock);
    // What one thread frees is there for all.
    mallopt(M_ARENA_MAX, 1);
    // The panel is light enough to be drawn without the graphics driver, which would be most of
    // what the program keeps in memory.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QtArguments arguments(program);
    std::optional<WithoutSharedMemory> starting(std::in_place);
    const QGuiApplication application(arguments.count(), arguments.values());
    starting.reset();
    QGuiApplication::setQuitOnLastWindowClosed(false);
    SystemServices services;
    AppDelegate delegate(services);
    const TerminationSignals termination([] { QCoreApplication::quit(); });
    delegate.applicationDidFinishLaunching([] { QCoreApplication::quit(); });
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    instance.release();
    // Nothing has to be brought to an end: a scan that is under way only reads, and would be waited
    // for.
    std::_Exit(status);
}

} // namespace sallowmere::PanelProgram

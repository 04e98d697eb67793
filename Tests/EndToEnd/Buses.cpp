// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Platform/Desktop/GLibReference.h"

#include <gio/gio.h>

#include "EndToEnd/Buses.h"
#include "X11/WaitFor.h"

#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace sallowmere {

namespace {

/// It starts no services: what is not started here is not there.
std::string sessionConfiguration(const std::string& directory) {
    return "<busconfig>\n  <type>session</type>\n  <listen>unix:dir=" + directory + R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";
}

using Connection = Reference<GDBusConnection>;

Connection connect(const std::string& address) {
    Connection connection(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
                                          | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    if (!connection) {
        throw std::runtime_error("cannot connect with the bus at " + address);
    }
    return connection;
}

/// Absent as long as the launcher has not come to the session bus.
std::optional<std::string> accessibilityAddress(GDBusConnection* connection) {
    const Reference<GVariant> answer(g_dbus_connection_call_sync(
        connection, "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress", nullptr,
        G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    if (!answer) {
        return std::nullopt;
    }
    const char* address = nullptr;
    g_variant_get(answer.get(), "(&s)", &address);
    return address;
}

} // namespace

Buses::Buses() {
    startSession();
    startAccessibility();
}

Command Buses::command(const std::vector<std::string>& programAndArguments) const {
    // What they complain about is of no interest.
    Command command{"/bin/sh",
                    {"sh", "-c", "exec \"$@\" 2>/dev/null", "sh"},
                    {"HOME=" + home_.path(), "PATH=/usr/bin:/bin",
                     "XDG_RUNTIME_DIR=" + home_.path(), "GSETTINGS_BACKEND=memory"},
                    home_.path()};
    command.arguments.insert(command.arguments.end(), programAndArguments.begin(),
                             programAndArguments.end());
    command.environment.insert(command.environment.end(), variables_.begin(), variables_.end());
    return command;
}

void Buses::startSession() {
    const std::string configuration =
        home_.write("session.conf", sessionConfiguration(home_.path()));
    session_ = std::make_unique<ChildProcess>(
        command({"/usr/bin/dbus-daemon", "--nofork", "--nopidfile", "--print-address=1",
                 "--config-file=" + configuration}));
    sessionAddress_ = session_->readLine();
    variables_ = {"DBUS_SESSION_BUS_ADDRESS=" + sessionAddress_};
}

void Buses::startAccessibility() {
    accessibility_ = std::make_unique<ChildProcess>(
        command({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}));
    const Connection connection = connect(sessionAddress_);
    std::optional<std::string> address;
    waitFor("the accessibility bus", [&] {
        address = accessibilityAddress(connection.get());
        return address.has_value();
    });
    // Where the library that reads from it looks first.
    setenv("AT_SPI_BUS_ADDRESS", address->c_str(), 1);
}

} // namespace sallowmere

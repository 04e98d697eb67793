// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/PrivateBus.h"

#include "Desktop/Daemon.h"

#include <stdexcept>

namespace sallowmere {

namespace {

std::string configuration(const TemporaryHome& home) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig>\n"
           "  <type>session</type>\n"
           "  <listen>unix:path="
           + home / "run/bus"
           + "</listen>\n"
             "  <servicedir>"
           + home / "services"
           + "</servicedir>\n"
             "  <policy context=\"default\">\n"
             "    <allow send_destination=\"*\"/>\n"
             "    <allow receive_sender=\"*\"/>\n"
             "    <allow own=\"*\"/>\n"
             "  </policy>\n"
             "</busconfig>\n";
}

} // namespace

PrivateBus::PrivateBus(const TemporaryHome& home, const std::string& name,
                       const std::string& program) {
    home.makeDirectory("run");
    home.makeDirectory("services");
    if (!name.empty()) {
        home.write("services/" + name + ".service",
                   "[D-BUS Service]\nName=" + name + "\nExec=" + program + '\n');
    }
    const std::string file = home.write("bus.conf", configuration(home));
    daemon_ = startDaemon(home, {"/usr/bin/dbus-daemon", "--nofork", "--nopidfile",
                                 "--print-address=1", "--config-file=" + file});
    address_ = daemon_->readLine();
}

BusClient::BusClient(const std::string& address)
    : connection_(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
                                          | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr)) {
    if (connection_ == nullptr) {
        throw std::runtime_error("no bus at " + address);
    }
}

BusClient::~BusClient() {
    g_object_unref(connection_);
}

bool BusClient::hasOwner(const std::string& name) const {
    const Reply reply = call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                             "org.freedesktop.DBus", "NameHasOwner", "('" + name + "',)");
    gboolean result = FALSE;
    g_variant_get(reply.get(), "(b)", &result);
    return result != FALSE;
}

BusClient::Reply BusClient::call(const std::string& name, const std::string& path,
                                 const std::string& interfaceName, const std::string& method,
                                 const std::string& parameters) const {
    GVariant* reply = g_dbus_connection_call_sync(
        connection_, name.c_str(), path.c_str(), interfaceName.c_str(), method.c_str(),
        g_variant_parse(nullptr, parameters.c_str(), nullptr, nullptr, nullptr), nullptr,
        G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (reply == nullptr) {
        throw std::runtime_error(method + " failed");
    }
    return {reply, &g_variant_unref};
}

} // namespace sallowmere

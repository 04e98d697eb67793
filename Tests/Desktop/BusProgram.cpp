// SPDX-FileCopyrightText: 2026 the Sallowmere authors
// SPDX-License-Identifier: MIT
#include "Desktop/BusProgram.h"

#include <iostream>
#include <stdexcept>
#include <utility>

#include <glib-unix.h>
#include <unistd.h>

namespace sallowmere {

struct BusProgram::Object {
    Methods methods;
    Properties properties;
    GDBusNodeInfo* node = nullptr;

    Object(Methods calls, Properties values, const std::string& interfaces)
        : methods(std::move(calls)), properties(std::move(values)),
          node(g_dbus_node_info_new_for_xml(interfaces.c_str(), nullptr)) {
        if (node == nullptr) {
            throw std::runtime_error("cannot be parsed: " + interfaces);
        }
    }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    ~Object() { g_dbus_node_info_unref(node); }

    static void onCall(GDBusConnection*, const char*, const char* path, const char*,
                       const char* method, GVariant* parameters, GDBusMethodInvocation* invocation,
                       gpointer object) {
        tell(method);
        static_cast<Object*>(object)->methods({invocation, path, method, parameters});
    }

    static GVariant* onGet(GDBusConnection*, const char*, const char* path, const char*,
                           const char* property, GError**, gpointer object) {
        const auto values = static_cast<Object*>(object)->properties(path);
        return g_variant_new_parsed(values.at(property).c_str());
    }
};

void BusProgram::Call::reply(GVariant* result) const {
    g_dbus_method_invocation_return_value(invocation, result);
}

void BusProgram::Call::fail(const std::string& errorName) const {
    g_dbus_method_invocation_return_dbus_error(invocation, errorName.c_str(), "");
}

BusProgram::BusProgram(const std::string& address)
    : connection_(g_dbus_connection_new_for_address_sync(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT
                                          | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr)),
      loop_(g_main_loop_new(nullptr, FALSE)) {
    if (connection_ == nullptr) {
        throw std::runtime_error("no bus at " + address);
    }
}

BusProgram::~BusProgram() {
    g_object_unref(connection_);
    g_main_loop_unref(loop_);
}

void BusProgram::serve(const std::string& path, const std::string& interfaces, Methods methods,
                       Properties properties) {
    static const GDBusInterfaceVTable table{Object::onCall, Object::onGet, nullptr, {}};
    objects_.push_back(
        std::make_unique<Object>(std::move(methods), std::move(properties), interfaces));
    Object* object = objects_.back().get();
    for (GDBusInterfaceInfo** each = object->node->interfaces; *each != nullptr; ++each) {
        g_dbus_connection_register_object(connection_, path.c_str(), *each, &table, object, nullptr,
                                          nullptr);
    }
}

void BusProgram::emit(const std::string& path, const std::string& interfaceName,
                      const std::string& signal, GVariant* parameters) {
    g_dbus_connection_emit_signal(connection_, nullptr, path.c_str(), interfaceName.c_str(),
                                  signal.c_str(), parameters, nullptr);
}

void BusProgram::call(const std::string& name, const std::string& path,
                      const std::string& interfaceName, const std::string& method,
                      GVariant* parameters) {
    g_dbus_connection_call(connection_, name.c_str(), path.c_str(), interfaceName.c_str(),
                           method.c_str(), parameters, nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr,
                           nullptr, nullptr);
}

int BusProgram::runAs(const std::string& name) {
    const guint owner = g_bus_own_name_on_connection(
        connection_, name.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE,
        [](GDBusConnection*, const char*, gpointer) { tell("ready"); }, nullptr, nullptr, nullptr);
    g_unix_fd_add(
        STDIN_FILENO, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP),
        [](gint, GIOCondition, gpointer loop) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(loop));
            return G_SOURCE_REMOVE;
        },
        loop_);
    g_main_loop_run(loop_);
    g_bus_unown_name(owner);
    return 0;
}

void tell(const std::string& line) {
    std::cout << line << std::endl;
}

} // namespace sallowmere
